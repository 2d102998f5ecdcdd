#include "platform/database/connection.h"

#include <fstream>
#include <iterator>
#include <optional>

#include "platform/access/database.h"
#include "platform/database/database_fixture.h"

namespace marlevo {
namespace {

class ConnectionTest : public DatabaseFixture {
 protected:
  Connection connection_{Opening()};
};

const std::vector<std::string> kDraw = {"VOU_NO", "NO1", "NO2", "NO3", "NO4"};
const std::vector<std::string> kCustomer = {"CUSTOM_NO", "CUSTOM_NAME", "TEL1", "TEL2", "MEMO1"};
const std::vector<std::string> kTicket = {"CUSTOM_NO", "SAL_DATE", "PLAY_MODE", "PLAY_AMT", "PLAY_SEQ",
                                          "NO1",       "NO2",      "NO3",       "NO4"};

std::string Ticket(const std::string& customer, const std::string& stamp, const std::string& numbers) {
  return "INSERT INTO CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_MODE,PLAY_AMT,PLAY_SEQ,NO1,NO2,NO3,NO4) VALUES ('" + customer +
         "','" + stamp + "'," + numbers + ")";
}

TEST_F(ConnectionTest, RunsTheStatementsOnDraws) {
  for (const char* values : {"92005,1,2,3,4", "92003,3,0,7,1", "1000000,9,9,9,9"}) {
    connection_.Execute(std::string("INSERT INTO [NUMERIC] (VOU_NO,NO1,NO2,NO3,NO4) VALUES (") + values + ")");
  }
  EXPECT_EQ(Rows(connection_, "SELECT * FROM [NUMERIC] ORDER BY VOU_NO", kDraw),
            "92003|3|0|7|1\n92005|1|2|3|4\n1000000|9|9|9|9\n");
  EXPECT_EQ(Rows(connection_, "SELECT * FROM [NUMERIC] WHERE VOU_NO=092003", kDraw), "92003|3|0|7|1\n");
  EXPECT_EQ(Rows(connection_, "SELECT * FROM [NUMERIC] WHERE VOU_NO=99999999999999999999", kDraw), "");
  connection_.Execute("DELETE FROM [NUMERIC] WHERE VOU_NO=92003");
  connection_.Execute("DELETE FROM [NUMERIC] WHERE VOU_NO=1");
  EXPECT_EQ(Rows(connection_, "SELECT * FROM NUMERIC", {"vou_no"}), "92005\n1000000\n");
}

TEST_F(ConnectionTest, RunsTheStatementsOnCustomers) {
  for (const char* values : {"'b2','林 \"大\" 同','','','a;b -- c'",
                             "'A10','陳小姐','02-23456789','0912345678','老客戶'", "'a9','王先生','','',''"}) {
    connection_.Execute(std::string("INSERT INTO [CUSTOM_H] (CUSTOM_NO,CUSTOM_NAME,TEL1,TEL2,MEMO1) VALUES (") +
                        values + ")");
  }
  EXPECT_EQ(Rows(connection_, "SELECT * FROM [CUSTOM_H] ORDER BY CUSTOM_NO", kCustomer),
            "A10|陳小姐|02-23456789|0912345678|老客戶\na9|王先生|||\nb2|林 \"大\" 同|||a;b -- c\n");
  EXPECT_EQ(Rows(connection_, "SELECT * FROM [CUSTOM_H] WHERE CUSTOM_NO='a10'", {"CUSTOM_NAME"}), "陳小姐\n");
  EXPECT_EQ(Rows(connection_, "SELECT * FROM [CUSTOM_H] WHERE CUSTOM_NO=''", kCustomer), "");
  connection_.Execute("DELETE FROM [CUSTOM_H] WHERE CUSTOM_NO='B2'");
  EXPECT_EQ(Count(connection_, "CUSTOM_H"), 2);
}

TEST_F(ConnectionTest, RunsTheStatementsOnTickets) {
  for (const auto& [customer, stamp, numbers] :
       std::initializer_list<std::array<const char*, 3>>{{"A01", "20021005143012", "2,25,1,2,3,4,0"},
                                                         {"A01", "20021005143012", "0,25,10,1,2,3,4"},
                                                         {"A01", "20021005143012", "0,12.5,9,1,2,3,4"},
                                                         {"A02", "20021005143012", "0,50,1,1,2,3,4"},
                                                         {"A01", "20021006090000", "4,100,1,3,4,0,0"}}) {
    connection_.Execute(Ticket(customer, stamp, numbers));
  }
  EXPECT_EQ(Rows(connection_,
                 "SELECT SAL_DATE,COUNT(CUSTOM_NO) AS SAL_NUM FROM CUSTOM_D WHERE CUSTOM_NO='A01' GROUP BY SAL_DATE",
                 {"SAL_DATE", "SAL_NUM"}),
            "20021005143012|3\n20021006090000|1\n");
  EXPECT_EQ(
      Rows(connection_,
           "SELECT * FROM CUSTOM_D WHERE CUSTOM_NO='A01' AND SAL_DATE='20021005143012' ORDER BY PLAY_MODE,PLAY_SEQ",
           kTicket),
      "A01|20021005143012|0|12.5|9|1|2|3|4\n"
      "A01|20021005143012|0|25|10|1|2|3|4\n"
      "A01|20021005143012|2|25|1|2|3|4|0\n");
  EXPECT_EQ(Rows(connection_,
                 "SELECT * FROM CUSTOM_D WHERE PLAY_MODE=0 AND NO1=1 AND NO2=2 AND NO3=3 AND NO4=4 ORDER BY CUSTOM_NO",
                 {"CUSTOM_NO", "PLAY_AMT"}),
            "A01|25\nA01|12.5\nA02|50\n");
  EXPECT_EQ(Rows(connection_,
                 "SELECT * FROM CUSTOM_D WHERE PLAY_MODE=4 AND NO1=3 AND NO2=4 AND CUSTOM_NO='A01' AND "
                 "SAL_DATE='20021006090000'  ORDER BY CUSTOM_NO",
                 {"PLAY_AMT"}),
            "100\n");
  connection_.Execute("DELETE FROM CUSTOM_D WHERE CUSTOM_NO='A01' AND SAL_DATE='20021005143012'");
  EXPECT_EQ(Count(connection_, "CUSTOM_D"), 2);
  connection_.Execute("DELETE FROM [CUSTOM_D] WHERE CUSTOM_NO='A01'");
  EXPECT_EQ(Rows(connection_, "SELECT * FROM CUSTOM_D", {"CUSTOM_NO"}), "A02\n");
}

TEST_F(ConnectionTest, GivesFieldsAsTextAndNumber) {
  connection_.Execute(
      "INSERT INTO CUSTOM_D (CUSTOM_NO,PLAY_AMT,PLAY_SEQ,NO1,NO2) VALUES ('12x',0.1,-2147483648,300,7)");
  Recordset row = connection_.Open("SELECT *, 9007199254740993 AS BIG FROM CUSTOM_D");
  EXPECT_EQ(row.Text("play_amt"), "0.1");
  EXPECT_EQ(row.Number("CUSTOM_NO"), 12);
  EXPECT_EQ(row.Text("PLAY_SEQ") + row.Text("NO1") + row.Text("NO2"), "-21474836483007");
  EXPECT_EQ(row.Text("BIG"), "9007199254740993");
  EXPECT_TRUE(row.IsNull("SAL_DATE"));
  EXPECT_EQ(row.Text("SAL_DATE") + row.Text("NO3"), "");
  EXPECT_EQ(row.Number("NO3"), 0);
  EXPECT_THROW(row.Text("NO5"), DatabaseError);
  row.MoveNext();
  EXPECT_TRUE(row.AtEnd());
  EXPECT_THROW(row.Text("NO1"), DatabaseError);
}

TEST_F(ConnectionTest, RecordsetsStandApartFromWhatHappensLater) {
  for (int i = 1; i <= 30000; ++i) {  // more than one block of rows
    connection_.Execute(Ticket("A01", "20021005143012", "0,25," + std::to_string(i) + ",1,2,3,4"));
  }
  std::optional<Connection> second(std::in_place, Opening());
  Recordset rows = second->Open("SELECT * FROM CUSTOM_D ORDER BY PLAY_SEQ");
  connection_.Execute("DELETE FROM CUSTOM_D");
  EXPECT_EQ(Count(*second, "CUSTOM_D"), 0);
  second.reset();
  int next = 1;
  for (; !rows.AtEnd(); rows.MoveNext()) {
    ASSERT_EQ(rows.Number("PLAY_SEQ"), next++);
  }
  EXPECT_EQ(next, 30001);
  rows.Close();
  EXPECT_TRUE(rows.AtEnd());
}

TEST_F(ConnectionTest, KeepsWhatItClosed) {
  connection_.Execute(Ticket("A01", "20021005143012", "0,25,1,1,2,3,4"));
  connection_.Close();
  connection_.Close();
  EXPECT_THROW(connection_.Open("SELECT * FROM CUSTOM_D"), DatabaseError);
  EXPECT_THROW(connection_.Flush(), DatabaseError);
  Connection again(Opening());
  EXPECT_EQ(Count(again, "CUSTOM_D"), 1);
}

TEST_F(ConnectionTest, RefusesStatementsThatAreNotItsOwn) {
  connection_.Execute("INSERT INTO [CUSTOM_H] (CUSTOM_NO) VALUES ('A01')");
  for (const char* sql : {
           "",
           "  ;",
           "SELEC * FROM CUSTOM_H",
           "DELETE FROM CUSTOM_H; DELETE FROM CUSTOM_D",
           "DELETE FROM CUSTOM_H WHERE CUSTOM_NO='x'; -- rest",
           "DELETE FROM CUSTOM_H WHERE CUSTOM_NO=\"A01\"",
           "DELETE FROM CUSTOM_H WHERE CUSTOM_NO=A01",
           "DELETE FROM CUSTOM_H WHERE CUSTOM_NO='A'01'",
           "DELETE FROM CUSTOM_X",
           "DELETE FROM MSysObjects",
           "DELETE FROM sqlite_schema",
           "UPDATE sqlite_master SET name='x'",
           "UPDATE CUSTOM_H SET CUSTOM_NAME='x'",
           "INSERT INTO CUSTOM_H (rowid,CUSTOM_NO) VALUES (1,'B')",
           "INSERT INTO CUSTOM_H (CUSTOM_NO,NOBODY) VALUES ('B','C')",
           "INSERT OR REPLACE INTO CUSTOM_H (CUSTOM_NO,TEL1) VALUES ('B')",
           "DELETE FROM CUSTOM_H RETURNING CUSTOM_NO",
           "ATTACH DATABASE 'x.db' AS x",
           "PRAGMA user_version=1",
           "VACUUM",
           "VACUUM INTO 'x.db'",
           "REINDEX",
           "ANALYZE",
           "BEGIN",
           "COMMIT",
           "SAVEPOINT s",
           "CREATE TABLE t (a)",
           "CREATE TEMP TABLE t (a)",
           "CREATE VIEW v AS SELECT * FROM CUSTOM_H",
           "CREATE TRIGGER g AFTER INSERT ON CUSTOM_H BEGIN SELECT 1; END",
           "CREATE VIRTUAL TABLE v USING CUSTOM_H",
           "CREATE INDEX i ON CUSTOM_H (CUSTOM_NO)",
           "DROP TABLE CUSTOM_H",
           "ALTER TABLE CUSTOM_H RENAME TO X",
           "SELECT load_extension('x')",
           "SELECT * FROM CUSTOM_H",
       }) {
    EXPECT_NE(Refusal(connection_, sql), "") << sql;
  }
  EXPECT_NE(Refusal(connection_, std::string("DELETE FROM CUSTOM_H\0 WHERE", 27)), "");
  for (const char* sql : {"DELETE FROM CUSTOM_H", "SELECT * FROM pragma_table_list", "PRAGMA table_list",
                          "SELECT 1; SELECT 2", "SELECT nobody FROM CUSTOM_H",
                          "WITH RECURSIVE r(n) AS (SELECT 1 UNION ALL SELECT n+1 FROM r) SELECT n FROM r"}) {
    EXPECT_THROW(connection_.Open(sql), DatabaseError) << sql;
  }
  EXPECT_EQ(Rows(connection_, " SELECT * FROM CUSTOM_H ; \r\n", {"CUSTOM_NO"}), "A01\n");
}

TEST_F(ConnectionTest, RefusesValuesThatDoNotFitTheirColumn) {
  const std::string letters(50, 'a');
  const std::string characters = [] {
    std::string text;
    for (int i = 0; i < 255; ++i) text += "彩";
    return text;
  }();
  for (const std::string& values :
       {std::string("2147483648,0"), std::string("-2147483649,0"), std::string("1.5,0"), std::string("'12a',0"),
        std::string("'',0"), std::string("1e300,0"), std::string("x'31',0"), std::string("1,99999999999999999999")}) {
    EXPECT_NE(Refusal(connection_, "INSERT INTO NUMERIC (VOU_NO,NO1) VALUES (" + values + ")"), "") << values;
  }
  EXPECT_NE(Refusal(connection_, "INSERT INTO CUSTOM_H (CUSTOM_NO) VALUES ('" + letters + "b')"), "");
  EXPECT_NE(Refusal(connection_, "INSERT INTO CUSTOM_H (MEMO1) VALUES ('" + characters + "券')"), "");
  EXPECT_NE(Refusal(connection_, "INSERT INTO CUSTOM_H (MEMO1) VALUES ('\xFF\xFE')"), "");
  EXPECT_EQ(Count(connection_, "NUMERIC") + Count(connection_, "CUSTOM_H"), 0);

  connection_.Execute("INSERT INTO CUSTOM_H (CUSTOM_NO,MEMO1,TEL1) VALUES ('" + letters + "','" + characters +
                      "',912)");
  EXPECT_EQ(Rows(connection_, "SELECT * FROM CUSTOM_H", {"CUSTOM_NO", "MEMO1", "TEL1"}),
            letters + "|" + characters + "|912\n");
  connection_.Execute("INSERT INTO NUMERIC (VOU_NO,NO1,NO2) VALUES (2147483647,-2147483648,'7')");
  EXPECT_EQ(Rows(connection_, "SELECT * FROM NUMERIC", {"VOU_NO", "NO1", "NO2"}), "2147483647|-2147483648|7\n");
}

TEST_F(ConnectionTest, StatementsOfManyRowsAreAllOrNothing) {
  for (int i = 1; i <= 300; ++i) {
    const std::string amount = i == 299 ? "1.5" : "25";
    connection_.Execute(Ticket("A01", "20021005143012", "0," + amount + ",1,1,2,3,4"));
  }
  // The row that does not fit is the last but one.
  EXPECT_NE(Refusal(connection_, "INSERT INTO NUMERIC (VOU_NO) SELECT PLAY_AMT FROM CUSTOM_D"), "");
  EXPECT_EQ(Count(connection_, "NUMERIC"), 0);
  EXPECT_NE(Refusal(connection_, "INSERT OR FAIL INTO NUMERIC (VOU_NO) SELECT PLAY_AMT FROM CUSTOM_D"), "");
  EXPECT_EQ(Count(connection_, "NUMERIC"), 0);
  connection_.Execute("INSERT INTO NUMERIC (VOU_NO) SELECT PLAY_AMT FROM CUSTOM_D WHERE PLAY_AMT=25");
  EXPECT_EQ(Count(connection_, "NUMERIC"), 299);
  connection_.Execute("DELETE FROM NUMERIC WHERE VOU_NO IN (SELECT PLAY_AMT FROM CUSTOM_D)");
  EXPECT_EQ(Count(connection_, "NUMERIC"), 0);
}

TEST_F(ConnectionTest, ComparesWithoutIndexLikeWithCondition) {
  connection_.Execute(Ticket("Ａ甲", "20021005143012", "0,25,1,1,2,3,4"));
  connection_.Execute("INSERT INTO CUSTOM_D (PLAY_SEQ) VALUES (2)");
  const std::pair<const char*, const char*> cases[] = {
      {"CUSTOM_NO='ａ甲'", "1\n"},
      {"'ａ甲'=CUSTOM_NO", "1\n"},
      {"CUSTOM_NO<>'ａ甲'", ""},
      {"CUSTOM_NO IS NULL", "2\n"},
      {"CUSTOM_NO=''", ""},
      {"CUSTOM_NO=NULL", ""},
      {"PLAY_AMT=25.0", "1\n"},
      {"PLAY_AMT='25'", "1\n"},
      {"PLAY_SEQ=1.0", "1\n"},
      {"PLAY_SEQ='2'", "2\n"},
      {"PLAY_SEQ=1.5", ""},
      {"NO1 IN (1,5)", "1\n"},
      {"SAL_DATE=20021005143012", "1\n"},
      {"CUSTOM_NO='ａ甲' COLLATE BINARY", ""},
  };
  for (const auto& [condition, found] : cases) {
    EXPECT_EQ(Rows(connection_, std::string("SELECT * FROM CUSTOM_D WHERE ") + condition, {"PLAY_SEQ"}), found)
        << condition;
  }
}

// A scan would meet the damaged page.
TEST_F(ConnectionTest, FindsByIndexWithoutAScan) {
  connection_.Close();  // Windows keeps the name of a file that is open
  std::filesystem::remove(file_);
  std::vector<access::TableSchema> tables = NewTables();
  tables.back().indexes = {{.name = "PrimaryKey", .columns = {{"CUSTOM_NO"}, {"PLAY_SEQ"}}, .primary_key = true},
                           {.name = "PLAY_SEQ", .columns = {{"PLAY_SEQ", true}}}};
  access::Database::Create(file_, "qorvat", tables);
  connection_ = Connection(Opening());
  for (int i = 1; i <= 3000; ++i) {
    connection_.Execute(Ticket(std::string("A").append(std::to_string(i / 30)), "20021005143012",
                               "0,25," + std::to_string(i) + ",1,2,3,4"));
  }
  connection_.Close();
  std::uint32_t page = 0;
  {
    const access::Database database = access::Database::Open(file_, {"qorvat", std::nullopt});
    const access::Equals middle{4, 1500};
    access::Cursor row = database.OpenTable("CUSTOM_D").Scan({&middle, 1});
    ASSERT_TRUE(row.Next());
    page = static_cast<std::uint32_t>(row.Row()) >> 8;
  }
  {
    std::fstream file(file_, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(page * std::streamoff{4096}).put('\x02');
  }
  Connection connection(Opening());
  for (const char* sql : {"SELECT * FROM CUSTOM_D", "SELECT * FROM CUSTOM_D WHERE NO1=2",
                          "SELECT * FROM CUSTOM_D WHERE CUSTOM_NO='A50'"}) {
    try {
      connection.Open(sql);
      ADD_FAILURE() << sql;
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.Kind(), Fault::kDamaged) << error.what();
    }
  }
  EXPECT_EQ(Rows(connection, "SELECT COUNT(*) AS N FROM CUSTOM_D WHERE CUSTOM_NO='a7'", {"N"}), "30\n");
  EXPECT_EQ(Rows(connection, "SELECT * FROM CUSTOM_D WHERE CUSTOM_NO='A90' AND PLAY_SEQ=2711", {"NO1"}), "1\n");
  EXPECT_EQ(Rows(connection, "SELECT * FROM CUSTOM_D ORDER BY PLAY_SEQ DESC LIMIT 2", {"PLAY_SEQ"}), "3000\n2999\n");
  connection.Execute("DELETE FROM CUSTOM_D WHERE CUSTOM_NO='A90'");
  EXPECT_EQ(Rows(connection, "SELECT COUNT(*) AS N FROM CUSTOM_D WHERE CUSTOM_NO='A90'", {"N"}), "0\n");
}

TEST(ConnectionOpening, SaysWhyItCannotOpen) {
  testing_support::ScratchFolder folder;
  const auto refused = [&](const std::filesystem::path& file) {
    try {
      Connection connection(FileConnectionString(file));
      return std::string();
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.Attempted(), "開啟資料庫");
      EXPECT_NE(error.Subject(), "");
      EXPECT_NE(error.what(), std::string());
      return std::string(error.what());
    }
  };
  EXPECT_NE(refused(folder.Path() / "missing.mdb"), "");
  EXPECT_FALSE(std::filesystem::exists(folder.Path() / "missing.mdb"));
  EXPECT_NE(refused(folder.Path()), "");

  access::Database::Create(folder.Path() / "other.mdb", "Qorvat", {});
  EXPECT_NE(refused(folder.Path() / "other.mdb").find("password"), std::string::npos);
  access::Database::Create(folder.Path() / "plain.mdb", "", {});
  EXPECT_EQ(refused(folder.Path() / "plain.mdb"), "");

  std::ofstream(folder.Path() / "text.mdb") << std::string(8192, 'x');
  EXPECT_NE(refused(folder.Path() / "text.mdb"), "");
}

// Makes the last table of a new file one that lives elsewhere, by its type in the catalog.
void CallLinked(const std::filesystem::path& file) {
  using namespace std::string_view_literals;
  std::ifstream in(file, std::ios::binary);
  std::string bytes(std::istreambuf_iterator<char>(in), {});
  constexpr auto kLocal = "\x01\x00\x00\x0F\x01\x00"sv;  // all tables' parent, then the type
  const std::size_t at = bytes.find(kLocal);             // rows are stored backwards
  ASSERT_NE(at, std::string::npos);
  bytes[at + 4] = 6;
  std::ofstream(file, std::ios::binary) << bytes;
}

TEST(ConnectionFaults, HaveTheirKind) {
  const testing_support::ScratchFolder folder;
  const std::filesystem::path file = folder.Path() / "kinds.mdb";
  access::Database::Create(
      file, "",
      {{"T",
        {{"A", access::ColumnType::kLong}, {"B", access::ColumnType::kText, 3}},
        {{.name = "K", .columns = {{"A"}}, .primary_key = true}, {.name = "B", .columns = {{"B"}}}}},
       {"LINKED", {{"A", access::ColumnType::kLong}}}});
  CallLinked(file);
  Connection connection(FileConnectionString(file));
  connection.Execute("INSERT INTO T VALUES (1,'abc')");
  const std::pair<const char*, Fault> cases[] = {{"INSERT INTO T VALUES (1,'x')", Fault::kDuplicate},
                                                 {"INSERT INTO T VALUES (2,'abcd')", Fault::kTextTooLong},
                                                 {"INSERT INTO T VALUES (2147483648,'')", Fault::kNumber},
                                                 {"INSERT INTO T VALUES (2,'\xFF')", Fault::kCharacter},
                                                 {"INSERT INTO T VALUES (3,'あ')", Fault::kNeedsAccess},
                                                 {"DELETE FROM LINKED", Fault::kNeedsAccess},
                                                 {"DELETE FROM U", Fault::kNoTable},
                                                 {"DELETE FROM sqlite_master", Fault::kOther},
                                                 {"DELETE FROM T WHERE C=1", Fault::kOther}};
  for (const auto& [sql, kind] : cases) {
    try {
      connection.Execute(sql);
      ADD_FAILURE() << sql;
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.Kind(), kind) << sql << ": " << error.what();
    }
  }
}

TEST(ConnectionColumns, ServesTablesOfEveryColumnType) {
  testing_support::ScratchFolder folder;
  using access::ColumnType;
  const std::filesystem::path file = folder.Path() / "types.mdb";
  access::Database::Create(file, "",
                           {{"Select \"x\"",
                             {{"Yes", ColumnType::kBoolean},
                              {"Order", ColumnType::kByte},
                              {"Short", ColumnType::kInteger},
                              {"Money", ColumnType::kCurrency},
                              {"Single", ColumnType::kSingle},
                              {"When", ColumnType::kDateTime},
                              {"Long text", ColumnType::kMemo}}}});
  Connection connection(FileConnectionString(file));
  connection.Execute(
      "INSERT INTO [Select \"x\"] (Yes,[Order],Short,Money,Single,[When],[Long text]) "
      "VALUES (-1,255,-32768,12.3456,0.5,36526.25,'備註')");
  const std::vector<std::string> fields = {"Yes", "Order", "Short", "Money", "Single", "When", "Long text"};
  EXPECT_EQ(Rows(connection, "SELECT * FROM [Select \"x\"] WHERE Yes=-1 AND Money=12.3456 AND Single=0.5", fields),
            "-1|255|-32768|12.3456|0.5|36526.25|備註\n");
  EXPECT_NE(Refusal(connection, "INSERT INTO [Select \"x\"] ([Order]) VALUES (256)"), "");
}

}  // namespace
}  // namespace marlevo
