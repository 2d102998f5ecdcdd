// A disk that fills up in the middle of one statement.
#include "platform/access/database/database.h"
#include "platform/database/database_fixture.h"
#include "support/file_size_limit.h"

namespace marlevo {
namespace {

using DiskFullTest = DatabaseFixture;

TEST_F(DiskFullTest, EveryConnectionLearnsThatItsStatementsAreUndone) {
  const std::string insert = "INSERT INTO CUSTOM_D (CUSTOM_NO) VALUES ('A01')";
  const auto flush = [](Connection& connection) { return Refusal("寫入資料庫", [&] { connection.Flush(); }); };
  Connection one(Opening());
  Connection two(Opening());
  one.Execute(insert);
  two.Flush();
  EXPECT_EQ(flush(one), std::nullopt);
  one.Execute(insert);
  two.Execute(insert);
  {
    const FileSizeLimit limit(1000);
    EXPECT_EQ(flush(two), Fault::kDiskFull);
  }
  two.Execute(insert);
  EXPECT_EQ(flush(one), Fault::kDiskFull);
  EXPECT_EQ(flush(one), std::nullopt);
  EXPECT_EQ(Count(one, "CUSTOM_D"), 2);
}

TEST_F(DiskFullTest, AStatementThatFindsNoRoomOnItsWayChangesNothing) {
  constexpr int kRows = 1 << 18;  // more pages than one statement keeps in memory
  const std::string remove = "DELETE FROM CUSTOM_D WHERE CUSTOM_NO='A01'";
  Connection connection(Opening());
  connection.Execute("INSERT INTO CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_SEQ) VALUES ('A01','20021005143012',1)");
  for (int rows = 1; rows < kRows; rows *= 2) {
    connection.Execute("INSERT INTO CUSTOM_D SELECT * FROM CUSTOM_D");
  }
  connection.Flush();
  {
    // The originals of all pages take a little more room than the pages.
    const FileSizeLimit limit(std::filesystem::file_size(file_));
    EXPECT_EQ(Refusal(connection, remove), Fault::kDiskFull);
  }
  EXPECT_EQ(Count(connection, "CUSTOM_D"), kRows);
  connection.Close();
  EXPECT_EQ(access::Database::Open(file_, {"qorvat", std::nullopt}).FindFaults(), std::vector<std::string>());
  connection = Connection(Opening());
  EXPECT_EQ(Count(connection, "CUSTOM_D"), kRows);
  connection.Execute(remove);
  EXPECT_EQ(Count(connection, "CUSTOM_D"), 0);
}

}  // namespace
}  // namespace marlevo
