// From picks to tickets. The normal expansion crosses every choice of columns in increasing order; the orderings
// expansion takes the first picked digits in all their orders. Neither shows anything: the board does that around them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "board/selection.h"
#include "tickets/tickets.h"
#include "tickets/totals.h"

namespace marlevo {

// Replaces the tickets of all five kinds, takes over which kinds are ticked, leaves amounts and multipliers alone, and
// returns the number of tickets made of each kind. `picks` has passed CheckSelection.
//
// Each three-digit and each four-digit number comes once per kind, in the order of the first choice of columns that
// gives it and, inside a choice, of its digits. Box and pair kinds get the same numbers as the straight kind.
TicketCounts ExpandTickets(const Selection& picks, CurrentList& list);

// As above with all distinct orderings of the first four picked digits for 四星正彩 and of the first three for
// 三星正彩, counted from column 1 on and inside a column from digit 0 up; the other kinds get no tickets.
// std::out_of_range when a ticked kind finds too few digits, which picks that have passed CheckSelection never do.
TicketCounts ExpandOrderings(const Selection& picks, CurrentList& list);

// The tickets of a running expansion, in order. They are the same for all kinds of three and of four digits.
struct Expansion {
  TicketList threes;
  TicketList fours;
  // Entry n tells what has been made of the three digits n: bit w, the four-digit number 10 n + w; bit 10, n itself.
  std::array<std::uint16_t, 1000> made{};
};

// Adds the tickets of one choice of columns: the three-digit numbers of the first three, the four-digit numbers of all
// four. An empty fourth column gives three-digit numbers only.
void ExpandColumnSet(DigitSet first, DigitSet second, DigitSet third, DigitSet fourth, Expansion& expansion);

// The distinct orderings of four digits, each joined by "-" ("1-1-2-3"), in first-made order.
std::vector<std::string> OrderingsOfFour(std::string_view a, std::string_view b, std::string_view c,
                                         std::string_view d);

// Adds those of three digits, each after `prefix`, to `orderings` where they are not in it yet.
void OrderingsOfThree(std::string_view prefix, std::string_view a, std::string_view b, std::string_view c,
                      std::vector<std::string>& orderings);

}  // namespace marlevo
