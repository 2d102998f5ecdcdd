// Opens damaged files, changes half of them, and reads all that is in them.
#include <numeric>

#include "fuzz/fuzz_input.h"
#include "platform/access/any_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace marlevo;
  static const std::vector<std::byte> kGood[] = {access::SmallFile(4), access::SmallFile(3)};
  FuzzInput input(data, size);
  const auto form = input.Take<std::uint8_t>();
  std::vector<std::byte> file = kGood[form % 2];
  access::Damage(input, file);
  pager::FaultFiles files;
  files.Put(access::kAnyFile, std::move(file));
  const bool changed = form % 4 < 2 || access::ChangeAnyFile(files);
  // The check of the whole file takes longer than all the rest: one input in eight is enough for it.
  const bool sound = access::ReadAnyFile(files, std::accumulate(data, data + size, 0u) % 8 == 0);
  Require((changed && sound) || size > 1);
  return 0;
}
