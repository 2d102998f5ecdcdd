#include "filters/instant_check.h"

#include <gtest/gtest.h>

#include "support/ticket_text.h"

namespace marlevo {
namespace {

using test::Lists;
using test::Text;

using Lines = std::vector<std::string>;

TEST(InstantCheck, PaintsCountsAndLists) {
  const std::string line(48, '-');
  CurrentList list = Lists({{0, "1234 4321* 1234"}, {1, "4321 0_00"}, {2, "123 321"}, {4, "123 __0"}});
  list.kinds[0].amount = 100;
  list.kinds[3].tickets = test::Tickets("123*");
  const InstantResult result = CheckInstantly(list, {1, 2, 3, 4});
  EXPECT_EQ(result.lines, (Lines{"共中獎 4張", line, "四星正彩    2 張", "三星正彩    1 張", "三星對彩    1 張"}));
  EXPECT_EQ(result.winners, (PerKind<int>{2, 0, 1, 0, 1}));
  EXPECT_EQ(result.prizes, (PerKind<std::int64_t>{1000000, 0, 12500, 0, 1000}));
  EXPECT_EQ(Text(list, 0) + Text(list, 1), "1234* 4321. 1234*4321. 0_00.");
  EXPECT_EQ(Text(list, 3), "123*") << "a kind that is not ticked keeps its colours";

  // The next check leaves its own winners only; three digits look at the first three drawn ones, and nothing is 0.
  EXPECT_EQ(CheckInstantly(list, {3, 2, 1, 9}).lines, (Lines{"共中獎 1張", line, "三星正彩    1 張"}));
  EXPECT_EQ(Text(list, 0) + Text(list, 2), "1234. 4321. 1234.123. 321*");
  EXPECT_EQ(CheckInstantly(list, {0, 0, 0, 0}).prizes, (PerKind<std::int64_t>{0, 12500, 0, 0, 1000}));
  EXPECT_EQ(Text(list, 1) + Text(list, 4), "4321. 0_00*123. __0*");
  EXPECT_EQ(CheckInstantly(list, {9, 9, 9, 9}).lines, (Lines{"共中獎 0張", line}));
}

}  // namespace
}  // namespace marlevo
