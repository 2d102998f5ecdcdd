#include "tickets/totals.h"

#include <string_view>

#include "platform/text/text.h"

namespace marlevo {

std::string TotalsText(const CurrentList& list, const TicketCounts& counts) {
  double tickets = 0;
  double money = 0;
  std::string lines;
  for (int kind = 0; kind < kBetKinds; ++kind) {
    const auto index = static_cast<std::size_t>(kind);
    const KindList& of_kind = list.kinds[index];
    const double amount = LenientNumber(of_kind.amount);
    tickets += counts[index];
    money += amount * counts[index];
    if (of_kind.ticked) {
      lines += std::string(kBetKindNames[index]) + " " + WidthMask(NumberText(counts[index]), 4) + "張 Ｘ" +
               WidthMask(NumberText(amount), 3) + "元 ＝ " + WidthMask(NumberText(amount * counts[index]), 7) + "元" +
               (kind == kThreePair ? "" : "\r\n");
    }
  }
  return "----- 共" + WidthMask(NumberText(tickets), 5) + "張 需" + WidthMask(NumberText(money), 8) + "元 -----\r\n" +
         lines;
}

}  // namespace marlevo
