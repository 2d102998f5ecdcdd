#include "filters/filters.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace marlevo {

namespace {

using Cells = std::array<char, 4>;

// Removes the tickets for which `matches(cells, kind)` holds, kind after kind.
template <typename Matches>
void DeleteWhere(CurrentList& list, Matches matches) {
  for (int kind = 0; kind < kBetKinds; ++kind) {
    KindList& of_kind = list.kinds[static_cast<std::size_t>(kind)];
    if (of_kind.ticked) {
      std::erase_if(of_kind.tickets, [&](const Ticket& ticket) { return matches(ticket.cells, kind); });
    }
  }
}

// How many cells hold the digit of column `column`, from 1. The fourth cell of three digits is empty and never counts.
std::ptrdiff_t CountOf(const Cells& cells, std::size_t column) {
  const char digit = cells[column - 1];
  return digit == 0 ? 0 : std::ranges::count(cells, digit);
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

// A digit in three of four columns stands in column 1 or 2, one in two of them in column 1, 2 or 3.

void DeleteThreeSame(CurrentList& list) {
  DeleteWhere(list, [](const Cells& cells, int) { return CountOf(cells, 1) >= 3 || CountOf(cells, 2) >= 3; });
}

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
    return any && std::exchange(seen.at(static_cast<std::size_t>(value)), true);
  });
}

std::array<char, 4> SortString(std::array<char, 4> digits) {
  bool swapped = true;
  while (swapped) {
    swapped = false;
    for (std::size_t a = 0; a < 3; ++a) {
      for (std::size_t b = a; b < 3; ++b) {
        if (digits[b] > digits[b + 1]) {
          // The partner is a, not b; the passes go on until one finds every neighbour in order, so the end is sorted.
          std::swap(digits[a], digits[b + 1]);
          swapped = true;
        }
      }
    }
  }
  return digits;
}

}  // namespace marlevo
