// The memo sheet for package bets: a blank form on which a customer's numbers are written down. The sheet is drawn with
// lines and texts, so that it is crisp at any size.
#pragma once

#include "platform/printer/printer.h"

namespace marlevo {

// The sheet has the shape of a quarter of an A4 page. Its border is so wide that nothing falls into the outermost 5 mm
// of the paper, which printers leave blank, when four sheets are printed on any paper from A5 on.
Picture MemoSheet();

}  // namespace marlevo
