#include "draws/draw_statements.h"

#include "platform/database/sql_text.h"

namespace marlevo {

std::string SelectDraw(std::string_view number) {
  return "SELECT * FROM [NUMERIC] WHERE VOU_NO=" + SqlNumber(number);
}

std::string InsertDraw(const Draw& draw) {
  std::string values = SqlNumber(draw.number);
  for (const std::string& digit : draw.digits) {
    values.append(",").append(SqlNumber(digit));
  }
  return "INSERT INTO [NUMERIC] (VOU_NO,NO1,NO2,NO3,NO4) VALUES (" + values + ")";
}

std::string DeleteDraw(std::string_view number) {
  return "DELETE FROM [NUMERIC] WHERE VOU_NO=" + SqlNumber(number);
}

}  // namespace marlevo
