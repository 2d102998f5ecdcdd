// Tickets as marks on the official pre-printed slips: one slip a page, ticket blocks one under another. Lengths in
// twips.
#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "platform/printer/page_drawing.h"
#include "printing/slip_settings.h"
#include "tickets/tickets.h"

namespace marlevo {

enum class SlipType { kThreeDigit, kFourDigit };

// A bet kind as the print dialog names it; the leading digit tells the slip type.
inline constexpr std::array<std::string_view, kBetKinds> kSlipKindNames = {"4星正彩", "4星組彩", "3星正彩", "3星組彩",
                                                                           "3星對彩"};

constexpr SlipType SlipTypeOfKind(int kind) {
  return kSlipKindNames[static_cast<std::size_t>(kind)].starts_with('3') ? SlipType::kThreeDigit : SlipType::kFourDigit;
}

// The name of the slip type's calibration.
constexpr std::string_view SlipName(SlipType type) {
  return type == SlipType::kThreeDigit ? "3Star" : "4Star";
}

// Ticket blocks on one slip.
constexpr int SlipCapacity(SlipType type) {
  return type == SlipType::kThreeDigit ? 6 : 5;
}

// Digit rows of one block.
constexpr int SlipDigitRows(SlipType type) {
  return type == SlipType::kThreeDigit ? 3 : 4;
}

// The further draws that a slip can take part in; the first entry marks nothing.
inline constexpr std::array<std::string_view, 13> kMultiDraws = {
    "不加注",   "加注 2期", "加注 3期", "加注 4期", "加注 5期", "加注 6期", "加注 7期",
    "加注 8期", "加注 9期", "加注10期", "加注12期", "加注18期", "加注24期"};

// What to print of one kind's list.
struct SlipOrder {
  SlipType type;
  int first;           // ticket numbers, both included; numbers outside the list are skipped
  int last;            //
  int multiple;        // position in kMultipliers; 0 marks nothing
  int multi_draw;      // position in kMultiDraws; 0 marks nothing
  bool print_numbers;  // each ticket's number beside its block
};

// The slips of an order, in the order of printing; none when no ticket is in range. The mark for further draws is
// shifted by the skew correction times the number of the ticket that filled the slip, or, on a slip that is not full,
// one past the last number asked for: by list number, not by place on the slip.
std::vector<PageDrawing> SlipMarks(const TicketList& tickets, const SlipOrder& order,
                                   const SlipPrinterSettings& settings);

// How many slips that will be, of a list of this many tickets.
int SlipCount(int tickets, const SlipOrder& order);

// Top left corners of the boxes of a slip; every box is dot_w by dot_h. `position` counts the blocks from 1, `row` and
// `column` from 0; column 0 is the leftmost of ten.
struct SlipPoint {
  double x;
  double y;
};
SlipPoint DigitBox(const SlipPrinterSettings& settings, int position, int row, int column);
SlipPoint MultipleBox(const SlipPrinterSettings& settings, int position, int column);
// `ticket` is the list number that the skew goes by; `multi_draw` a position from 1 in kMultiDraws.
SlipPoint MultiDrawBox(const SlipPrinterSettings& settings, double ticket, int multi_draw);

}  // namespace marlevo
