// The largest list there is: all kinds, all digits of all columns, 23,000 tickets.
#pragma once

#include "board/expansion.h"

namespace marlevo {

inline CurrentList LargestList() {
  Selection picks;
  picks.kinds.fill(true);
  picks.columns.fill(0x3FF);
  CurrentList list;
  ExpandTickets(picks, list);
  return list;
}

}  // namespace marlevo
