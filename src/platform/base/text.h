// Texts: numbers typed by people and numbers shown to them, names, characters. All texts of the system outside its
// windows are UTF-8.
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

// The small form of an ASCII capital; any other character itself.
constexpr char32_t SmallLetter(char32_t character) {
  return character >= 'A' && character <= 'Z' ? character + ('a' - 'A') : character;
}

// Compares names, which do not tell upper from lower ASCII letters.
bool SameName(std::string_view a, std::string_view b);

// Takes the first character off `text`, which is not empty, and returns it. A byte that does not begin valid UTF-8 is
// taken alone and returned as kNoCharacter + byte, a number above all characters.
inline constexpr char32_t kNoCharacter = 0x110000;
char32_t TakeCharacter(std::string_view& text);

}  // namespace marlevo
