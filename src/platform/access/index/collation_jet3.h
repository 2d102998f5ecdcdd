// The order of texts in the indexes of a Jet 3 file whose language is "General": upper and lower case are equal,
// accents count only where texts are equal without them, trailing blanks do not count.
#pragma once

#include <string_view>

#include "platform/access/index/index_key.h"

namespace marlevo::access {

// Appends the key of `text`, which is in code page 1252. Every text has a key: first one byte of weight for each
// letter, then the accents, then zeros. Example: "Ab" gives 60 61 00, and "ab" the same; "\xC4b" (A with two dots)
// gives 60 61 06 00, which is the same weights and then the accent 6.
void AppendJet3TextKey(std::string_view text, Key& key);

}  // namespace marlevo::access
