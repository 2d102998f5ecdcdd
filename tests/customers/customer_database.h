// A database with customers and what they bought. What is read from it is what is on the disk.
#pragma once

#include <string>
#include <vector>

#include "customers/customer_statements.h"
#include "platform/database/database_fixture.h"

namespace marlevo {

class CustomerDatabaseTest : public DatabaseFixture {
 protected:
  // Customers by number and name.
  void AddCustomers(const std::vector<std::pair<const char*, const char*>>& customers) {
    for (const auto& [number, name] : customers) {
      Run({InsertCustomer({number, name, "", "", ""})});
    }
  }
  // Tickets as the values of PLAY_MODE, PLAY_AMT, PLAY_SEQ and NO1 to NO4: "3,25,1,1,7,0,9".
  void AddRecord(const std::string& number, const std::string& stamp, std::vector<std::string> tickets) {
    for (std::string& ticket : tickets) {
      ticket = "INSERT INTO CUSTOM_D VALUES ('" + number + "','" + stamp + "'," + ticket + ")";
    }
    Run(tickets);
  }
  void Run(const std::vector<std::string>& statements) {
    Connection connection(Opening());
    for (const std::string& statement : statements) {
      connection.Execute(statement);
    }
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
