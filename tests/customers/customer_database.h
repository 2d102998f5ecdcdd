// A database with customers, and the windows of the customers opened on it.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "customers/customer_statements.h"
#include "platform/database/database_fixture.h"
#include "support/window_driver.h"

namespace marlevo {

class CustomerWindowsTest : public DatabaseFixture {
 protected:
  void AddCustomer(const Customer& customer) { Run(InsertCustomer(customer)); }

  // Tickets as "mode amount digits", e.g. "3 25 1709", numbered from 1 within their mode.
  void AddRecord(const std::string& number, const std::string& stamp, const std::vector<std::string>& tickets) {
    Connection connection(Opening());
    int seq[10] = {};
    for (const std::string& text : tickets) {
      const int mode = text[0] - '0';
      const std::size_t blank = text.find(' ', 2);
      const auto digit = [&](std::size_t place) { return text[blank + place] - '0'; };
      connection.Execute(InsertTicket(
          number, stamp, {mode, text.substr(2, blank - 2), ++seq[mode], {digit(1), digit(2), digit(3), digit(4)}}));
    }
    connection.Flush();
  }

  void Run(const std::string& sql) {
    Connection connection(Opening());
    connection.Execute(sql);
    connection.Flush();
  }

  std::string Customers() const {
    Connection connection(Opening());
    return Rows(connection, std::string(kSelectCustomers), {"CUSTOM_NO", "CUSTOM_NAME", "TEL1", "TEL2", "MEMO1"});
  }
  std::string Tickets(const std::string& number) const {
    Connection connection(Opening());
    return Rows(connection,
                "SELECT * FROM CUSTOM_D WHERE CUSTOM_NO='" + number + "' ORDER BY SAL_DATE,PLAY_MODE,PLAY_SEQ",
                {"SAL_DATE", "PLAY_MODE", "PLAY_AMT", "PLAY_SEQ", "NO1", "NO2", "NO3", "NO4"});
  }

  static std::vector<ModalStep> YesToSaving(const QString& number,
                                            const ModalStep& then = ExpectMessage("存檔完畢 !")) {
    return {ExpectQuestion("確定要將號碼組合資料存檔到 [" + number + "] ?", QMessageBox::Yes), then};
  }
  // The number of tickets that are stored for a customer. Fails the test unless they are whole and the first ones of a
  // save of `list`, all under one stamp.
  std::size_t StoredOfSave(const std::string& number, const CurrentList& list) const {
    const std::string stored = Tickets(number);
    const std::string stamp = stored.substr(0, stored.find('|'));
    EXPECT_TRUE(stored.empty() || stamp.size() == 14) << stamp;
    std::string saved;
    for (const StoredTicket& ticket : TicketsToStore(list)) {
      saved += stamp + "|" + std::to_string(ticket.mode) + "|" + ticket.amount + "|" + std::to_string(ticket.seq);
      for (const int digit : ticket.digits) {
        saved.append("|").append(std::to_string(digit));
      }
      saved += "\n";
    }
    EXPECT_TRUE(saved.starts_with(stored)) << "the save of " << number << " is another";
    return static_cast<std::size_t>(std::ranges::count(stored, '\n'));
  }
};

}  // namespace marlevo
