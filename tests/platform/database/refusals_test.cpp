// What is refused, with the kind of failure that the operator's sentence belongs to: the table in docs/file-format.md.
#include <fstream>
#include <functional>

#include "platform/access/odd_file.h"
#include "platform/database/database_fixture.h"

namespace marlevo {
namespace {

using enum Fault;
using enum access::ColumnType;
using access::TableDefinition;

class RefusalsTest : public testing::Test {
 protected:
  void Make(const std::vector<access::TableSchema>& tables, const access::NewFile& kind = {}) const {
    std::filesystem::remove(file_);
    access::Database::Create(file_, "", tables, pager::NativeFiles(), kind);
  }

  std::uint32_t PageOf(const char* table) const { return access::FindTable(access::OpenFile(file_), table).page; }

  test::ScratchFolder folder_;
  std::filesystem::path file_ = folder_.Path() / "odd.mdb";
};

TEST_F(RefusalsTest, OfTables) {
  const auto index_of = [](access::ColumnType type, bool ascending) {
    return [=](TableDefinition& table) {
      table.columns[0].shown.type = type;
      table.real_indexes[0].columns[0].ascending = ascending;
    };
  };
  const char* all = "INSERT INTO T VALUES ('1','2','3')";
  const struct {
    const char* what;  // of the table T, whose column A is indexed
    std::function<void(TableDefinition&)> change;
    std::vector<access::OddProperty> properties;
    const char* sql;
    std::optional<Fault> kind;
  } cases[] = {
      {"language", [](TableDefinition& table) { table.columns[0].language = 0x0404; }, {}, all, kNeedsAccess},
      {"later order", [](TableDefinition& table) { table.columns[0].sort_version = 1; }, {}, all, kNeedsAccess},
      {"descending decimals", index_of(kNumeric, false), {}, all, kNeedsAccess},
      {"index of a memo", index_of(kMemo, true), {}, all, kNeedsAccess},
      {"internal type",
       [](TableDefinition& table) { table.columns[1].shown.type = access::ColumnType{0x11}; },
       {},
       all,
       kNeedsAccess},
      {"memo without maps",
       [](TableDefinition& table) {
         table.long_value_maps[0] = {2, {}, {}};
       },
       {},
       all,
       kNeedsAccess},
      {"rule", {}, {{"B", "ValidationRule", ">0"}}, all, kNeedsAccess},
      {"rule of the table", {}, {{"", "ValidationRule", "A<>B"}}, all, kNeedsAccess},
      {"required", {}, {{"B", "Required", true}}, "INSERT INTO T (A) VALUES ('1')", kEmpty},
      {"no empty text", {}, {{"B", "AllowZeroLength", false}}, "INSERT INTO T (B) VALUES ('')", kEmpty},
      {"default", {}, {{"B", "DefaultValue", "Now()"}}, "INSERT INTO T (A) VALUES ('1')", kNeedsAccess},
      {"default given", {}, {{"B", "DefaultValue", "Now()"}}, all, std::nullopt},
      {"rules met", {}, {{"B", "Required", true}, {"B", "AllowZeroLength", false}}, all, std::nullopt},
  };
  for (const auto& [what, change, properties, sql, kind] : cases) {
    SCOPED_TRACE(what);
    Make({{"T", {{"A", kText, 9}, {"B", kText, 9}, {"MEMO", kMemo}}, {{.name = "A", .columns = {{"A"}}}}}});
    if (change) {
      access::ChangeDefinition(file_, "T", change);
    }
    if (!properties.empty()) {
      access::SetProperties(file_, properties);
    }
    Connection connection(FileConnectionString(file_));
    EXPECT_EQ(Refusal(connection, sql), kind);
    EXPECT_EQ(Rows(connection, "SELECT COUNT(*) AS N FROM T", {"N"}), kind ? "0\n" : "1\n");
  }
  Make({{"T", {{"A", kText, 9}, {"B", kText, 9}, {"MEMO", kMemo}}}});
  access::ChangeCatalog(file_, access::kPropertiesColumn, access::AsBytes("MR2 cut off"));
  EXPECT_EQ(Refusal(*std::make_unique<Connection>(FileConnectionString(file_)), all), kNeedsAccess);
  Make({{"T", {{"A", kText, 9}}, {{.name = "A", .columns = {{"A"}}}}}}, {.version = 3, .code_page = 950});
  Connection connection(FileConnectionString(file_));
  EXPECT_EQ(Refusal(connection, "INSERT INTO T VALUES ('陳')"), kNeedsAccess);
  EXPECT_EQ(Refusal(connection, "INSERT INTO T VALUES ('A1')"), std::nullopt);
}

TEST_F(RefusalsTest, OfValues) {
  Make({{"T",
         {{"A", kLong}, {"B", kText, 3}},
         {{.name = "K", .columns = {{"A"}}, .primary_key = true}, {.name = "B", .columns = {{"B"}}}}},
        {"LONG", {{"A", kText, 255}, {"B", kText, 255}}, {{.name = "AB", .columns = {{"A"}, {"B"}}}}},
        {"CHILD", {{"A", kLong}}, {{.name = "A", .columns = {{"A"}}}}},
        {"LINKED", {{"A", kLong}}}});
  // CHILD refers to T: both sides know of it.
  for (const char* table : {"CHILD", "T"}) {
    const bool child = std::string_view(table) == "CHILD";
    access::ChangeDefinition(file_, table, [&](TableDefinition& changed) {
      access::LogicalIndex index{.name = "R", .related_table = PageOf(child ? "T" : "CHILD")};
      index.number = changed.logical_indexes.size();
      index.related_type = child ? 2 : 1;
      index.related_index = child ? 2 : 1;
      index.cascade_deletes = 1;
      index.kind = access::IndexKind::kForeignKey;
      changed.logical_indexes.push_back(index);
    });
  }
  access::ChangeCatalog(file_, 3, 6);
  Connection connection(FileConnectionString(file_));
  connection.Execute("INSERT INTO T VALUES (2147483647,912)");
  connection.Execute("INSERT INTO T VALUES ('-2147483648','彩Ａ彩')");
  connection.Execute("INSERT INTO CHILD VALUES (2147483647)");
  const std::string hyphens(255, '-');  // four bytes of key each
  const std::pair<const char*, Fault> cases[] = {{"INSERT INTO T VALUES (2147483647,'x')", kDuplicate},
                                                 {"INSERT INTO T VALUES (NULL,'x')", kEmpty},
                                                 {"INSERT INTO T VALUES (2,'彩彩彩彩')", kTextTooLong},
                                                 {"INSERT INTO T VALUES (2,'\xFF')", kCharacter},
                                                 {"INSERT INTO T VALUES (3,'あ')", kNeedsAccess},
                                                 {"INSERT INTO T VALUES (2147483648,'')", kNumber},
                                                 {"INSERT INTO T VALUES (-2147483649,'')", kNumber},
                                                 {"INSERT INTO T VALUES (1.5,'')", kNumber},
                                                 {"INSERT INTO T VALUES (1e300,'')", kNumber},
                                                 {"INSERT INTO T VALUES ('12a','')", kOther},
                                                 {"INSERT INTO T VALUES ('','')", kOther},
                                                 {"INSERT INTO T VALUES (x'31','')", kOther},
                                                 {"INSERT INTO CHILD VALUES (7)", kRelated},
                                                 {"DELETE FROM T WHERE A=2147483647", kRelated},
                                                 {"DELETE FROM LINKED", kNeedsAccess},
                                                 {"DELETE FROM U", kNoTable},
                                                 {"DELETE FROM sqlite_master", kOther},
                                                 {"DELETE FROM T WHERE C=1", kOther}};
  for (const auto& [sql, kind] : cases) {
    EXPECT_EQ(Refusal(connection, sql), kind) << sql;
  }
  EXPECT_EQ(Refusal(connection, "INSERT INTO LONG VALUES ('" + hyphens + "','" + hyphens + "')"), kTextTooLong);
  connection.Execute("DELETE FROM CHILD");
  EXPECT_EQ(Rows(connection, "SELECT * FROM T ORDER BY A", {"A", "B"}), "-2147483648|彩Ａ彩\n2147483647|912\n");
  EXPECT_EQ(Refusal(connection, "DELETE FROM T WHERE A=2147483647"), std::nullopt);
}

TEST_F(RefusalsTest, OfStatementsThatAccessReadsOtherwise) {
  Make({{"T", {{"A", kLong}, {"B", kText, 20}, {"Yes", kBoolean}}}});
  access::SetProperties(file_, {{"A", "DefaultValue", "=-7"}, {"B", "DefaultValue", "\"a\"\"b\""}});
  Connection connection(FileConnectionString(file_));
  for (const char* condition :
       {"B='x' & 'y'", "B='x'+'y'", "B+'y'='x'", "A=1+B", "A=(1)+(2)", "A=7/2", "B LIKE 'x*'", "B NOT LIKE 'x?'",
        "B LIKE '[x]'", "B LIKE B", "A=#1/2/2003#", "B=\"A\"", "Yes=True", "B=hex(A)", "A=round(2.5)", "B=date()"}) {
    const std::string sql = std::string(" FROM T WHERE ") + condition;
    EXPECT_EQ(Refusal("讀取資料庫", [&] { connection.Open("SELECT *" + sql); }), kOther) << condition;
    EXPECT_EQ(Refusal(connection, "DELETE" + sql), kOther) << condition;
  }
  // Columns that an INSERT does not name get their default values, as Access gives them.
  connection.Execute("INSERT INTO [T] (Yes) VALUES (1) -- & / #");
  connection.Execute("INSERT INTO T (a,B) VALUES (NULL,'x & y/z #*[')");
  connection.Execute("INSERT INTO T VALUES (+3+4, /* \"A\" */ NULL, 0)");
  EXPECT_EQ(Rows(connection, "SELECT * FROM T WHERE B LIKE 'x %' OR A+1=-6 OR T.A=1+T.A-1", {"A", "B", "Yes"}),
            "-7|a\"b|-1\n|x & y/z #*[|0\n7||0\n");
}

TEST_F(RefusalsTest, OfFiles) {
  const auto refusal = [&](const char* name) {
    return Refusal("開啟資料庫", [&] { Connection(FileConnectionString(folder_.Path() / name)); });
  };
  EXPECT_EQ(refusal("missing.mdb"), kMissing);
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "missing.mdb"));
  EXPECT_NE(refusal("."), std::nullopt);  // systems differ in why a folder is no file
  std::ofstream(folder_.Path() / "text.mdb") << std::string(8192, 'x');
  EXPECT_EQ(refusal("text.mdb"), kDamaged);
  access::Database::Create(folder_.Path() / "other.mdb", "Qorvat", {});
  EXPECT_EQ(refusal("other.mdb"), kWrongPassword);
  Make({});
  EXPECT_EQ(refusal("odd.mdb"), std::nullopt);
  std::fstream(file_, std::ios::binary | std::ios::in | std::ios::out).seekp(0x14).put('\x02');
  EXPECT_EQ(refusal("odd.mdb"), kNewerFormat);
}

}  // namespace
}  // namespace marlevo
