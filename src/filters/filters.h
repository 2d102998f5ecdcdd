// The six deletion filters. Each removes tickets from the lists of the ticked kinds, box and pair kinds included; lists
// of other kinds stay as they are. The tickets that are left keep their order and their colour. An empty cell is
// neither odd nor even and never equals another cell, not even another empty one.
#pragma once

#include "tickets/tickets.h"

namespace marlevo {

void DeleteAllOdd(CurrentList& list);     // 純奇數: all digits odd
void DeleteAllEven(CurrentList& list);    // 純偶數: all digits even, no empty cell
void DeleteAllSame(CurrentList& list);    // 四柱同號: all digits the same, in three columns too
void DeleteThreeSame(CurrentList& list);  // 三柱同號: one digit in at least three columns
void DeleteTwoSame(CurrentList& list);    // 二柱同號: one digit in at least two columns

// 同號刪除: of all tickets with the same value only the first stays. The value of a ticket is the decimal number that
// its digits form; the digits of a box ticket are sorted first, so that 4312 has the value 1234. Values are compared
// across kinds, in the order of the kinds: 0123 in the list of 四星正彩 removes 123 from the list of 三星正彩. A ticket
// without digits stays. Throws std::out_of_range for a value outside 0 to 9999, which digits never have.
void DeleteRepeats(CurrentList& list);

}  // namespace marlevo
