#include "customers/customer_statements.h"

#include "customers/prizes.h"
#include "platform/database/sql_text.h"

namespace marlevo {

std::string SelectCustomer(std::string_view number) {
  return "SELECT * FROM [CUSTOM_H] WHERE CUSTOM_NO=" + SqlText(number);
}

std::string InsertCustomer(const Customer& customer) {
  return "INSERT INTO [CUSTOM_H] (CUSTOM_NO,CUSTOM_NAME,TEL1,TEL2,MEMO1) VALUES (" + SqlText(customer.number) + "," +
         SqlText(customer.name) + "," + SqlText(customer.tel1) + "," + SqlText(customer.tel2) + "," +
         SqlText(customer.memo) + ")";
}

std::string DeleteCustomer(std::string_view number) {
  return "DELETE FROM [CUSTOM_H] WHERE CUSTOM_NO=" + SqlText(number);
}

std::string DeletePurchases(std::string_view number) {
  return "DELETE FROM [CUSTOM_D] WHERE CUSTOM_NO=" + SqlText(number);
}

std::string SelectRecords(std::string_view number) {
  return "SELECT SAL_DATE,COUNT(CUSTOM_NO) AS SAL_NUM FROM CUSTOM_D WHERE CUSTOM_NO=" + SqlText(number) +
         " GROUP BY SAL_DATE";
}

std::string SelectRecord(std::string_view number, std::string_view stamp) {
  return "SELECT * FROM CUSTOM_D WHERE CUSTOM_NO=" + SqlText(number) + " AND SAL_DATE=" + SqlText(stamp) +
         " ORDER BY PLAY_MODE,PLAY_SEQ";
}

std::string DeleteRecord(std::string_view number, std::string_view stamp) {
  return "DELETE FROM CUSTOM_D WHERE CUSTOM_NO=" + SqlText(number) + " AND SAL_DATE=" + SqlText(stamp);
}

std::string InsertTicket(std::string_view number, std::string_view stamp, const StoredTicket& ticket) {
  std::string sql = "INSERT INTO CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_MODE,PLAY_AMT,PLAY_SEQ,NO1,NO2,NO3,NO4) VALUES (" +
                    SqlText(number) + "," + SqlText(stamp) + "," + std::to_string(ticket.mode) + "," +
                    std::to_string(ticket.amount) + "," + std::to_string(ticket.seq);
  for (const int digit : ticket.digits) {
    sql.append(",").append(std::to_string(digit));
  }
  return sql + ")";
}

std::string SelectWinners(int mode, const std::array<std::string, 4>& drawn, const CheckScope& scope) {
  const PrizeClass& prize = kPrizeClasses[mode];
  std::string sql = "SELECT * FROM CUSTOM_D WHERE PLAY_MODE=" + std::to_string(mode);
  for (int column = 0; column < prize.digits; ++column) {
    const std::string& digit = drawn[prize.first_position + column];
    sql += " AND NO" + std::to_string(column + 1) + "=" + SqlNumber(digit);
  }
  if (scope.number) {
    sql += " AND CUSTOM_NO=" + SqlText(*scope.number);
    if (scope.stamp) {
      sql += " AND SAL_DATE=" + SqlText(*scope.stamp);
    }
    sql += " ";
  }
  return sql + " ORDER BY CUSTOM_NO";
}

}  // namespace marlevo
