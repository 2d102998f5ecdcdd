// The order of texts in the indexes of a Jet 4 file whose language is "General": upper and lower case are equal,
// accents, hyphens and apostrophes count only where texts are equal without them, trailing blanks do not count.
#pragma once

#include <optional>
#include <string_view>

#include "platform/access/index/index_key.h"

namespace marlevo::access {

// Appends the key of `text` and returns nothing. The places of U+0001..U+00FF, of their full-width forms and of the
// Chinese characters U+4E00..U+9FA5 in the order are known. If `text` holds any other character, that character is
// returned, and what has been appended to `key` must not be used.
//
// A key is the weights of the characters, 01, the accents, 00. Hyphens and apostrophes have no weight; they follow the
// accents as their positions and codes, after three more bytes 01. Examples: "Ab" gives 4A 4C 01 00; "Ab" with two dots
// on the A gives 4A 4C 01 13 00; "A-b" gives 4A 4C 01 01 01 01 80 0B 06 82 00.
std::optional<char16_t> AppendJet4TextKey(std::u16string_view text, Key& key);

}  // namespace marlevo::access
