// Files with random damage: whatever the bytes say, the engine reads, writes or refuses, and nothing else happens. The
// fuzz programs look for the damage that chance does not find.

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "platform/access/access_files.h"
#include "platform/access/any_file.h"

namespace marlevo::access {
namespace {

constexpr int kFiles = 400;

// The engine's own file of a version, or a sample.
class AccessDamage : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    const std::string name = GetParam();
    if (name == "new 3" || name == "new 4") {
      good_ = SmallFile(name == "new 3" ? 3 : 4);
      pager::FaultFiles files;
      files.Put(kAnyFile, good_);
      ASSERT_TRUE(ReadAnyFile(files) && ChangeAnyFile(files) && ReadAnyFile(files));
    } else if (const char* samples = std::getenv("MARLEVO_SAMPLES"); samples != nullptr) {
      const std::string content = ReadFile(std::filesystem::path(samples) / name);
      const Bytes bytes = std::as_bytes(std::span(content));
      good_.assign(bytes.begin(), bytes.end());
    } else {
      GTEST_SKIP() << kNoSamples;
    }
  }

  std::vector<std::byte> good_;
};

TEST_P(AccessDamage, IsReadAroundOrRefused) {
  std::mt19937 random(1);
  int unnoticed = 0;
  for (int i = 0; i < kFiles; ++i) {
    std::vector<std::uint8_t> input(4 + random() % 60);
    for (std::uint8_t& byte : input) {
      byte = static_cast<std::uint8_t>(random());
    }
    std::vector<std::byte> damaged = good_;
    FuzzInput fuzz(input.data(), input.size());
    Damage(fuzz, damaged);
    pager::FaultFiles files;
    files.Put(kAnyFile, std::move(damaged));
    const bool read = ReadAnyFile(files);
    const bool changed = ChangeAnyFile(files);
    unnoticed += read && changed ? 1 : 0;
  }
  std::cout << kFiles << " damaged files, " << unnoticed << " of them went unnoticed\n";
}

INSTANTIATE_TEST_SUITE_P(Files, AccessDamage,
                         testing::Values("new 3", "new 4", "indexTestV1997.mdb", "test2V1997.mdb",
                                         "overflowTestV2000.mdb", "indexTestV2003.mdb", "test2V2000.mdb"));

// Damage that was taken for sound, or worse.
TEST(AccessDamageFound, IsNoticed) {
  struct Found {
    int version;
    std::size_t page;
    std::size_t at;
    std::string bytes;
  };
  using namespace std::string_literals;
  for (const Found& found : {
           Found{4, 20, 0x4e, "\0"s},                       // two columns in the same place of a row
           Found{3, 14, 0x6f6, "\0\xf8\xff\xff\xff\xff"s},  // a usage map with the last of all page numbers
           Found{4, 26, 0x14, "\0\x1a\0\0"s},               // a long value that leads back into itself
           Found{4, 23, 0x9de, "\0\x17\0\0"s},              // a long value on a page of the table's rows
           Found{3, 24, 0xf6, "\x20"s},                     // an entry of an index as long as a page
       }) {
    std::vector<std::byte> damaged = SmallFile(found.version);
    const Bytes bytes = std::as_bytes(std::span(found.bytes));
    std::ranges::copy(bytes, &damaged[found.page * (found.version == 3 ? 2048 : 4096) + found.at]);
    pager::FaultFiles files;
    files.Put(kAnyFile, std::move(damaged));
    EXPECT_FALSE(ReadAnyFile(files)) << found.page;
    ChangeAnyFile(files);
  }
}

}  // namespace
}  // namespace marlevo::access
