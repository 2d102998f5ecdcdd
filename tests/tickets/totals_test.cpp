#include "tickets/totals.h"

#include <gtest/gtest.h>

namespace marlevo {
namespace {

TEST(Totals, AreWrittenToTheLetter) {
  CurrentList list;
  list.kinds[0].ticked = true;
  list.kinds[2] = {.ticked = true, .tickets = {}, .amount = 100};
  EXPECT_EQ(TotalsText(list, {24, 0, 6, 0, 0}),
            "----- 共   30張 需    1200元 -----\r\n"
            "四星正彩   24張 Ｘ 25元 ＝     600元\r\n"
            "三星正彩    6張 Ｘ100元 ＝     600元\r\n");
  list.kinds = {};
  list.kinds[4] = {.ticked = true, .tickets = {}, .amount = 1250};
  EXPECT_EQ(TotalsText(list, {0, 0, 0, 0, 10000}),
            "----- 共10000張 需12500000元 -----\r\n"
            "三星對彩 10000張 Ｘ1250元 ＝ 12500000元");
  EXPECT_EQ(TotalsText(list, {}),
            "----- 共    0張 需       0元 -----\r\n"
            "三星對彩    0張 Ｘ1250元 ＝       0元");
}

TEST(Totals, RecountTakesAllListsAndItsOwnLabels) {
  CurrentList list;
  for (KindList& kind : list.kinds) {
    kind = {.ticked = true, .tickets = TicketList(3), .amount = 50};
  }
  list.kinds[2].ticked = false;
  EXPECT_EQ(RecountTotals(list),
            "----- 共   15張 需     750元 -----\r\n"
            "4星正彩      3張 Ｘ 50元 ＝     150元\r\n"
            "4星組彩   3張 Ｘ 50元 ＝     150元\r\n"
            "3星組彩    3張 Ｘ 50元 ＝     150元\r\n"
            "3星對彩    3張 Ｘ 50元 ＝     150元");
}

}  // namespace
}  // namespace marlevo
