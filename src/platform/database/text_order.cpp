#include "platform/database/text_order.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/base/text.h"

namespace marlevo {
namespace {

// The capitals first, first + step, ... up to last. The small form of each is the character `distance` further on.
// Example: {0x0100, 0x012E, 2, 1} has Ā (0x0100) with ā (0x0101), Ă (0x0102) with ă (0x0103), and so on.
struct CaseRange {
  char32_t first;
  char32_t last;
  char32_t step;
  char32_t distance;
};

constexpr std::array kCaseRanges = {
    CaseRange{0x00C0, 0x00D6, 1, 0x20}, CaseRange{0x00D8, 0x00DE, 1, 0x20},  // Latin-1
    CaseRange{0x0100, 0x012E, 2, 1},    CaseRange{0x0132, 0x0136, 2, 1},     // Latin, further accents
    CaseRange{0x0139, 0x0147, 2, 1},    CaseRange{0x014A, 0x0176, 2, 1},     //
    CaseRange{0x0179, 0x017D, 2, 1},                                         //
    CaseRange{0x0386, 0x0386, 1, 0x26}, CaseRange{0x0388, 0x038A, 1, 0x25},  // Greek
    CaseRange{0x038C, 0x038C, 1, 0x40}, CaseRange{0x038E, 0x038F, 1, 0x3F},  //
    CaseRange{0x0391, 0x03A1, 1, 0x20}, CaseRange{0x03A3, 0x03AB, 1, 0x20},  //
    CaseRange{0x0400, 0x040F, 1, 0x50}, CaseRange{0x0410, 0x042F, 1, 0x20},  // Cyrillic
    CaseRange{0x2160, 0x216F, 1, 0x10},                                      // Roman numerals
    CaseRange{0x24B6, 0x24CF, 1, 0x1A},                                      // circled letters
    CaseRange{0xFF21, 0xFF3A, 1, 0x20},                                      // full width
};

// Of a character that is not ASCII.
char32_t SmallForm(char32_t c) {
  if (c == 0x0178) {
    return 0x00FF;  // the one capital whose small form stands before it
  }
  for (const CaseRange& range : kCaseRanges) {
    if (c >= range.first && c <= range.last && (c - range.first) % range.step == 0) {
      return c + range.distance;
    }
  }
  return c;
}

char32_t TakeSmallForm(std::string_view& text) {
  if (const std::uint8_t byte = text.front(); byte < 0x80) {
    text.remove_prefix(1);
    return SmallLetter(byte);  // fast for what is ASCII
  }
  return SmallForm(TakeCharacter(text));
}

}  // namespace

int CompareText(std::string_view a, std::string_view b) {
  for (;;) {
    const auto [left_end, right_end] = std::ranges::mismatch(a, b, [](std::uint8_t left, std::uint8_t right) {
      return left < 0x80 && SmallLetter(left) == SmallLetter(right);  // fast for numbers and stamps, which are ASCII
    });
    a.remove_prefix(left_end - a.begin());
    b.remove_prefix(right_end - b.begin());
    if (a.empty() || b.empty()) {
      return int{b.empty()} - int{a.empty()};
    }
    const char32_t left = TakeSmallForm(a);
    const char32_t right = TakeSmallForm(b);
    if (left != right) {
      return left < right ? -1 : 1;
    }
  }
}

bool EqualText(std::string_view a, std::string_view b) {
  return a.size() == b.size() && CompareText(a, b) == 0;
}

bool ContainsText(std::string_view text, std::string_view part) {
  for (; text.size() >= part.size(); TakeCharacter(text)) {
    if (EqualText(text.substr(0, part.size()), part)) {
      return true;
    }
  }
  return false;
}

}  // namespace marlevo
