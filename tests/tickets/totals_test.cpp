#include "tickets/totals.h"

#include <gtest/gtest.h>

namespace marlevo {
namespace {

TEST(Totals, AreWrittenToTheLetter) {
  CurrentList list;
  for (KindList& kind : list.kinds) {
    kind = {.ticked = true, .tickets = TicketList(3), .amount = 50};
  }
  list.kinds[2].amount = 1250;
  EXPECT_EQ(TotalsText(list, {24, 0, 10000, 6, 1}),
            "----- 共10031張 需12501550元 -----\r\n"
            "四星正彩   24張 Ｘ 50元 ＝    1200元\r\n"
            "四星組彩    0張 Ｘ 50元 ＝       0元\r\n"
            "三星正彩 10000張 Ｘ1250元 ＝ 12500000元\r\n"
            "三星組彩    6張 Ｘ 50元 ＝     300元\r\n"
            "三星對彩    1張 Ｘ 50元 ＝      50元");
  list.kinds[3].ticked = false;  // its tickets are still there
  EXPECT_EQ(RecountTotals(list),
            "----- 共   15張 需    4350元 -----\r\n"
            "4星正彩      3張 Ｘ 50元 ＝     150元\r\n"
            "4星組彩   3張 Ｘ 50元 ＝     150元\r\n"
            "3星正彩    3張 Ｘ1250元 ＝    3750元\r\n"
            "3星對彩    3張 Ｘ 50元 ＝     150元");
}

}  // namespace
}  // namespace marlevo
