#include "board/expansion.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <utility>
#include <vector>

namespace marlevo {

namespace {

constexpr int kLastColumn = kPickColumns;
constexpr unsigned kThreeDigitsMade = 1U << 10;

template <typename Visit>
void ForEachDigit(unsigned digits, Visit visit) {
  for (; digits != 0; digits &= digits - 1) {
    visit(std::countr_zero(digits));
  }
}

char DigitText(int digit) {
  return static_cast<char>('0' + digit);
}

// Gives every ticked kind its tickets and every other kind none.
TicketCounts Replace(const Selection& picks, const PerKind<const TicketList*>& tickets, CurrentList& list) {
  for (int kind = 0; kind < kBetKinds; ++kind) {
    list.kinds[kind].ticked = picks.kinds[kind];
    list.kinds[kind].tickets = picks.kinds[kind] ? *tickets[kind] : TicketList{};
  }
  return CountTickets(list);
}

// The tickets of an expansion so far, in order.
struct Expansion {
  TicketList threes;
  TicketList fours;
  // What has been made of the three digits n (0 to 999). Bit w, 0 to 9: the four-digit number 10 n + w; bit 10: the
  // three-digit number n itself.
  std::array<std::uint16_t, 1000> made{};
};

// Adds the tickets of one choice of columns: the three-digit numbers of the first three, the four-digit numbers of all
// four. An empty fourth column gives three-digit numbers only.
void ExpandColumnSet(DigitSet first, DigitSet second, DigitSet third, DigitSet fourth, Expansion& expansion) {
  const unsigned wanted = fourth | kThreeDigitsMade;
  ForEachDigit(first, [&](int x) {
    ForEachDigit(second, [&](int y) {
      ForEachDigit(third, [&](int z) {
        // One operation finds what is new for all fourth digits: most choices of columns bring nothing new.
        std::uint16_t& made = expansion.made[100 * x + 10 * y + z];
        const unsigned fresh = wanted & ~unsigned{made};
        if (fresh == 0) {
          return;
        }
        made = static_cast<std::uint16_t>(made | fresh);
        Ticket ticket{.cells = {DigitText(x), DigitText(y), DigitText(z)}};
        if ((fresh & kThreeDigitsMade) != 0) {
          expansion.threes.push_back(ticket);
        }
        ForEachDigit(fresh & ~kThreeDigitsMade, [&](int w) {
          ticket.cells[3] = DigitText(w);
          expansion.fours.push_back(ticket);
        });
      });
    });
  });
}

// Adds the orderings of the cells from `begin` on, three of them, where they are not in the list yet.
void OrderingsOfThree(const Ticket& ticket, int begin, TicketList& orderings) {
  constexpr int kOrders[][3] = {{0, 1, 2}, {0, 2, 1}, {2, 0, 1}, {2, 1, 0}, {1, 2, 0}, {1, 0, 2}};
  for (const auto& order : kOrders) {
    Ticket ordered = ticket;
    for (int i = 0; i < 3; ++i) {
      ordered.cells[begin + i] = ticket.cells[begin + order[i]];
    }
    if (std::ranges::find(orderings, ordered) == orderings.end()) {
      orderings.push_back(ordered);
    }
  }
}

// Each cell in turn comes to the front, changing places with the first.
void OrderingsOfFour(const Ticket& ticket, TicketList& orderings) {
  for (int front = 0; front < 4; ++front) {
    Ticket turned = ticket;
    std::swap(turned.cells[0], turned.cells[front]);
    OrderingsOfThree(turned, 1, orderings);
  }
}

}  // namespace

TicketCounts ExpandTickets(const Selection& picks, CurrentList& list) {
  Expansion expansion;
  const auto column = [&](int number) { return picks.columns[number - 1]; };
  for (int a = 1; a <= kLastColumn - 2; ++a) {
    for (int b = a + 1; b <= kLastColumn - 1; ++b) {
      for (int c = b + 1; c <= kLastColumn; ++c) {
        // One step past the last column, so that the triples that end in column 10 are reached as well; their fourth
        // digit comes from column 10 once more.
        for (int d = c + 1; d <= kLastColumn + 1; ++d) {
          ExpandColumnSet(column(a), column(b), column(c), column(std::min(d, kLastColumn)), expansion);
        }
      }
    }
  }
  return Replace(picks, {&expansion.fours, &expansion.fours, &expansion.threes, &expansion.threes, &expansion.threes},
                 list);
}

TicketCounts ExpandOrderings(const Selection& picks, CurrentList& list) {
  std::vector<char> picked;
  for (const DigitSet column : picks.columns) {
    ForEachDigit(column, [&](int digit) { picked.push_back(DigitText(digit)); });
  }
  TicketList fours;
  TicketList threes;
  if (picks.kinds[kFourStraight]) {
    OrderingsOfFour({.cells = {picked.at(0), picked.at(1), picked.at(2), picked.at(3)}}, fours);
  }
  if (picks.kinds[kThreeStraight]) {
    OrderingsOfThree({.cells = {picked.at(0), picked.at(1), picked.at(2)}}, 0, threes);
  }
  const TicketList none;
  return Replace(picks, {&fours, &none, &threes, &none, &none}, list);
}

}  // namespace marlevo
