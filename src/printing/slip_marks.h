// Tickets as marks on the official pre-printed slips: one slip a page, one ticket block under another. Lengths are
// twips from the page's top left corner.
#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "platform/printer/page_drawing.h"
#include "printing/slip_settings.h"
#include "printing/slip_type.h"
#include "tickets/tickets.h"

namespace marlevo {

// The numbers of further draws that a slip can take part in, as the operator chooses them; the first entry prints no
// mark.
inline constexpr std::array<std::string_view, 13> kMultiDraws = {
    "不加注",   "加注 2期", "加注 3期", "加注 4期", "加注 5期", "加注 6期", "加注 7期",
    "加注 8期", "加注 9期", "加注10期", "加注12期", "加注18期", "加注24期"};

// What to print of one kind's ticket list.
struct SlipOrder {
  SlipType type;
  int first;           // list number of the first ticket to print, and
  int last;            // of the last one; numbers outside the list are skipped
  int multiple;        // position in kMultipliers; 0 prints no mark
  int multi_draw;      // position in kMultiDraws; 0 prints no mark
  bool print_numbers;  // prints each ticket's list number beside its block
};

// The slips of an order, in the order of printing; none when no ticket is in range.
//
// The mark for further draws is moved right by the skew correction: offset = fix x (n - 1), where n is the list number
// of the slip's last ticket, or order.last + 1 when the slip is not full. Five tickets fill a four-digit slip, so with
// fix = 15 and tickets 8 to 13 the mark of the first slip is moved by 15 x (12 - 1) = 165, that of the second, which
// carries ticket 13 alone, by 15 x (14 - 1) = 195.
std::vector<PageDrawing> SlipMarks(const TicketList& tickets, const SlipOrder& order,
                                   const SlipPrinterSettings& settings);

// How many slips SlipMarks makes of a list of this many tickets.
int SlipCount(int tickets, const SlipOrder& order);

// The top left corners of the boxes of a slip; every box is dot_w by dot_h. `position` counts the ticket blocks from 1,
// `row` and `column` count from 0, column 0 being the leftmost of ten.
struct SlipPoint {
  double x;
  double y;
};
SlipPoint DigitBox(const SlipPrinterSettings& settings, int position, int row, int column);
SlipPoint MultipleBox(const SlipPrinterSettings& settings, int position, int column);
// `ticket` is the n of the offset above, `multi_draw` a position from 1 in kMultiDraws.
SlipPoint MultiDrawBox(const SlipPrinterSettings& settings, double ticket, int multi_draw);

}  // namespace marlevo
