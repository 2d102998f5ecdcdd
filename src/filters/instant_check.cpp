#include "filters/instant_check.h"

#include "platform/base/text.h"

namespace marlevo {

namespace {

// Yuan won for each yuan staked on a ticket.
constexpr std::array<double, kBetKinds> kPrizeUnits = {5000, 500, 500, 40, 40};

}  // namespace

InstantResult CheckInstantly(CurrentList& list, const std::array<std::string, 4>& drawn) {
  std::array<double, 4> numbers{};
  for (std::size_t place = 0; place < numbers.size(); ++place) {
    numbers[place] = LenientNumber(drawn[place]);
  }

  InstantResult result;
  double winners = 0;
  std::vector<std::string> kind_lines;
  for (int kind = 0; kind < kBetKinds; ++kind) {
    const auto index = static_cast<std::size_t>(kind);
    KindList& of_kind = list.kinds[index];
    if (!of_kind.ticked) {
      continue;
    }
    const auto columns = static_cast<std::size_t>(DigitColumns(kind));
    double& count = result.winners[index];
    for (Ticket& ticket : of_kind.tickets) {
      std::size_t place = 0;
      while (place < columns && DigitValue(ticket.cells[place]) == numbers[place]) {
        ++place;
      }
      const bool wins = place == columns;
      ticket.paint = wins ? Paint::kYellow : Paint::kWhite;
      count += wins ? 1 : 0;
    }
    result.prizes[index] = LenientNumber(of_kind.amount) * count * kPrizeUnits[index];
    winners += count;
    if (count > 0) {
      kind_lines.push_back(std::string(kBetKindNames[index]) + " " + WidthMask(NumberText(count), 4) + " 張");
    }
  }

  result.lines = {"共中獎 " + NumberText(winners) + "張", std::string(48, '-')};
  result.lines.insert(result.lines.end(), kind_lines.begin(), kind_lines.end());
  return result;
}

}  // namespace marlevo
