// The choices of the print dialog and the check that comes before printing.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "tickets/tickets.h"

namespace marlevo {

// The bet kinds as the print dialog calls them.
inline constexpr std::array<std::string_view, kBetKinds> kSlipKindNames = {"4星正彩", "4星組彩", "3星正彩", "3星組彩",
                                                                           "3星對彩"};

struct KindChoice {
  bool ticked = false;
  double start = 0;  // the range as typed, not rounded
  double end = 0;
  int count = 0;  // tickets in the kind's list
};

// Returns 0 when printing may begin, 5 when no kind is ticked, otherwise 10 x kind + reason. Reasons are 1 start is 0,
// 2 end is 0, 3 end beyond the list, 4 start beyond end. Where several tests fail, the last one on the last kind
// decides. Printing everything needs no check.
int CheckPrintChoices(bool print_all, const std::array<KindChoice, kBetKinds>& kinds);

// The message for a code of CheckPrintChoices; empty for 0.
std::string PrintChoicesMessage(int code);

}  // namespace marlevo
