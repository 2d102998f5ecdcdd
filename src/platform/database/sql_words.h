// Looks at the words of a statement for what SQLite does not tell: where Access would read it differently, and which
// columns an INSERT names.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marlevo {

// Why the statement would mean something else to Access; empty when both read it alike or SQLite refuses it. Access
// joins texts with & and +, computes 7 / 2 as 3.5 where SQLite computes 3, takes "A01" for a text and True for -1, and
// has other wildcards in LIKE. `is_number`: whether every column of that name, and at least one, holds numbers.
std::string OtherMeaning(std::string_view sql, const std::function<bool(std::string_view)>& is_number);

// Why a function of that name would give something else in Access; empty when it would not.
std::string OtherMeaningOfFunction(std::string_view name);

// The columns that an INSERT names behind its table. Nothing when it names none and so gives values for all of them.
std::optional<std::vector<std::string>> NamedColumns(std::string_view sql);

}  // namespace marlevo
