#include "platform/database/text_order.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

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

constexpr char32_t SmallAscii(char32_t c) {
  return c >= 'A' && c <= 'Z' ? c + 0x20 : c;
}

char32_t SmallForm(char32_t c) {
  if (c < 0x80) {
    return SmallAscii(c);
  }
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

// Takes the first character off the text and returns it. A byte that is not UTF-8 is returned as a value above all
// characters.
char32_t TakeCharacter(std::string_view& text) {
  const auto byte = [&text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = byte(0);
  if (lead < 0x80) {
    text.remove_prefix(1);
    return lead;
  }
  const std::size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  char32_t character = lead & (0x7Fu >> length);
  std::size_t taken = 1;
  while (taken < length && taken < text.size() && (byte(taken) & 0xC0) == 0x80) {
    character = character << 6 | (byte(taken) & 0x3F);
    ++taken;
  }
  if (taken != length) {
    taken = 1;
    character = 0x110000u + lead;
  }
  text.remove_prefix(taken);
  return character;
}

}  // namespace

int CompareText(std::string_view a, std::string_view b) {
  for (;;) {
    const auto [left_end, right_end] = std::ranges::mismatch(a, b, [](std::uint8_t left, std::uint8_t right) {
      return left < 0x80 && SmallAscii(left) == SmallAscii(right);  // fast for numbers and stamps, which are ASCII
    });
    a.remove_prefix(static_cast<std::size_t>(left_end - a.begin()));
    b.remove_prefix(static_cast<std::size_t>(right_end - b.begin()));
    if (a.empty() || b.empty()) {
      return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
    }
    const char32_t left = SmallForm(TakeCharacter(a));
    const char32_t right = SmallForm(TakeCharacter(b));
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
