// The SQL texts of the customer windows: table CUSTOM_H, one row per customer, and table CUSTOM_D, one row per ticket
// that a customer bought. Customer fields and the stamp are texts, everything else is a number. A text with a single
// quote and a number that is none are a DatabaseError.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "customers/purchase_record.h"

namespace marlevo {

// The fields of a customer, in the order in which windows show them.
enum class CustomerField { kNumber, kName, kTel1, kTel2, kMemo };
inline constexpr std::size_t kCustomerFields = 5;

// A row of CUSTOM_H.
struct Customer {
  std::string number;  // CUSTOM_NO
  std::string name;    // CUSTOM_NAME
  std::string tel1;    // TEL1
  std::string tel2;    // TEL2
  std::string memo;    // MEMO1

  bool operator==(const Customer&) const = default;
};

inline constexpr std::string_view kSelectCustomers = "SELECT * FROM [CUSTOM_H] ORDER BY CUSTOM_NO";

std::string SelectCustomer(std::string_view number);
std::string InsertCustomer(const Customer& customer);
std::string DeleteCustomer(std::string_view number);

// All tickets of a customer.
std::string DeletePurchases(std::string_view number);

// The records of a customer: SAL_DATE and SAL_NUM, the number of tickets.
std::string SelectRecords(std::string_view number);
// The tickets of one record in the order of play mode and sequence.
std::string SelectRecord(std::string_view number, std::string_view stamp);
std::string DeleteRecord(std::string_view number, std::string_view stamp);
std::string InsertTicket(std::string_view number, std::string_view stamp, const StoredTicket& ticket);

// Which tickets a prize check looks at: all, those of a customer, those of one record of a customer.
struct CheckScope {
  std::optional<std::string> number;
  std::optional<std::string> stamp;  // only together with a number
};

// The tickets of play mode `mode` (0 to 4) that win in its prize class, by customer number. `drawn`: the drawn digits
// of positions 1 to 4 as typed.
std::string SelectWinners(int mode, const std::array<std::string, 4>& drawn, const CheckScope& scope);

}  // namespace marlevo
