#include "tickets/totals.h"

#include <string_view>

#include "platform/base/text.h"

namespace marlevo {

namespace {

using Labels = std::array<std::string_view, kBetKinds>;

constexpr Labels kExpandedLabels = {"四星正彩 ", "四星組彩 ", "三星正彩 ", "三星組彩 ", "三星對彩 "};
constexpr Labels kRecountLabels = {"4星正彩   ", "4星組彩", "3星正彩 ", "3星組彩 ", "3星對彩 "};

std::string Write(const CurrentList& list, const TicketCounts& counts, const Labels& labels) {
  double tickets = 0;
  double money = 0;
  std::string lines;
  for (std::size_t kind = 0; kind < kBetKinds; ++kind) {
    const double amount = LenientNumber(list.kinds[kind].amount);
    const double price = amount * counts[kind];
    tickets += counts[kind];
    money += price;
    if (list.kinds[kind].ticked) {
      lines.append(labels[kind]).append(WidthMask(NumberText(counts[kind]), 4)).append("張 Ｘ");
      lines.append(WidthMask(NumberText(amount), 3)).append("元 ＝ ").append(WidthMask(NumberText(price), 7));
      lines.append(kind == kThreePair ? "元" : "元\r\n");
    }
  }
  return "----- 共" + WidthMask(NumberText(tickets), 5) + "張 需" + WidthMask(NumberText(money), 8) + "元 -----\r\n" +
         lines;
}

}  // namespace

TicketCounts CountTickets(const CurrentList& list) {
  TicketCounts counts{};
  for (std::size_t kind = 0; kind < kBetKinds; ++kind) {
    counts[kind] = static_cast<double>(list.kinds[kind].tickets.size());
  }
  return counts;
}

std::string TotalsText(const CurrentList& list, const TicketCounts& counts) {
  return Write(list, counts, kExpandedLabels);
}

std::string RecountTotals(const CurrentList& list) {
  return Write(list, CountTickets(list), kRecountLabels);
}

}  // namespace marlevo
