// Opens damaged files and reads all that is in them.
#include "fuzz/fuzz_input.h"
#include "platform/access/any_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace marlevo;
  static const std::vector<std::byte> kGood[] = {access::SmallFile(4), access::SmallFile(3)};
  FuzzInput input(data, size);
  std::vector<std::byte> file = kGood[input.Take<std::uint8_t>() % 2];
  input.Damage(file);
  pager::FaultFiles files;
  files.Put(access::kAnyFile, std::move(file));
  const bool sound = access::ReadAnyFile(files);
  Require(sound || size > 1);
  return 0;
}
