// The order of texts in the indexes of a Jet 4 file whose language is "General": upper and lower case are equal,
// accents, hyphens and apostrophes count only where texts are equal without them, trailing blanks do not count.
#pragma once

#include <optional>
#include <string_view>

#include "platform/access/index/index_key.h"

namespace marlevo::access {

// Appends the key of `text`. When it holds a character whose place in the order is not known (known are U+0001..U+00FF
// and the Chinese characters U+4E00..U+9FA5) that character is returned and `key` is of no use.
std::optional<char16_t> AppendJet4TextKey(std::u16string_view text, Key& key);

}  // namespace marlevo::access
