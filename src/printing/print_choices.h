// What the print dialog asks for, checked.
#pragma once

#include <array>
#include <string>

#include "tickets/tickets.h"

namespace marlevo {

struct KindChoice {
  bool ticked = false;
  double start = 0;  // as typed; not rounded
  double end = 0;
  int count = 0;  // tickets in the kind's list
};

// 0 when printing may begin, otherwise 10 x kind + reason, of the last test that failed on the last kind that failed:
// 1 start is 0, 2 end is 0, 3 end beyond the list, 4 start beyond end; 5 when no kind is ticked. Printing everything is
// never checked.
int CheckPrintChoices(bool print_all, const std::array<KindChoice, kBetKinds>& kinds);

// What the operator is told about such a code; empty for 0.
std::string PrintChoicesMessage(int code);

}  // namespace marlevo
