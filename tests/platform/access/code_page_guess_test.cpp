// A Jet 3 file of Chinese texts whose labels say Western.

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/database/database.h"

namespace marlevo::access {
namespace {

using namespace std::string_view_literals;
using Texts = std::vector<std::string>;

class CodePageGuess : public NewFileTest {
 protected:
  void MakeWestern(std::string_view name) const {
    std::filesystem::remove(file_);
    Make({{"T", {{"name", ColumnType::kText, 20}}}}, {.version = 3, .code_page = 1252})
        .OpenTable("T")
        .Insert(Row{name});
  }
  Table Open(std::optional<int> code_page = {}) const {
    return Database::Open(file_, {.password = kPassword, .code_page = code_page}).OpenTable("T");
  }
};

TEST_F(CodePageGuess, KnowsChineseUnderTheWesternLabel) {
  MakeWestern("¤ý¤p©ú");  // the Western letters of the bytes that are a Chinese name
  EXPECT_EQ(TextsOf(Open()), Texts{"'王小明'"});
  EXPECT_EQ(TextsOf(Open(1252)), Texts{"'¤ý¤p©ú'"});

  MakeWestern("Café");
  EXPECT_EQ(TextsOf(Open()), Texts{"'Café'"});

  // Without any evidence Chinese can be added.
  MakeWestern("Smith");
  Open().Insert(Row{"陳"sv});
  EXPECT_EQ(TextsOf(Open()), (Texts{"'Smith'", "'陳'"}));
}

}  // namespace
}  // namespace marlevo::access
