// What is picked on the board: the bet kinds and the digits of the ten columns, and whether that is enough to make
// tickets of.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "tickets/tickets.h"

namespace marlevo {

inline constexpr int kPickColumns = 10;

// The digits picked in one column: bit d stands for digit d.
using DigitSet = std::uint16_t;

struct Selection {
  PerKind<bool> kinds{};
  std::array<DigitSet, kPickColumns> columns{};  // entry k is column k + 1; hidden columns count like shown ones

  // Column from 1 to 10, digit from 0 to 9.
  void Pick(int column, int digit) {
    DigitSet& digits = columns[column - 1];
    digits = static_cast<DigitSet>(digits | 1U << digit);
  }
};

// 0: the picks can be expanded. 1: no kind is picked. 2: a four-digit kind is picked and one of columns 1 to 4 is
// empty. 3: a three-digit kind is picked and one of columns 1 to 3 is empty. Where 2 and 3 both hold, 2 is returned.
// Digits in columns 5 to 10 never fill the place of an empty column 1 to 4.
int CheckSelection(const Selection& picks);

// What the operator is told about a code of CheckSelection; empty for 0. Codes 4 to 6 get the message of 3, any other
// code that of an unexpected error. Line breaks are CR LF.
std::string_view SelectionMessage(int code);

}  // namespace marlevo
