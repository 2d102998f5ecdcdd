// Values on their way into SQL text. They go in as typed: nothing is doubled, escaped or rewritten. A value that would
// end its place in the statement and become a part of the statement itself (a quote inside a text, an expression where
// a number belongs) is refused with the DatabaseError that such a broken statement gives, before anything runs;
// inserted, it might delete or change rows that nobody named.
#pragma once

#include <string>
#include <string_view>

namespace marlevo {

// 'value'. DatabaseError when the value contains a single quote.
std::string SqlText(std::string_view value);

// The value as it stands. DatabaseError unless it is a plain number: a sign, digits and one point at most, with blanks
// or tabs around them.
std::string SqlNumber(std::string_view value);

}  // namespace marlevo
