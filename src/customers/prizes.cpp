#include "customers/prizes.h"

#include "platform/base/text.h"

namespace marlevo {

std::string PrizeLine(const Winner& winner) {
  const PrizeClass& prize = kPrizeClasses[winner.mode];
  return winner.customer_no + " " + std::string(prize.name) + "中獎 " + NumberText(winner.stake * prize.multiplier) +
         " 元 !!";
}

}  // namespace marlevo
