#include "draws/draw_statements.h"

#include "platform/sql_text/sql_text.h"

namespace marlevo {

std::string SelectDraw(std::string_view number) {
  return "SELECT * FROM [NUMERIC] WHERE VOU_NO=" + SqlNumber(number);
}

std::string InsertDraw(std::string_view number, const DrawnDigits& digits) {
  std::string values = SqlNumber(number);
  for (const std::string& digit : digits) {
    values.append(",").append(SqlNumber(digit));
  }
  return "INSERT INTO [NUMERIC] (VOU_NO,NO1,NO2,NO3,NO4) VALUES (" + values + ")";
}

std::string DeleteDraw(std::string_view number) {
  return "DELETE FROM [NUMERIC] WHERE VOU_NO=" + SqlNumber(number);
}

}  // namespace marlevo
