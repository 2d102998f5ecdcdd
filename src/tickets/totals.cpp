#include "tickets/totals.h"

#include <string_view>

#include "platform/base/text.h"

namespace marlevo {

namespace {

using Labels = PerKind<std::string_view>;

constexpr Labels kExpandedLabels = {"四星正彩 ", "四星組彩 ", "三星正彩 ", "三星組彩 ", "三星對彩 "};
constexpr Labels kRecountLabels = {"4星正彩   ", "4星組彩", "3星正彩 ", "3星組彩 ", "3星對彩 "};

std::string InField(int number, int width) {
  return WidthMask(std::to_string(number), width);
}

std::string Write(const CurrentList& list, const TicketCounts& counts, const Labels& labels) {
  int tickets = 0;
  int money = 0;
  std::string lines;
  for (int kind = 0; kind < kBetKinds; ++kind) {
    const int amount = list.kinds[kind].amount;
    const int price = amount * counts[kind];
    tickets += counts[kind];
    money += price;
    if (list.kinds[kind].ticked) {
      lines.append(labels[kind]).append(InField(counts[kind], 4)).append("張 Ｘ").append(InField(amount, 3));
      lines.append("元 ＝ ").append(InField(price, 7)).append(kind == kThreePair ? "元" : "元\r\n");
    }
  }
  return "----- 共" + InField(tickets, 5) + "張 需" + InField(money, 8) + "元 -----\r\n" + lines;
}

}  // namespace

TicketCounts CountTickets(const CurrentList& list) {
  TicketCounts counts{};
  for (int kind = 0; kind < kBetKinds; ++kind) {
    counts[kind] = static_cast<int>(list.kinds[kind].tickets.size());
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
