// What a page carries, as data: computed once, then drawn by the same routine on the screen, into a PDF and on the
// printer.
#pragma once

#include <cmath>
#include <string>
#include <vector>

namespace marlevo {

// Lengths on paper are twips, 1440 to the inch, from the paper's top left corner.
inline constexpr double kTwipsPerPoint = 20;
inline constexpr double kTwipsPerMillimetre = 1440 / 25.4;

// A filled black rectangle. A negative width or height reaches to the left or upwards of (x, y).
struct Mark {
  double x;
  double y;
  double width;
  double height;

  bool operator==(const Mark&) const = default;
};

// False when a number of the mark is ten metres or more, or not a number at all (NaN): drivers overflow on such values.
inline bool FitsAnyPaper(const Mark& mark) {
  constexpr double kLongest = 10000 * kTwipsPerMillimetre;
  const auto fits = [](double length) { return std::abs(length) < kLongest; };
  return fits(mark.x) && fits(mark.y) && fits(mark.width) && fits(mark.height);
}

// One line of black text (UTF-8); (x, y) is the top left corner of the line.
struct PageText {
  double x;
  double y;
  std::string text;

  bool operator==(const PageText&) const = default;
};

struct PageDrawing {
  std::vector<Mark> marks;
  std::vector<PageText> texts;
  double text_height = 9 * kTwipsPerPoint;  // of the font, for all texts of the page

  bool IsEmpty() const { return marks.empty() && texts.empty(); }
};

}  // namespace marlevo
