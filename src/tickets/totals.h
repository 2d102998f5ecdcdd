// The totals text: what a list holds and costs. A header line with all tickets and all money, then a line for every
// ticked kind. Lines end with CR LF, except that of the last kind.
#pragma once

#include <array>
#include <string>

#include "tickets/tickets.h"

namespace marlevo {

// Tickets of each kind.
using TicketCounts = std::array<double, kBetKinds>;

// The tickets in all five lists, ticked or not.
TicketCounts CountTickets(const CurrentList& list);

// The text after an expansion, from its own counts.
std::string TotalsText(const CurrentList& list, const TicketCounts& counts);

// The text after a filter, from what the lists hold now. Its lines carry labels of their own ("4星正彩   ").
std::string RecountTotals(const CurrentList& list);

}  // namespace marlevo
