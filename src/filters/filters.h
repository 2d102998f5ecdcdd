// The six deletion filters. Each removes tickets from the lists of the ticked kinds, box and pair kinds included; lists
// of other kinds stay as they are. What stays keeps its order and its colour. An empty cell reads as even where a digit
// is asked for and is never equal to anything.
#pragma once

#include <array>

#include "tickets/tickets.h"

namespace marlevo {

void DeleteAllOdd(CurrentList& list);     // 純奇數: all digits odd
void DeleteAllEven(CurrentList& list);    // 純偶數: all digits even, no empty cell
void DeleteAllSame(CurrentList& list);    // 四柱同號: all digits the same, in three columns too
void DeleteThreeSame(CurrentList& list);  // 三柱同號: one digit in at least three columns
void DeleteTwoSame(CurrentList& list);    // 二柱同號: one digit in at least two columns

// 同號刪除: the second and later tickets of one value. The value is the decimal value of the digits, of a box ticket
// that of its sorted digits; it is compared across kinds, in the order of the kinds: 0123 of a four-digit list removes
// 123 of a three-digit one. A ticket without digits stays. std::out_of_range for a value outside 0 to 9999, which
// digits never have.
void DeleteRepeats(CurrentList& list);

// The cells in ascending order, empty ones first: the same for all orderings of the same digits.
std::array<char, 4> SortString(std::array<char, 4> digits);

}  // namespace marlevo
