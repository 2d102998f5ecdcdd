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

class CodePageGuess : public testing::Test {
 protected:
  // A file with one name, its label Western.
  void Make(std::string_view name, int code_page) {
    fs::remove(path_);
    {
      Database database =
          Database::Create(path_, "", {{"T", {{"n", ColumnType::kLong}, {"name", ColumnType::kText, 20}}}},
                           pager::NativeFiles(), {.version = 3, .code_page = code_page});
      database.OpenTable("T").Insert(std::vector<Value>{std::int64_t{1}, name});
      database.Flush();
    }
    if (code_page != 1252) {
      CallWestern(path_);
    }
  }
  std::string Name(std::optional<int> code_page = {}) const {
    return TextsOf(Database::Open(path_, {.password = {}, .code_page = code_page}).OpenTable("T")).at(0);
  }

  testing_support::ScratchFolder folder_;
  fs::path path_ = folder_.Path() / "old.mdb";
};

TEST_F(CodePageGuess, KnowsChineseUnderTheWesternLabel) {
  Make("王小明", 950);
  EXPECT_EQ(Name(), "1 '王小明'");
  EXPECT_NE(Name(1252), "1 '王小明'");

  Make("Caf\xC3\xA9", 1252);
  EXPECT_EQ(Name(), "1 'Caf\xC3\xA9'");

  // Without any evidence Chinese can be added.
  Make("Smith", 1252);
  EXPECT_EQ(Name(), "1 'Smith'");
  Database::Open(path_, {}).OpenTable("T").Insert(std::vector<Value>{std::int64_t{2}, "陳"sv});
  EXPECT_EQ(TextsOf(Database::Open(path_, {}).OpenTable("T")), (std::vector<std::string>{"1 'Smith'", "2 '陳'"}));
}

}  // namespace
}  // namespace marlevo::access
