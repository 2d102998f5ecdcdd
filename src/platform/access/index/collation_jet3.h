// The order of texts in the indexes of a Jet 3 file whose language is "General": upper and lower case are equal,
// accents count only where texts are equal without them, trailing blanks do not count.
#pragma once

#include <string_view>

#include "platform/access/index/index_key.h"

namespace marlevo::access {

// Appends the key of `text`, bytes of code page 1252. There is one for every text.
void AppendJet3TextKey(std::string_view text, Key& key);

}  // namespace marlevo::access
