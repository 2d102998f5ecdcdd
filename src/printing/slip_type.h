// The two pre-printed slips: which bet kinds go onto which, how much a slip holds, and which file keeps its settings.
#pragma once

#include <string_view>

#include "tickets/tickets.h"

namespace marlevo {

enum class SlipType { kThreeDigit, kFourDigit };

constexpr SlipType SlipTypeOfKind(int kind) {
  return IsFourDigitKind(kind) ? SlipType::kFourDigit : SlipType::kThreeDigit;
}

constexpr std::string_view SlipCaption(SlipType type) {
  return type == SlipType::kThreeDigit ? "3星彩" : "4星彩";
}

// The settings file of the slip, in the program's folder.
constexpr std::string_view SlipFileName(SlipType type) {
  return type == SlipType::kThreeDigit ? "3Star.ini" : "4Star.ini";
}

// Tickets on one slip. Each takes a block of digit rows and one row for the multiple.
constexpr int SlipCapacity(SlipType type) {
  return type == SlipType::kThreeDigit ? 6 : 5;
}

constexpr int SlipDigitRows(SlipType type) {
  return type == SlipType::kThreeDigit ? 3 : 4;
}

}  // namespace marlevo
