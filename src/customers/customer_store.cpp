#include "customers/customer_store.h"

#include <cmath>
#include <utility>

#include "platform/base/clock.h"

namespace marlevo {

namespace {

// By CustomerField.
constexpr std::array<std::string_view, kCustomerFields> kFields = {"CUSTOM_NO", "CUSTOM_NAME", "TEL1", "TEL2", "MEMO1"};

// Nothing unless the play mode is one of 0 to 4.
std::optional<int> PlayMode(const Recordset& ticket) {
  const double mode = ticket.Number("PLAY_MODE");
  if (ticket.IsNull("PLAY_MODE") || mode < 0 || mode >= kPlayModes || mode != std::floor(mode)) {
    return std::nullopt;
  }
  return static_cast<int>(mode);
}

}  // namespace

std::vector<Customer> CustomerStore::Customers() {
  std::vector<Customer> customers;
  for (Recordset rows = connection_.Open(kSelectCustomers); !rows.AtEnd(); rows.MoveNext()) {
    customers.push_back(
        {rows.Text("CUSTOM_NO"), rows.Text("CUSTOM_NAME"), rows.Text("TEL1"), rows.Text("TEL2"), rows.Text("MEMO1")});
  }
  return customers;
}

bool CustomerStore::Has(std::string_view number) {
  return !connection_.Open(SelectCustomer(number)).AtEnd();
}

bool CustomerStore::Add(const Customer& customer) {
  if (Has(customer.number)) {
    return false;
  }
  connection_.FlushAfter([&] { connection_.Execute(InsertCustomer(customer)); });
  return true;
}

RowChange CustomerStore::Replace(const Customer& customer) {
  return connection_.Replace(SelectCustomer(customer.number), DeleteCustomer(customer.number),
                             [&customer] { return InsertCustomer(customer); });
}

std::optional<DatabaseError> CustomerStore::Remove(std::string_view number) {
  connection_.Execute(DeleteCustomer(number));
  std::optional<DatabaseError> refusal;
  try {
    connection_.Execute(DeletePurchases(number));
  } catch (const DatabaseError& error) {
    if (Has(number)) {
      throw;  // the disk refused, which has undone the first DELETE as well
    }
    refusal.emplace(error.Attempted(), error.Subject(), error.what(), error.Kind(),
                    "客戶已刪除,他的購買記錄沒有刪除。");
  }
  connection_.Flush();
  return refusal;
}

std::optional<std::size_t> CustomerStore::MostCharacters(CustomerField field) {
  return connection_.MostCharacters("CUSTOM_H", kFields[static_cast<std::size_t>(field)]);
}

std::function<bool(std::string_view)> CustomerStore::RoomIn(CustomerField field) {
  return connection_.RoomIn("CUSTOM_H", kFields[static_cast<std::size_t>(field)]);
}

std::vector<RecordSummary> CustomerStore::RecordsOf(std::string_view number) {
  std::vector<RecordSummary> records;
  for (Recordset rows = connection_.Open(SelectRecords(number)); !rows.AtEnd(); rows.MoveNext()) {
    if (std::string stamp = rows.Text("SAL_DATE"); !stamp.empty()) {
      records.push_back({std::move(stamp), static_cast<int>(rows.Number("SAL_NUM"))});
    }
  }
  return records;
}

PurchaseRecord CustomerStore::Record(std::string_view number, std::string_view stamp,
                                     const std::function<void(int)>& step) {
  PurchaseRecord record;
  Recordset rows = connection_.Open(SelectRecord(number, stamp));
  for (int read = 1; !rows.AtEnd(); rows.MoveNext(), ++read) {
    if (const std::optional<int> mode = PlayMode(rows)) {
      record[*mode].push_back({rows.Text("PLAY_SEQ"),
                               rows.Text("PLAY_AMT"),
                               {rows.Text("NO1"), rows.Text("NO2"), rows.Text("NO3"), rows.Text("NO4")}});
    }
    step(read);
  }
  return record;
}

void CustomerStore::RemoveRecord(std::string_view number, std::string_view stamp) {
  connection_.FlushAfter([&] { connection_.Execute(DeleteRecord(number, stamp)); });
}

std::string CustomerStore::Save(std::string_view number, const std::vector<StoredTicket>& tickets,
                                const std::function<void(int)>& step) {
  std::string stamp = LocalStamp();
  connection_.FlushAfter([&] {
    int stored = 0;
    for (const StoredTicket& ticket : tickets) {
      connection_.Execute(InsertTicket(number, stamp, ticket));
      step(++stored);
    }
  });
  return stamp;
}

std::vector<Winner> CustomerStore::Winners(const std::array<std::string, 4>& drawn, const CheckScope& scope) {
  std::vector<Winner> winners;
  for (int mode = 0; mode < kPlayModes; ++mode) {
    for (Recordset rows = connection_.Open(SelectWinners(mode, drawn, scope)); !rows.AtEnd(); rows.MoveNext()) {
      winners.push_back({rows.Text("CUSTOM_NO"), mode, rows.Number("PLAY_AMT")});
    }
  }
  return winners;
}

}  // namespace marlevo
