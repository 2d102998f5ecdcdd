#include "filters/filters.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace marlevo {

namespace {

using Cells = std::span<const char>;

// Removes what `matches(kind, cells)` picks out, list by list; the cells are the 3 or 4 of the kind.
template <typename Matches>
void DeleteWhere(CurrentList& list, Matches matches) {
  for (int kind = 0; kind < kBetKinds; ++kind) {
    KindList& of_kind = list.kinds[static_cast<std::size_t>(kind)];
    if (of_kind.ticked) {
      const auto columns = static_cast<std::size_t>(DigitColumns(kind));
      std::erase_if(of_kind.tickets,
                    [&](const Ticket& ticket) { return matches(kind, Cells(ticket.cells).first(columns)); });
    }
  }
}

// Whether one of the first `references` digits stands in at least `times` cells. Looking further is needless: a digit
// that comes that often stands in one of them.
bool Repeats(Cells cells, std::size_t references, int times) {
  return std::ranges::any_of(cells.first(references),
                             [&](char digit) { return digit != 0 && std::ranges::count(cells, digit) >= times; });
}

}  // namespace

void DeleteAllOdd(CurrentList& list) {
  DeleteWhere(list, [](int, Cells cells) {
    return std::ranges::all_of(cells, [](char cell) { return DigitValue(cell) % 2 != 0; });
  });
}

void DeleteAllEven(CurrentList& list) {
  DeleteWhere(list, [](int, Cells cells) {
    return std::ranges::all_of(cells, [](char cell) { return cell != 0 && DigitValue(cell) % 2 == 0; });
  });
}

void DeleteAllSame(CurrentList& list) {
  DeleteWhere(list, [](int, Cells cells) { return Repeats(cells, 1, static_cast<int>(cells.size())); });
}

void DeleteThreeSame(CurrentList& list) {
  DeleteWhere(list, [](int, Cells cells) { return Repeats(cells, 2, 3); });
}

void DeleteTwoSame(CurrentList& list) {
  DeleteWhere(list, [](int, Cells cells) { return Repeats(cells, 3, 2); });
}

void DeleteRepeats(CurrentList& list) {
  std::array<bool, 10000> seen{};
  DeleteWhere(list, [&](int kind, Cells cells) {
    std::array<char, 4> digits{};
    std::ranges::copy(cells, digits.begin());
    if (IsBoxKind(kind)) {
      digits = SortString(digits);
    }
    int value = 0;
    bool any = false;
    for (const char digit : digits) {
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
