// The rule of the find box: which customer is the next one that a part of a number, a name or a telephone means.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "customers/customer_statements.h"

namespace marlevo {

// Whether the customer's number, name or one of the telephones contains `part`, in either case of letters. In
// telephones neither side's blanks, hyphens and brackets count: "0912345" finds 0912-345-678.
bool Matches(const Customer& customer, std::string_view part);

// The first match on the way through all customers, once around: the rows `from`, `from` + `step` and so on. `from` may
// lie one row outside the list, which means the row at its other end; `step` is 1 or -1. Nothing for an empty part.
std::optional<int> FindCustomer(const std::vector<Customer>& customers, std::string_view part, int from, int step);

}  // namespace marlevo
