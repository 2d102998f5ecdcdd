// The prize classes by which stored tickets are shown and checked. PLAY_MODE of a stored ticket is the bet kind that
// the ticket was sold as (2 is "三星正彩"), but everything that reads it takes it as a prize class of the four-digit
// game (2 is "後三彩", which compares NO1 to NO3 with drawn digits 2 to 4). The two readings differ on purpose and are
// not to be brought together.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace marlevo {

inline constexpr int kPlayModes = 5;

struct PrizeClass {
  std::string_view name;
  int digits;          // NO1 to NO<digits> are shown and compared
  int first_position;  // drawn digit, from 0, that NO1 is compared with; the others follow
  double multiplier;   // prize for each yuan of the stake
};

// By play mode.
inline constexpr std::array<PrizeClass, kPlayModes> kPrizeClasses = {
    {{"正彩", 4, 0, 5000}, {"前三彩", 3, 0, 500}, {"後三彩", 3, 1, 500}, {"前對彩", 2, 0, 40}, {"後對彩", 2, 2, 40}}};

// A stored ticket that wins in the prize class of its play mode.
struct Winner {
  std::string customer_no;
  int mode;
  double stake;  // yuan, as stored
};

// The line of a winner, e.g. "A01 正彩中獎 125000 元 !!".
std::string PrizeLine(const Winner& winner);

}  // namespace marlevo
