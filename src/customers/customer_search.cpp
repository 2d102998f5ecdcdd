#include "customers/customer_search.h"

#include <string>

#include "platform/database/text_order.h"

namespace marlevo {

namespace {

std::string WithoutMarks(std::string_view telephone) {
  std::string digits(telephone);
  std::erase_if(digits, [](char c) { return std::string_view(" -()").find(c) != std::string_view::npos; });
  return digits;
}

}  // namespace

bool Matches(const Customer& customer, std::string_view part) {
  if (ContainsText(customer.number, part) || ContainsText(customer.name, part)) {
    return true;
  }
  const std::string digits = WithoutMarks(part);
  const auto has_digits = [&digits](std::string_view telephone) {
    return ContainsText(WithoutMarks(telephone), digits);
  };
  return !digits.empty() && (has_digits(customer.tel1) || has_digits(customer.tel2));
}

std::optional<int> FindCustomer(const std::vector<Customer>& customers, std::string_view part, int from, int step) {
  const int count = static_cast<int>(customers.size());
  for (int i = 0; i < count && !part.empty(); ++i) {
    const int row = (from + count + i * step + count) % count;
    if (Matches(customers[row], part)) {
      return row;
    }
  }
  return std::nullopt;
}

}  // namespace marlevo
