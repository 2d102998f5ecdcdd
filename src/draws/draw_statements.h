// The SQL texts of the draw register: table NUMERIC, one row per draw with its number and its four drawn digits, all
// numbers. Draw number and digits go in as typed; one that is not a number is a DatabaseError.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace marlevo {

// The drawn digits of positions 1 to 4 as text.
using DrawnDigits = std::array<std::string, 4>;

inline constexpr std::string_view kSelectDraws = "SELECT * FROM [NUMERIC] ORDER BY VOU_NO";

std::string SelectDraw(std::string_view number);
std::string InsertDraw(std::string_view number, const DrawnDigits& digits);
std::string DeleteDraw(std::string_view number);

}  // namespace marlevo
