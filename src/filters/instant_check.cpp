#include "filters/instant_check.h"

#include "platform/base/text.h"

namespace marlevo {

namespace {

// Yuan won for each yuan staked on a ticket.
constexpr PerKind<int> kPrizeUnits = {5000, 500, 500, 40, 40};

bool Wins(const Ticket& ticket, int columns, const std::array<int, 4>& drawn) {
  for (int column = 0; column < columns; ++column) {
    if (DigitValue(ticket.cells[column]) != drawn[column]) {
      return false;
    }
  }
  return true;
}

}  // namespace

InstantResult CheckInstantly(CurrentList& list, const std::array<int, 4>& drawn) {
  InstantResult result;
  int all_winners = 0;
  std::vector<std::string> kind_lines;
  for (int kind = 0; kind < kBetKinds; ++kind) {
    KindList& of_kind = list.kinds[kind];
    if (!of_kind.ticked) {
      continue;
    }
    int& winners = result.winners[kind];
    for (Ticket& ticket : of_kind.tickets) {
      const bool wins = Wins(ticket, DigitColumns(kind), drawn);
      ticket.paint = wins ? Paint::kYellow : Paint::kWhite;
      winners += wins ? 1 : 0;
    }
    result.prizes[kind] = std::int64_t{of_kind.amount} * winners * kPrizeUnits[kind];
    all_winners += winners;
    if (winners > 0) {
      kind_lines.push_back(std::string(kBetKindNames[kind]) + " " + WidthMask(std::to_string(winners), 4) + " 張");
    }
  }

  result.lines = {"共中獎 " + std::to_string(all_winners) + "張", std::string(48, '-')};
  result.lines.insert(result.lines.end(), kind_lines.begin(), kind_lines.end());
  return result;
}

}  // namespace marlevo
