#include "platform/database/connection.h"

#include <fstream>
#include <optional>

#include "platform/access/database/database.h"
#include "platform/database/database_fixture.h"

namespace marlevo {
namespace {

class ConnectionTest : public DatabaseFixture {
 protected:
  Connection connection_{Opening()};
};

std::string Ticket(const std::string& customer, const std::string& stamp, const std::string& numbers) {
  return "INSERT INTO CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_MODE,PLAY_AMT,PLAY_SEQ,NO1,NO2,NO3,NO4) VALUES ('" + customer +
         "','" + stamp + "'," + numbers + ")";
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
}

TEST_F(ConnectionTest, DoesNothingWhenClosed) {
  connection_.Close();
  connection_.Close();
  EXPECT_THROW(connection_.Open("SELECT * FROM CUSTOM_D"), DatabaseError);
  EXPECT_THROW(connection_.Flush(), DatabaseError);
}

TEST_F(ConnectionTest, RefusesStatementsThatAreNotItsOwn) {
  connection_.Execute("INSERT INTO [CUSTOM_H] (CUSTOM_NO) VALUES ('a;b -- \"c\"')");
  for (const char* sql :
       {"", "  ;", "SELEC * FROM CUSTOM_H", "DELETE FROM CUSTOM_H; DELETE FROM CUSTOM_D",
        "DELETE FROM CUSTOM_H WHERE CUSTOM_NO='x'; -- rest", "DELETE FROM CUSTOM_H WHERE CUSTOM_NO=\"A01\"",
        "DELETE FROM CUSTOM_H WHERE CUSTOM_NO=A01", "DELETE FROM MSysObjects", "UPDATE sqlite_master SET name='x'",
        "UPDATE CUSTOM_H SET CUSTOM_NAME='x'", "INSERT INTO CUSTOM_H (rowid,CUSTOM_NO) VALUES (1,'B')",
        "DELETE FROM CUSTOM_H RETURNING CUSTOM_NO", "SELECT * FROM CUSTOM_H", "ATTACH DATABASE 'x.db' AS x",
        "VACUUM INTO 'x.db'", "BEGIN", "CREATE TABLE t (a)", "CREATE VIRTUAL TABLE v USING CUSTOM_H",
        "DROP TABLE CUSTOM_H"}) {
    EXPECT_TRUE(Refusal(connection_, sql)) << sql;
  }
  EXPECT_TRUE(Refusal(connection_, std::string("DELETE FROM CUSTOM_H\0 WHERE", 27)));
  for (const char* sql : {"DELETE FROM CUSTOM_H", "SELECT * FROM pragma_table_list", "PRAGMA table_list",
                          "SELECT 1; SELECT 2", "SELECT nobody FROM CUSTOM_H", "SELECT load_extension('x')",
                          "WITH RECURSIVE r(n) AS (SELECT 1 UNION ALL SELECT n+1 FROM r) SELECT n FROM r"}) {
    EXPECT_THROW(connection_.Open(sql), DatabaseError) << sql;
  }
  EXPECT_EQ(Rows(connection_, " SELECT * FROM CUSTOM_H ; \r\n", {"CUSTOM_NO"}), "a;b -- \"c\"\n");
}

TEST_F(ConnectionTest, StatementsOfManyRowsAreAllOrNothing) {
  for (int i = 1; i <= 300; ++i) {
    const std::string amount = i == 299 ? "1.5" : "25";
    connection_.Execute(Ticket("A01", "20021005143012", "0," + amount + ",1,1,2,3,4"));
  }
  // The row that does not fit is the last but one.
  EXPECT_TRUE(Refusal(connection_, "INSERT INTO NUMERIC (VOU_NO) SELECT PLAY_AMT FROM CUSTOM_D"));
  EXPECT_EQ(Count(connection_, "NUMERIC"), 0);
  EXPECT_TRUE(Refusal(connection_, "INSERT OR FAIL INTO NUMERIC (VOU_NO) SELECT PLAY_AMT FROM CUSTOM_D"));
  EXPECT_EQ(Count(connection_, "NUMERIC"), 0);
  connection_.Execute("INSERT INTO NUMERIC (VOU_NO) SELECT PLAY_AMT FROM CUSTOM_D WHERE PLAY_AMT=25");
  EXPECT_EQ(Count(connection_, "NUMERIC"), 299);
  connection_.Execute("DELETE FROM NUMERIC WHERE VOU_NO IN (SELECT PLAY_AMT FROM CUSTOM_D)");
  EXPECT_EQ(Count(connection_, "NUMERIC"), 0);
}

// What random comparisons never meet.
TEST_F(ConnectionTest, ComparesAsTheColumnDoes) {
  connection_.Execute(Ticket("Ａ甲", "20021005143012", "0,25,1,1,2,3,4"));
  connection_.Execute("INSERT INTO CUSTOM_D (PLAY_SEQ) VALUES (2)");
  const std::pair<const char*, const char*> cases[] = {{"CUSTOM_NO='ａ甲'", "1\n"},
                                                       {"'ａ甲'=CUSTOM_NO", "1\n"},
                                                       {"CUSTOM_NO<>'ａ甲'", ""},
                                                       {"CUSTOM_NO='ａ甲' COLLATE BINARY", ""},
                                                       {"SAL_DATE=20021005143012", "1\n"},
                                                       {"PLAY_SEQ=1.0", "1\n"},
                                                       {"PLAY_SEQ='2'", "2\n"},
                                                       {"PLAY_SEQ=99999999999999999999", ""}};
  for (const auto& [condition, found] : cases) {
    const std::string sql = std::string("SELECT * FROM CUSTOM_D WHERE ") + condition;
    EXPECT_EQ(Rows(connection_, sql, {"PLAY_SEQ"}), found) << condition;
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
    EXPECT_EQ(Refusal("讀取資料庫", [&] { connection.Open(sql); }), Fault::kDamaged) << sql;
  }
  EXPECT_EQ(Rows(connection, "SELECT COUNT(*) AS N FROM CUSTOM_D WHERE CUSTOM_NO='a7'", {"N"}), "30\n");
  EXPECT_EQ(Rows(connection, "SELECT * FROM CUSTOM_D WHERE CUSTOM_NO='A90' AND PLAY_SEQ=2711", {"NO1"}), "1\n");
  EXPECT_EQ(Rows(connection, "SELECT * FROM CUSTOM_D ORDER BY PLAY_SEQ DESC LIMIT 2", {"PLAY_SEQ"}), "3000\n2999\n");
  connection.Execute("DELETE FROM CUSTOM_D WHERE CUSTOM_NO='A90'");
  EXPECT_EQ(Rows(connection, "SELECT COUNT(*) AS N FROM CUSTOM_D WHERE CUSTOM_NO='A90'", {"N"}), "0\n");
}

TEST_F(ConnectionTest, RefusesAndOpensAnewWhatAnotherProgramHasChanged) {
  const auto insert = [&](Connection& connection) {
    return Refusal(connection, Ticket("A01", "20021005143012", "0,25,1,1,2,3,4"));
  };
  const std::filesystem::path backup = folder_.Path() / "backup.mdb";
  std::filesystem::copy_file(file_, backup);
  Connection other(Opening());
  EXPECT_EQ(insert(connection_), std::nullopt);
  EXPECT_EQ(insert(other), std::nullopt);
  other.Flush();
  EXPECT_EQ(insert(other), std::nullopt);
  std::filesystem::rename(file_, folder_.Path() / "old.mdb");  // Windows lets nobody put a file in an open one's place
  std::filesystem::rename(backup, file_);
  // What had been flushed is in the file that is gone; the rest is refused, and can be done again.
  EXPECT_EQ(Refusal("讀取資料庫", [&] { Count(connection_, "CUSTOM_D"); }), Fault::kChanged);
  EXPECT_EQ(Count(connection_, "CUSTOM_D"), 0);
  EXPECT_EQ(Refusal("寫入資料庫", [&] { other.Flush(); }), Fault::kChanged);
  EXPECT_EQ(insert(other), std::nullopt);
  EXPECT_EQ(insert(connection_), std::nullopt);
  connection_.Flush();
  other.Flush();
  std::filesystem::rename(file_, folder_.Path() / "moved.mdb");
  EXPECT_EQ(insert(other), Fault::kChanged);
  EXPECT_EQ(Refusal("開啟資料庫", [&] { other.Execute("DELETE FROM CUSTOM_D"); }), Fault::kMissing);
}

TEST_F(ConnectionTest, ServesTablesOfEveryColumnType) {
  using enum access::ColumnType;
  const std::filesystem::path file = folder_.Path() / "types.mdb";
  access::Database::Create(file, "",
                           {{"Select \"x\"",
                             {{"Yes", kBoolean},
                              {"Order", kByte},
                              {"Short", kInteger},
                              {"Money", kCurrency},
                              {"Single", kSingle},
                              {"When", kDateTime},
                              {"Long text", kMemo}}}});
  Connection connection(FileConnectionString(file));
  connection.Execute("INSERT INTO [Select \"x\"] VALUES (-1,255,-32768,12.3456,0.5,36526.25,'備註')");
  const std::vector<std::string> fields = {"Yes", "Order", "Short", "Money", "Single", "When", "Long text"};
  EXPECT_EQ(Rows(connection, "SELECT * FROM [Select \"x\"] WHERE Yes=-1 AND Money=12.3456 AND Single=0.5", fields),
            "-1|255|-32768|12.3456|0.5|36526.25|備註\n");
  EXPECT_EQ(Refusal(connection, "INSERT INTO [Select \"x\"] ([Order]) VALUES (256)"), Fault::kNumber);
}

}  // namespace
}  // namespace marlevo
