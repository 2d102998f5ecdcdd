#include "board/expansion.h"

#include <algorithm>
#include <bit>

namespace marlevo {

namespace {

constexpr DigitSet kThreeDigitsMade = 1U << 10;

template <typename Visit>
void ForEachDigit(unsigned digits, Visit visit) {
  for (; digits != 0; digits &= digits - 1) {
    visit(static_cast<std::size_t>(std::countr_zero(digits)));
  }
}

char DigitText(std::size_t digit) {
  return static_cast<char>('0' + digit);
}

// Every ticked kind gets its tickets, every other kind none.
TicketCounts Replace(const Selection& picks, const std::array<const TicketList*, kBetKinds>& tickets,
                     CurrentList& list) {
  for (std::size_t kind = 0; kind < kBetKinds; ++kind) {
    list.kinds[kind].ticked = picks.kinds[kind];
    list.kinds[kind].tickets = picks.kinds[kind] ? *tickets[kind] : TicketList{};
  }
  return CountTickets(list);
}

TicketList TicketsOf(const std::vector<std::string>& orderings) {
  TicketList tickets;
  for (const std::string& ordering : orderings) {
    Ticket& ticket = tickets.emplace_back();
    std::ranges::remove_copy(ordering, ticket.cells.begin(), '-');
  }
  return tickets;
}

}  // namespace

void ExpandColumnSet(DigitSet first, DigitSet second, DigitSet third, DigitSet fourth, Expansion& expansion) {
  const DigitSet wanted = fourth | kThreeDigitsMade;
  ForEachDigit(first, [&](std::size_t x) {
    ForEachDigit(second, [&](std::size_t y) {
      ForEachDigit(third, [&](std::size_t z) {
        // What is new is found for all fourth digits at once: most choices of columns bring nothing new.
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
        ForEachDigit(fresh & ~unsigned{kThreeDigitsMade}, [&](std::size_t w) {
          ticket.cells[3] = DigitText(w);
          expansion.fours.push_back(ticket);
        });
      });
    });
  });
}

TicketCounts ExpandTickets(const Selection& picks, CurrentList& list) {
  Expansion expansion;
  const auto column = [&](int number) { return picks.columns[static_cast<std::size_t>(number - 1)]; };
  for (int a = 1; a <= 8; ++a) {
    for (int b = a + 1; b <= 9; ++b) {
      for (int c = b + 1; c <= 10; ++c) {
        // One step past the last column, so that the triples that end in column 10 are reached as well; their fourth
        // digit comes from column 10 once more.
        for (int d = c + 1; d <= 11; ++d) {
          ExpandColumnSet(column(a), column(b), column(c), column(std::min(d, 10)), expansion);
        }
      }
    }
  }
  return Replace(picks, {&expansion.fours, &expansion.fours, &expansion.threes, &expansion.threes, &expansion.threes},
                 list);
}

TicketCounts ExpandOrderings(const Selection& picks, CurrentList& list) {
  std::vector<std::string> picked;
  for (const DigitSet column : picks.columns) {
    ForEachDigit(column, [&](std::size_t digit) { picked.emplace_back(1, DigitText(digit)); });
  }
  TicketList fours;
  TicketList threes;
  if (picks.kinds[kFourStraight]) {
    fours = TicketsOf(OrderingsOfFour(picked.at(0), picked.at(1), picked.at(2), picked.at(3)));
  }
  if (picks.kinds[kThreeStraight]) {
    std::vector<std::string> orderings;
    OrderingsOfThree("", picked.at(0), picked.at(1), picked.at(2), orderings);
    threes = TicketsOf(orderings);
  }
  const TicketList none;
  return Replace(picks, {&fours, &none, &threes, &none, &none}, list);
}

std::vector<std::string> OrderingsOfFour(std::string_view a, std::string_view b, std::string_view c,
                                         std::string_view d) {
  const auto prefix = [](std::string_view digit) { return std::string(digit) + "-"; };
  std::vector<std::string> orderings;
  OrderingsOfThree(prefix(a), b, c, d, orderings);
  OrderingsOfThree(prefix(b), a, c, d, orderings);
  OrderingsOfThree(prefix(c), b, a, d, orderings);
  OrderingsOfThree(prefix(d), b, c, a, orderings);
  return orderings;
}

void OrderingsOfThree(std::string_view prefix, std::string_view a, std::string_view b, std::string_view c,
                      std::vector<std::string>& orderings) {
  const std::array<std::array<std::string_view, 3>, 6> orders = {
      {{a, b, c}, {a, c, b}, {c, a, b}, {c, b, a}, {b, c, a}, {b, a, c}}};
  for (const auto& [first, second, third] : orders) {
    std::string text(prefix);
    text.append(first).append("-").append(second).append("-").append(third);
    if (std::ranges::find(orderings, text) == orderings.end()) {
      orderings.push_back(std::move(text));
    }
  }
}

}  // namespace marlevo
