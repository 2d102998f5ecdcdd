#include "filters/instant_check.h"

#include <gtest/gtest.h>

#include "support/ticket_text.h"

namespace marlevo {
namespace {

using test::Lists;
using test::Text;

using Lines = std::vector<std::string>;
const std::string kSeparator(48, '-');

TEST(InstantCheck, PaintsCountsAndLists) {
  CurrentList list = Lists({{0, "1234 4321* 1234"}, {1, "4321"}, {2, "123 321"}, {4, "123"}});
  list.kinds[0].amount = 100;
  list.kinds[3].tickets = test::Tickets("123*");
  const InstantResult result = CheckInstantly(list, {1, 2, 3, 4});
  EXPECT_EQ(result.lines,
            (Lines{"共中獎 4張", kSeparator, "四星正彩    2 張", "三星正彩    1 張", "三星對彩    1 張"}));
  EXPECT_EQ(result.winners, (PerKind<int>{2, 0, 1, 0, 1}));
  EXPECT_EQ(result.prizes, (PerKind<std::int64_t>{1000000, 0, 12500, 0, 1000}));
  EXPECT_EQ(Text(list, 0), "1234* 4321. 1234*");
  EXPECT_EQ(Text(list, 1), "4321.");
  EXPECT_EQ(Text(list, 3), "123*") << "a kind that is not ticked keeps its colours";

  // The next check leaves its own winners only; three digits look at the first three drawn ones.
  EXPECT_EQ(CheckInstantly(list, {3, 2, 1, 9}).lines, (Lines{"共中獎 1張", kSeparator, "三星正彩    1 張"}));
  EXPECT_EQ(Text(list, 0) + " " + Text(list, 2), "1234. 4321. 1234. 123. 321*");
  EXPECT_EQ(CheckInstantly(list, {9, 9, 9, 9}).lines, (Lines{"共中獎 0張", kSeparator}));
}

TEST(InstantCheck, ComparesByNumericValue) {
  CurrentList list = Lists({{1, "0_00 0001"}, {3, "__0"}});
  list.kinds[1].amount = 50;
  const InstantResult result = CheckInstantly(list, {0, 0, 0, 0});
  EXPECT_EQ(result.prizes, (PerKind<std::int64_t>{0, 25000, 0, 1000, 0}));
  EXPECT_EQ(Text(list, 1) + " " + Text(list, 3), "0_00* 0001. __0*");
}

}  // namespace
}  // namespace marlevo
