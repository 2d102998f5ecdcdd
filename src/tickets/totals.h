// The totals text: what a list holds and costs.
#pragma once

#include <array>
#include <string>

#include "tickets/tickets.h"

namespace marlevo {

using TicketCounts = std::array<double, kBetKinds>;

// The text after an expansion, which counts as it goes: a header line with all tickets and all money, then a line for
// every ticked kind. Lines end with CR LF, except that of the last kind.
std::string TotalsText(const CurrentList& list, const TicketCounts& counts);

}  // namespace marlevo
