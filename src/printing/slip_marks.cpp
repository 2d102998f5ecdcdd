#include "printing/slip_marks.h"

#include <algorithm>

#include "platform/base/text.h"

namespace marlevo {

namespace {

constexpr int kMultiDrawsInRow = 9;

double ColumnPitch(const SlipPrinterSettings& settings) {
  return settings.dot_w + settings.dot2dot_w;
}

double RowPitch(const SlipPrinterSettings& settings) {
  return settings.dot_h + settings.dot2dot_h;
}

void AddTicket(PageDrawing& page, const Ticket& ticket, int number, int position, const SlipOrder& order,
               const SlipPrinterSettings& settings) {
  const auto add = [&](SlipPoint at) { page.marks.push_back({at.x, at.y, settings.dot_w, settings.dot_h}); };
  for (int row = 0; row < SlipDigitRows(order.type); ++row) {
    add(DigitBox(settings, position, row, 9 - DigitValue(ticket.cells[row])));
  }
  if (order.multiple >= 1) {
    add(MultipleBox(settings, position, 10 - order.multiple));
  }
  if (order.print_numbers) {
    const SlipPoint row = MultipleBox(settings, position, 0);
    page.texts.push_back({row.x + 9.5 * ColumnPitch(settings), row.y, NumberText(number)});
  }
}

void AddMultiDraw(PageDrawing& page, double ticket, const SlipOrder& order, const SlipPrinterSettings& settings) {
  if (order.multi_draw >= 1) {
    const SlipPoint at = MultiDrawBox(settings, ticket, order.multi_draw);
    page.marks.push_back({at.x, at.y, settings.dot_w, settings.dot_h});
  }
}

}  // namespace

SlipPoint DigitBox(const SlipPrinterSettings& settings, int position, int row, int column) {
  return {settings.left + column * ColumnPitch(settings) + (position - 1) * settings.fix,
          settings.top + settings.dot_h + settings.play2dot + row * RowPitch(settings) +
              (position - 1) * settings.p_height};
}

SlipPoint MultipleBox(const SlipPrinterSettings& settings, int position, int column) {
  // The height of three digit rows is counted for both slips. The four-digit slip has a fourth row; the value of its
  // dot2amt contains that row's height.
  const SlipPoint first = DigitBox(settings, position, 0, column);
  return {first.x, first.y + 3 * settings.dot_h + 2 * settings.dot2dot_h + settings.dot2amt};
}

SlipPoint MultiDrawBox(const SlipPrinterSettings& settings, double ticket, int multi_draw) {
  const int column = 9 - (multi_draw - 1) % kMultiDrawsInRow;
  const int row = (multi_draw - 1) / kMultiDrawsInRow;
  return {settings.left + column * ColumnPitch(settings) + (ticket - 1) * settings.fix,
          settings.md + row * RowPitch(settings)};
}

std::vector<PageDrawing> SlipMarks(const TicketList& tickets, const SlipOrder& order,
                                   const SlipPrinterSettings& settings) {
  std::vector<PageDrawing> pages;
  const int first = std::max(order.first, 1);
  const int last = std::min(order.last, static_cast<int>(tickets.size()));
  int position = 1;
  for (int number = first; number <= last; ++number) {
    if (position == 1) {
      pages.emplace_back();
    }
    AddTicket(pages.back(), tickets[number - 1], number, position, order, settings);
    if (++position > SlipCapacity(order.type)) {
      AddMultiDraw(pages.back(), number, order, settings);
      position = 1;
    }
  }
  if (position > 1) {
    AddMultiDraw(pages.back(), order.last + 1.0, order, settings);
  }
  return pages;
}

int SlipCount(int tickets, const SlipOrder& order) {
  const int printed = std::max(0, std::clamp(order.last, 0, tickets) - std::max(order.first, 1) + 1);
  return (printed + SlipCapacity(order.type) - 1) / SlipCapacity(order.type);
}

}  // namespace marlevo
