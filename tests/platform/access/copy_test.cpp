// The way out for files that are read but not written: a copy.

#include "platform/access/database/copy.h"

#include "platform/access/any_file.h"
#include "platform/access/odd_file.h"

namespace marlevo::access {
namespace {

using enum ColumnType;
using namespace std::string_view_literals;
namespace fs = std::filesystem;

class CopyTest : public BothFormatsTest {
 protected:
  fs::path copy_ = folder_.Path() / "copy.mdb";
};

TEST_P(CopyTest, HoldsWhatTheOldFileHolds) {
  NewFile kind = GetParam();
  kind.encoding_key = 0x12345678;
  const IndexSchema by_name{.name = "name", .columns = {{"name"}}};
  NewFileTest::Make({{"Taiwan", {{"name", kText, 20}}, {by_name}},
                     {"T",
                      {{"n", kLong}, {"name", kText, 20}, {"memo", kMemo}, {"d", kDouble}, {"b", kBoolean}},
                      {{.name = "PrimaryKey", .columns = {{"n", true}}, .primary_key = true}, by_name}}},
                    kind);
  ChangeDefinition(file_, "T", [](TableDefinition& table) { table.columns[0].flags |= kColumnAutonumber; });
  const std::string memo(9000, 'm');
  {
    const Database database = Reopen();
    Table table = database.OpenTable("T");
    for (int i = 0; i < 900; ++i) {
      const std::string name(static_cast<std::size_t>(i % 17), 'x');  // of many lengths, so that gaps would be filled
      const Value text = i % 100 == 3 ? Value(std::string_view(memo)) : i % 3 == 0 ? Value() : ""sv;
      const RowId row = table.Insert(Row{{}, std::string_view(name), text, -0.0, i % 2 == 0});
      EXPECT_TRUE(i % 4 != 1 || table.Delete(row));
    }
  }
  SetProperties(file_, {{"name", "Required", true},
                        {"name", "ValidationRule", "Len(name)<9"},
                        {"memo", "AllowZeroLength", false},
                        {"d", "DefaultValue", "2.5"},
                        {"", "ValidationText", "No"}});
  ChangeDefinition(file_, "Taiwan", [](TableDefinition& table) { table.columns[0].language = 0x0404; });
  const std::string before = ReadFile(file_);

  const CopyReport report = CopyFile(file_, copy_);
  std::string left_out =
      "index name of table Taiwan: column name is indexed in the order of a language that is not known\n";
  left_out += IsJet3() ? "index name of table T: the order of Chinese characters in it is not known\n" : "";
  left_out += "validation rule Len(name)<9 of column name of table T\n";
  std::string reported;
  for (const std::string& lost : report.left_out) {
    reported += lost + "\n";
  }
  EXPECT_EQ(reported, left_out);
  EXPECT_EQ(report.rows, 675u);
  EXPECT_EQ(report.values, 675u * 5);
  EXPECT_EQ(ReadFile(file_), before);
  EXPECT_EQ(ReadFile(copy_).find(memo), std::string::npos);  // encoded

  const Database old = Reopen();
  const Database database = Database::Open(copy_, {.password = kPassword, .code_page = {}});
  EXPECT_THROW(Database::Open(copy_, {}), AccessError);
  Table table = database.OpenTable("T");
  EXPECT_EQ(TextsOf(table), TextsOf(old.OpenTable("T")));
  EXPECT_TRUE(table.Columns()[1].required);
  EXPECT_FALSE(table.Columns()[2].empty_allowed);
  EXPECT_EQ(table.Columns()[3].default_value, "2.5");
  EXPECT_EQ(table.Indexes().size(), IsJet3() ? 1u : 2u);
  const Row row{901, "陳"sv, {}, {}, {}};  // the next number
  EXPECT_THROW(old.OpenTable("T").Insert(row), AccessError);
  table.Insert(Row{{}, "陳"sv, {}, {}, {}});
  EXPECT_THROW(table.Insert(row), ValueError);
  EXPECT_THROW(old.OpenTable("Taiwan").Insert(Row{"x"sv}), AccessError);
  database.OpenTable("Taiwan").Insert(Row{"陳"sv});
  EXPECT_EQ(Health(database), "sound");
}

TEST_P(CopyTest, LeavesNothingWhenItFails) {
  const std::vector<std::byte> content = SmallFile(GetParam().version);
  bool done = false;
  for (std::uint64_t step = 1; !done; step = step + 1 + step / 8) {
    pager::FaultFiles files;
    files.Put(kAnyFile, content);
    files.Plan(step, pager::FaultFiles::Trouble::kError);
    const std::string error = ErrorOf([&] { CopyFile(kAnyFile, "/disk/copy.mdb", files); });
    done = !files.Struck();
    EXPECT_EQ(files.Exists("/disk/copy.mdb"), error == "no error") << step << error;
    EXPECT_FALSE(files.Exists("/disk/copy.mdb-copy")) << step << error;
    EXPECT_EQ(files.Content(kAnyFile), content);
    ASSERT_LT(step, 10'000u);
  }
  pager::FaultFiles files;
  files.Put(kAnyFile, content);
  files.Put("/disk/copy.mdb", {std::byte{7}});
  EXPECT_NE(ErrorOf([&] { CopyFile(kAnyFile, "/disk/copy.mdb", files); }).find("exists already"), std::string::npos);
  EXPECT_EQ(files.Content("/disk/copy.mdb").size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Formats, CopyTest, testing::ValuesIn(kFormats), FormatName);

}  // namespace
}  // namespace marlevo::access
