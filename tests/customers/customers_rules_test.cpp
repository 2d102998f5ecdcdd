#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "customers/customer_statements.h"
#include "customers/prizes.h"
#include "platform/errors/operation_error.h"

namespace marlevo {
namespace {

TEST(RecordLine, IsReadBackAsItsStamp) {
  const std::pair<const char*, const char*> cases[] = {
      {"20021005143012", "2002/10/05-14:30:12    12張"},
      {"021005143012", "0002/10/05-14:30:12    12張"},      // filled from the right
      {"0020021005143012", "2002/10/05-14:30:12    12張"},  // as a number it has no leading zeros
      {"120021005143012", "12002/10/05-14:30:12    12張"},
      {"", "0000/00/00-00:00:00    12張"},
      {"afternoon", "afternoon    12張"}};
  for (const auto& [stamp, line] : cases) {
    EXPECT_EQ(RecordLine(stamp, "12"), line) << stamp;
  }
  EXPECT_EQ(RecordLine("20021005143012", "123456"), "2002/10/05-14:30:12 123456張");
  EXPECT_EQ(TicketsOfLine("2002/10/05-14:30:12 123456張"), 123456);

  const std::pair<const char*, const char*> ways_back[] = {
      {"2002/10/05-14:30:12    12張", "20021005143012"},
      {"12002/10/05-14:30:12    12張", "120021005143012"},
      {"  早上的記錄  ", "早上的記錄"},
      {"一二三四五六七八九十一二三四五六七八九十張", "一二三四五六七八九十一二三四五六七八九十"},
      {"", ""},
      {"   ", ""}};
  for (const auto& [line, stamp] : ways_back) {
    EXPECT_EQ(StampOfLine(line), stamp) << line;
  }
}

TEST(CustomerStatements, RefuseWhatWouldBreakThem) {
  const std::string quote = "x' OR 'a'='a";
  const StoredTicket ticket{0, "25", 1, {}};
  const StoredTicket unpriced{0, "", 1, {}};
  EXPECT_THROW(SelectCustomer(quote), DatabaseError);
  EXPECT_THROW(InsertCustomer({"A01", "", "", "", quote}), DatabaseError);
  EXPECT_THROW(DeleteCustomer(quote), DatabaseError);
  EXPECT_THROW(DeletePurchases(quote), DatabaseError);
  EXPECT_THROW(SelectRecords(quote), DatabaseError);
  EXPECT_THROW(SelectRecord("A01", quote), DatabaseError);
  EXPECT_THROW(DeleteRecord(quote, "20021005143012"), DatabaseError);
  EXPECT_THROW(InsertTicket(quote, "20021005143012", ticket), DatabaseError);
  EXPECT_THROW(InsertTicket("A01", "20021005143012", unpriced), DatabaseError);
  EXPECT_THROW(SelectWinners(0, {"1", "", "3", "4"}, {}), DatabaseError);
  EXPECT_THROW(SelectWinners(0, {"1", "2", "3", "4 OR 1=1"}, {}), DatabaseError);
  EXPECT_THROW(SelectWinners(0, {"1", "2", "3", "4"}, {quote, {}}), DatabaseError);
}

TEST(PrizeLine, TakesAnyStake) {
  EXPECT_EQ(PrizeLine("王", kPrizeClasses[1], "0.5"), "王 前三彩中獎 250 元 !!");
  EXPECT_EQ(PrizeLine("", kPrizeClasses[2], ""), " 後三彩中獎 0 元 !!");
  EXPECT_EQ(PrizeLine("A01", kPrizeClasses[4], "0.001"), "A01 後對彩中獎 0.04 元 !!");
}

}  // namespace
}  // namespace marlevo
