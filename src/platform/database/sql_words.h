// What has to be known of a statement's text beyond what SQLite makes of it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marlevo {

// Why the statement would mean something else to Access; empty when both read it alike or SQLite refuses it. Access
// joins texts with & and +, divides 7 / 2 to 3.5, takes "A01" for a text, True for -1, and knows other patterns.
// `is_number`: whether a name is that of a column of numbers and of no other one.
std::string OtherMeaning(std::string_view sql, const std::function<bool(std::string_view)>& is_number);

// The same of a function that both have.
std::string OtherMeaningOfFunction(std::string_view name);

// The columns that an INSERT names behind its table. Nothing when it gives values for all of them.
std::optional<std::vector<std::string>> NamedColumns(std::string_view sql);

}  // namespace marlevo
