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
    FuzzInput(input.data(), input.size()).Damage(damaged);
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

// Inputs of the fuzz programs: damage that was taken for sound, or worse.
TEST(AccessDamageFound, IsNoticed) {
  using Input = std::vector<std::uint8_t>;
  Input endless = {1, 0xd1, 0x0e, 0x94, 0x94, 0xc1, 0xf6, 0xf6, 0xf6, 0xf6, 0x9a, 0xf6};
  endless.resize(30, 0xff);
  for (const Input& bytes : {
           Input{0, 0x90, 0x4e},  // two columns in the same place of a row
           endless,               // a usage map with the last of all page numbers
       }) {
    FuzzInput input(bytes.data(), bytes.size());
    std::vector<std::byte> damaged = SmallFile(input.Take<std::uint8_t>() % 2 == 0 ? 4 : 3);
    input.Damage(damaged);
    pager::FaultFiles files;
    files.Put(kAnyFile, std::move(damaged));
    EXPECT_FALSE(ReadAnyFile(files));
  }
}

}  // namespace
}  // namespace marlevo::access
