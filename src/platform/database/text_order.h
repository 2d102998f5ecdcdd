// How text columns compare: upper and lower case are equal, everything else goes by character value.
//
// Upper and lower case are known of the letters that the code pages of Access files hold: Latin letters (also with
// accents), Greek, Cyrillic, full-width letters, Roman numerals and circled letters. Letters that differ in width or
// accent, and kana, are never equal. A letter sorts by its small form, so that "_" sorts before every ASCII letter.
#pragma once

#include <string_view>

namespace marlevo {

// Less than 0 when `a` sorts before `b`, 0 when they are equal, greater than 0 when `a` sorts after `b`. Both are
// UTF-8; a byte that is not UTF-8 sorts after all characters.
int CompareText(std::string_view a, std::string_view b);

// The same as CompareText(a, b) == 0, but faster: texts of different length are never equal, since both forms of a
// letter are equally long in UTF-8.
bool EqualText(std::string_view a, std::string_view b);

// Whether `part` occurs in `text`.
bool ContainsText(std::string_view text, std::string_view part);

}  // namespace marlevo
