// The totals text: what a list holds and costs. Its first line counts all tickets and all money; then every ticked kind
// has a line. Lines end with CR LF, but the line of the last kind, 三星對彩, has no line end.
#pragma once

#include <string>

#include "tickets/tickets.h"

namespace marlevo {

using TicketCounts = PerKind<int>;

// The tickets in all five lists, ticked or not.
TicketCounts CountTickets(const CurrentList& list);

// The text after an expansion that made these tickets.
std::string TotalsText(const CurrentList& list, const TicketCounts& counts);

// The text after a filter, from what the lists hold now. Its labels differ from those of TotalsText ("4星正彩   ").
std::string RecountTotals(const CurrentList& list);

}  // namespace marlevo
