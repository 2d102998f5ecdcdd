#include "filters/filters.h"

#include <algorithm>
#include <array>
#include <utility>

namespace marlevo {

namespace {

using Cells = std::array<char, 4>;

// Removes the tickets for which `matches(cells, kind)` holds, kind after kind.
template <typename Matches>
void DeleteWhere(CurrentList& list, Matches matches) {
  for (int kind = 0; kind < kBetKinds; ++kind) {
    KindList& of_kind = list.kinds[kind];
    if (of_kind.ticked) {
      std::erase_if(of_kind.tickets, [&](const Ticket& ticket) { return matches(ticket.cells, kind); });
    }
  }
}

// How many cells hold the digit of column `column`, counted from 1. None when that cell is empty.
std::ptrdiff_t CountOf(const Cells& cells, int column) {
  const char digit = cells[column - 1];
  return digit == 0 ? 0 : std::ranges::count(cells, digit);
}

// The cells in ascending order, empty ones first: the same for all orderings of the same digits.
Cells SortString(Cells digits) {
  std::ranges::sort(digits);
  return digits;
}

}  // namespace

void DeleteAllOdd(CurrentList& list) {
  DeleteWhere(list, [](const Cells& cells, int kind) {
    return std::ranges::count_if(cells, [](char cell) { return DigitValue(cell) % 2 != 0; }) == DigitColumns(kind);
  });
}

void DeleteAllEven(CurrentList& list) {
  DeleteWhere(list, [](const Cells& cells, int kind) {
    const auto is_even = [](char cell) { return cell != 0 && DigitValue(cell) % 2 == 0; };
    return std::ranges::count_if(cells, is_even) == DigitColumns(kind);
  });
}

void DeleteAllSame(CurrentList& list) {
  DeleteWhere(list, [](const Cells& cells, int kind) { return CountOf(cells, 1) == DigitColumns(kind); });
}

// A digit that stands in three of four columns stands in column 1 or 2.
void DeleteThreeSame(CurrentList& list) {
  DeleteWhere(list, [](const Cells& cells, int) { return CountOf(cells, 1) >= 3 || CountOf(cells, 2) >= 3; });
}

// A digit that stands in two of four columns stands in column 1, 2 or 3.
void DeleteTwoSame(CurrentList& list) {
  DeleteWhere(list, [](const Cells& cells, int) {
    return CountOf(cells, 1) >= 2 || CountOf(cells, 2) >= 2 || CountOf(cells, 3) >= 2;
  });
}

void DeleteRepeats(CurrentList& list) {
  std::array<bool, 10000> seen{};
  DeleteWhere(list, [&](const Cells& cells, int kind) {
    int value = 0;
    bool any = false;
    for (const char digit : IsBoxKind(kind) ? SortString(cells) : cells) {
      if (digit != 0) {
        value = 10 * value + DigitValue(digit);
        any = true;
      }
    }
    return any && std::exchange(seen.at(value), true);
  });
}

}  // namespace marlevo
