#include "customers/prizes.h"

#include "platform/text/text.h"

namespace marlevo {

std::string PrizeLine(std::string_view customer_no, const PrizeClass& prize, std::string_view stake) {
  std::string line(customer_no);
  line.append(" ").append(prize.name).append("中獎 ");
  return line + NumberText(LenientNumber(stake) * prize.multiplier) + " 元 !!";
}

}  // namespace marlevo
