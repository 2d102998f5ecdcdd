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

  // Tickets as the values of PLAY_MODE, PLAY_AMT, PLAY_SEQ and NO1 to NO4: "3,25,1,1,7,0,9".
  void AddRecord(const std::string& number, const std::string& stamp, const std::vector<std::string>& tickets) {
    Connection connection(Opening());
    for (const std::string& ticket : tickets) {
      connection.Execute(
          "INSERT INTO CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_MODE,PLAY_AMT,PLAY_SEQ,NO1,NO2,NO3,NO4) VALUES ('" + number +
          "','" + stamp + "'," + ticket + ")");
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
