#include "platform/base/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace marlevo {

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

double LenientNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) {
    text.remove_prefix(1);
  }
  std::size_t whole = 0;
  while (whole < text.size() && IsDigit(text[whole])) {
    ++whole;
  }
  std::size_t end = whole;
  if (end < text.size() && text[end] == '.') {
    do {
      ++end;
    } while (end < text.size() && IsDigit(text[end]));
  }
  double value = 0;
  if (std::from_chars(text.data(), text.data() + end, value, std::chars_format::fixed).ec ==
      std::errc::result_out_of_range) {
    // The number is too large for a double, or too small; the second reads as 0.
    const bool large = text.substr(0, whole).find_first_not_of('0') != std::string_view::npos;
    value = large ? std::numeric_limits<double>::max() : 0;
  }
  return negative ? -value : value;
}

int LenientInteger(std::string_view text) {
  const double rounded = std::nearbyint(LenientNumber(text));
  return static_cast<int>(
      std::clamp(rounded, double{std::numeric_limits<int>::min()}, double{std::numeric_limits<int>::max()}));
}

std::string NumberText(double number) {
  char buffer[400];  // the largest double has 309 digits, the smallest 324 places and 17 digits
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::fixed);
  if (error != std::errc{}) {
    return "0";
  }
  const std::string text(buffer, end);
  return text == "-0" ? "0" : text;
}

std::string WidthMask(std::string_view text, int width) {
  const std::size_t places = std::max(width, 0);
  std::string field(text.size() < places ? places - text.size() : 0, ' ');
  return field.append(text);
}

bool SameName(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, SmallLetter, SmallLetter);
}

char32_t TakeCharacter(std::string_view& text) {
  const std::uint8_t lead = text.front();
  const std::size_t size = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  char32_t character = size == 1 ? lead : lead & (0x7Fu >> size);
  bool valid = size != 0 && size <= text.size();
  for (std::size_t i = 1; valid && i < size; ++i) {
    valid = (text[i] & 0xC0) == 0x80;
    character = character << 6 | (text[i] & 0x3F);
  }
  const bool overlong = (size == 3 && character < 0x800) || (size == 4 && character < 0x10000);
  const bool half_of_pair = character >= 0xD800 && character < 0xE000;
  valid = valid && !overlong && !half_of_pair && character < kNoCharacter;
  text.remove_prefix(valid ? size : 1);
  return valid ? character : kNoCharacter + lead;
}

}  // namespace marlevo
