#include "platform/database/text_order.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace marlevo {
namespace {

// Capitals first, first + step, ... up to last, each with its small form `distance` further on.
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

// Of a small form: the other one, if there is one.
char32_t LargeForm(char32_t c) {
  if (c >= 'a' && c <= 'z') {
    return c - 0x20;
  }
  if (c == 0x00FF) {
    return 0x0178;
  }
  for (const CaseRange& range : kCaseRanges) {
    if (c >= range.first + range.distance && c <= range.last + range.distance && SmallForm(c - range.distance) == c) {
      return c - range.distance;
    }
  }
  return c;
}

void AppendUtf16(char32_t c, std::u16string& text) {
  if (c > 0x10FFFF) {
    c = 0xFFFD;
  }
  if (c < 0x10000) {
    text += static_cast<char16_t>(c);
  } else {
    text += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
  }
}

// Takes one character off the front.
char32_t TakeCharacter(std::string_view& text) {
  const auto byte = [&text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = byte(0);
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  char32_t character = length == 1 ? lead : lead & (0x7Fu >> length);
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
  while (!a.empty() && !b.empty()) {
    const auto left_byte = static_cast<std::uint8_t>(a.front());
    const auto right_byte = static_cast<std::uint8_t>(b.front());
    char32_t left = SmallAscii(left_byte);
    char32_t right = SmallAscii(right_byte);
    if (left_byte < 0x80 && right_byte < 0x80) {  // nearly every character of numbers and stamps
      a.remove_prefix(1);
      b.remove_prefix(1);
    } else {
      left = SmallForm(TakeCharacter(a));
      right = SmallForm(TakeCharacter(b));
    }
    if (left != right) {
      return left < right ? -1 : 1;
    }
  }
  return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
}

bool EqualText(std::string_view a, std::string_view b) {
  return a.size() == b.size() && CompareText(a, b) == 0;
}

BothCases InBothCases(std::string_view text) {
  BothCases cases;
  while (!text.empty()) {
    const char32_t small = SmallForm(TakeCharacter(text));
    AppendUtf16(small, cases.small);
    AppendUtf16(LargeForm(small), cases.large);
  }
  return cases;
}

}  // namespace marlevo
