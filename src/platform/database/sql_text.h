// Puts values into SQL texts, as typed: nothing is doubled, escaped or rewritten. A value that would become a part of
// the statement itself (a quote inside a text, an expression where a number belongs) is refused with a DatabaseError
// before anything runs. Example: the customer number  1' OR '1'='1  in a DELETE would remove every customer.
#pragma once

#include <string>
#include <string_view>

namespace marlevo {

// The value between single quotes. Throws DatabaseError when it contains a single quote.
std::string SqlText(std::string_view value);

// The value unchanged. Throws DatabaseError unless it is a plain number: digits with at most one sign before them and
// at most one point, and blanks or tabs around.
std::string SqlNumber(std::string_view value);

}  // namespace marlevo
