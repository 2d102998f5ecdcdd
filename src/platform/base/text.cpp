#include "platform/base/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
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
  const std::size_t places = static_cast<std::size_t>(std::max(width, 0));
  std::string field(text.size() < places ? places - text.size() : 0, ' ');
  return field.append(text);
}

}  // namespace marlevo
