// A Jet 3 file of Chinese texts whose labels say Western.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "platform/access/access_files.h"
#include "platform/access/database.h"
#include "support/scratch_folder.h"

namespace marlevo::access {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

// The header's label is masked by a cipher that leaves differences as they are.
constexpr std::size_t kHeaderLabelAt = 0x3C;

void CallWestern(const fs::path& path) {
  std::string bytes;
  {
    std::ifstream in(path, std::ios::binary);
    std::stringstream content;
    content << in.rdbuf();
    bytes = content.str();
  }
  constexpr int kDifference = 950 ^ 1252;
  bytes[kHeaderLabelAt] = static_cast<char>(bytes[kHeaderLabelAt] ^ (kDifference & 0xFF));
  bytes[kHeaderLabelAt + 1] = static_cast<char>(bytes[kHeaderLabelAt + 1] ^ (kDifference >> 8));
  constexpr auto kChinese = "\x09\x04\xB6\x03"sv;  // language and code page of a column
  constexpr auto kWestern = "\x09\x04\xE4\x04"sv;
  for (std::size_t at = 0; (at = bytes.find(kChinese, at)) != std::string::npos;) {
    bytes.replace(at, kWestern.size(), kWestern);
  }
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string CustomersOf(const fs::path& path, std::optional<int> code_page) {
  std::string all;
  for (const std::string& text :
       TextsOf(Database::Open(path, {.password = "qorvat", .code_page = code_page}).OpenTable("CUSTOM_H"))) {
    all += text + "\n";
  }
  return all;
}

TEST(CodePageGuess, KnowsChineseUnderTheWesternLabel) {
  const testing_support::ScratchFolder folder;
  const fs::path path = CopyOfSample("mk-jet3.mdb", folder.Path());
  if (path.empty()) {
    GTEST_SKIP() << kNoSamples;
  }
  const std::string truth = CustomersOf(path, {});
  CallWestern(path);
  EXPECT_NE(CustomersOf(path, 1252), truth);
  EXPECT_EQ(CustomersOf(path, {}), truth);

  // One text that cannot be Chinese, and the label is believed.
  {
    Database database = Database::Open(path, {.password = "qorvat", .code_page = 1252});
    database.OpenTable("CUSTOM_H").Insert(std::vector<Value>{"X"sv, "Caf\xC3\xA9"sv, {}, {}, {}});
    database.Flush();
  }
  EXPECT_EQ(CustomersOf(path, {}), CustomersOf(path, 1252));
}

}  // namespace
}  // namespace marlevo::access
