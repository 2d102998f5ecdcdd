// From picks to tickets. The normal expansion takes one digit each from three or four columns, in every way there is;
// the orderings expansion takes the first picked digits in all their orders.
#pragma once

#include "board/selection.h"
#include "tickets/tickets.h"
#include "tickets/totals.h"

namespace marlevo {

// Replaces the tickets of all five kinds, takes over which kinds are ticked, leaves amounts and multipliers alone, and
// returns how many tickets each kind has got. `picks` has passed CheckSelection.
//
// A number comes once in a list however many choices of columns give it. The picks 1, 2, 3 and 4 in columns 1 to 4 give
// the four-digit ticket 1234 and the three-digit tickets 123 124 134 234. Box and pair kinds get the same tickets as
// the straight kind of as many digits.
TicketCounts ExpandTickets(const Selection& picks, CurrentList& list);

// The same with all distinct orderings of the first four picked digits for 四星正彩 and of the first three for
// 三星正彩, counted from column 1 on and inside a column from digit 0 up; the other kinds get no tickets. Throws
// std::out_of_range when a ticked kind finds too few digits, which picks that have passed CheckSelection never do.
TicketCounts ExpandOrderings(const Selection& picks, CurrentList& list);

}  // namespace marlevo
