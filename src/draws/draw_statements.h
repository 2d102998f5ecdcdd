// The SQL texts of the draw register: table NUMERIC, one row per draw with its number and its four drawn digits, all
// numbers. Draw number and digits stand in the statement as they were typed; a text that is not a number is a
// DatabaseError.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace marlevo {

// A row of NUMERIC, as text.
struct Draw {
  std::string number;                 // VOU_NO
  std::array<std::string, 4> digits;  // NO1 to NO4

  bool operator==(const Draw&) const = default;
};

inline constexpr std::string_view kSelectDraws = "SELECT * FROM [NUMERIC] ORDER BY VOU_NO";

std::string SelectDraw(std::string_view number);
std::string InsertDraw(const Draw& draw);
std::string DeleteDraw(std::string_view number);

}  // namespace marlevo
