// How text columns compare: upper and lower case are equal, everything else goes by character value.
//
// Case is that of single characters: Latin letters (with their accents), Greek, Cyrillic, full-width letters, Roman
// numerals and circled letters, which are the letters that the code pages of Access files hold. Width, accents and kana
// are never taken as equal. A letter stands at its small form's place, so that "_" sorts before every ASCII letter.
#pragma once

#include <string_view>

namespace marlevo {

// Less than, equal to or greater than 0, as `a` sorts before, equal to or after `b`. Both UTF-8; a byte that is not
// UTF-8 sorts after all characters.
int CompareText(std::string_view a, std::string_view b);

// The same as CompareText(a, b) == 0, sooner: both forms of a letter are equally long in UTF-8.
bool EqualText(std::string_view a, std::string_view b);

}  // namespace marlevo
