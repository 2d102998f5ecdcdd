// The memo sheet for package bets: a blank form on which a customer's numbers are written down. Drawn, not a bitmap, so
// that it is crisp at any size.
#pragma once

#include "platform/printer/printer.h"

namespace marlevo {

// Made for a quarter of an A4 page. Everything lies inside a border that stays outside a printer's unprintable 5 mm
// when the sheet is printed on a quarter of any paper from A5 on.
Picture MemoSheet();

}  // namespace marlevo
