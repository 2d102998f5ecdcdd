// A disk that fills up in the middle of one statement.
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

}  // namespace
}  // namespace marlevo
