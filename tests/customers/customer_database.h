// A database with customers and what they bought. What is read from it is what is on the disk.
#pragma once

#include <string>
#include <vector>

#include "customers/customer_statements.h"
#include "platform/database/database_fixture.h"

namespace marlevo {

class CustomerDatabaseTest : public DatabaseFixture {
 protected:
  void AddCustomer(const Customer& customer) { Run(InsertCustomer(customer)); }

  // Tickets as "mode amount digits", e.g. "3 25 1709", numbered from 1 within their mode.
  void AddRecord(const std::string& number, const std::string& stamp, const std::vector<std::string>& tickets) {
    Connection connection(Opening());
    int seq[10] = {};
    for (const std::string& text : tickets) {
      const int mode = text[0] - '0';
      const std::size_t blank = text.find(' ', 2);
      std::string values = "'" + number + "','" + stamp + "'," + text[0] + "," + text.substr(2, blank - 2) + "," +
                           std::to_string(++seq[mode]);
      for (const char digit : text.substr(blank + 1)) {
        values.append(",").append(1, digit);
      }
      connection.Execute(
          "INSERT INTO CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_MODE,PLAY_AMT,PLAY_SEQ,NO1,NO2,NO3,NO4) VALUES (" + values +
          ")");
    }
    connection.Flush();
  }

  void Run(const std::string& sql) {
    Connection connection(Opening());
    connection.Execute(sql);
    connection.Flush();
  }

  std::string Customers() const {
    Connection connection = OnDisk();
    return Rows(connection, std::string(kSelectCustomers), {"CUSTOM_NO", "CUSTOM_NAME", "TEL1", "TEL2", "MEMO1"});
  }
  std::string Tickets(const std::string& number) const {
    Connection connection = OnDisk();
    return Rows(connection,
                "SELECT * FROM CUSTOM_D WHERE CUSTOM_NO='" + number + "' ORDER BY SAL_DATE,PLAY_MODE,PLAY_SEQ",
                {"SAL_DATE", "PLAY_MODE", "PLAY_AMT", "PLAY_SEQ", "NO1", "NO2", "NO3", "NO4"});
  }
};

}  // namespace marlevo
