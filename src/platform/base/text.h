// Numbers typed by people and numbers shown to them. All texts of the system outside its windows are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace marlevo {

// The number that a text begins with: leading blanks (U+0020 and tab) are skipped, then an optional sign, digits and an
// optional "." with digits are taken; everything after them is ignored. A text that begins with no number reads as 0.
double LenientNumber(std::string_view text);

// LenientNumber rounded to the nearest integer, halves to even, and limited to the range of int.
int LenientInteger(std::string_view text);

// The shortest decimal text that reads back as the same number; never an exponent ("12500000", "0.1", "-3").
std::string NumberText(double number);

// The text right-aligned in a field of `width` characters, padded with blanks on the left; a longer text is not cut.
// `text` is ASCII.
std::string WidthMask(std::string_view text, int width);

}  // namespace marlevo
