#include "printing/slip_sample.h"

#include <algorithm>
#include <string>

#include "platform/base/text.h"
#include "printing/slip_marks.h"

namespace marlevo {

namespace {

constexpr int kColumns = 10;
constexpr int kSampleMultiDraw = 10;  // marks the first box of the second row

// Tickets that mark the outermost boxes, in one block on the left where the next block has its mark on the right: a
// page that is stretched or crooked shows in these boxes first.
TicketList SampleTickets(SlipType type) {
  TicketList tickets(SlipCapacity(type));
  for (std::size_t i = 0; i < tickets.size(); ++i) {
    tickets[i].cells = i % 2 == 0 ? std::array{'9', '0', '5', '9'} : std::array{'0', '9', '4', '0'};
  }
  return tickets;
}

Mark Box(SlipPoint at, const SlipPrinterSettings& settings) {
  return {at.x, at.y, settings.dot_w, settings.dot_h};
}

// From the left edge of the first column to the right edge of the last.
double ColumnsWidth(const SlipPrinterSettings& settings) {
  return kColumns * settings.dot_w + (kColumns - 1) * settings.dot2dot_w;
}

}  // namespace

PageDrawing SampleSlip(SlipType type, const SlipPrinterSettings& settings) {
  const int leftmost_multiple = static_cast<int>(kMultipliers.size()) - 1;
  const SlipOrder order = {type, 1, SlipCapacity(type), leftmost_multiple, kSampleMultiDraw, true};
  return SlipMarks(SampleTickets(type), order, settings).front();
}

PageDrawing TestSheet(SlipType type, const SlipPrinterSettings& settings, double paper_width, double paper_height) {
  constexpr double kLine = 300;
  constexpr double kBorder = 400;        // some printers print nothing nearer to the edge
  constexpr double kValueColumn = 2400;  // room for the longest label and its value
  constexpr int kLines = 1 + kSlipFields / 2;

  PageDrawing page = SampleSlip(type, settings);
  double lowest = 0;
  double rightmost = 0;
  for (const Mark& mark : page.marks) {
    lowest = std::max(lowest, mark.y + mark.height);
    rightmost = std::max(rightmost, mark.x + mark.width);
  }
  // The texts stand below the marks where the paper has room for them there, otherwise to the right of the marks.
  const double last_x = std::max(kBorder, paper_width - kBorder - 2 * kValueColumn);
  const bool below = lowest + (kLines + 2) * kLine + kBorder < paper_height;
  const double x = std::clamp(below ? settings.left : rightmost + 4 * kLine, kBorder, last_x);
  double y = below ? lowest + 2 * kLine : 2 * kBorder;
  page.texts.push_back({x, y, std::string(SlipCaption(type)) + " 測試列印"});
  for (std::size_t field = 0; field < kSlipFieldTable.size(); ++field) {
    const bool first_column = field % 2 == 0;
    y += first_column ? kLine : 0;
    page.texts.push_back(
        {first_column ? x : x + kValueColumn, y,
         std::string(kSlipFieldTable[field].label) + "  " + NumberText(settings.*kSlipFieldTable[field].value)});
  }
  return page;
}

std::vector<Mark> SlipBoxes(SlipType type, const SlipPrinterSettings& settings) {
  std::vector<Mark> boxes;
  for (int position = 1; position <= SlipCapacity(type); ++position) {
    for (int column = 0; column < kColumns; ++column) {
      for (int row = 0; row < SlipDigitRows(type); ++row) {
        boxes.push_back(Box(DigitBox(settings, position, row, column), settings));
      }
      boxes.push_back(Box(MultipleBox(settings, position, column), settings));
    }
  }
  for (int multi_draw = 1; multi_draw < static_cast<int>(kMultiDraws.size()); ++multi_draw) {
    boxes.push_back(Box(MultiDrawBox(settings, SlipCapacity(type), multi_draw), settings));
  }
  return boxes;
}

std::vector<Mark> FieldAreas(int field, SlipType type, const SlipPrinterSettings& settings) {
  const double width = ColumnsWidth(settings);
  const int rows = SlipDigitRows(type);
  const int blocks = SlipCapacity(type);
  const SlipPoint first = DigitBox(settings, 1, 0, 0);
  std::vector<Mark> areas;
  switch (field) {
    case 0:
      areas.push_back({settings.left, 0, width, settings.top});
      break;
    case 1:
      areas.push_back({0, first.y, settings.left, MultipleBox(settings, 1, 0).y + settings.dot_h - first.y});
      break;
    case 2:
    case 3:
      areas = SlipBoxes(type, settings);
      break;
    case 4:
      for (int row = 0; row < rows; ++row) {
        for (int column = 0; column + 1 < kColumns; ++column) {
          const SlipPoint box = DigitBox(settings, 1, row, column);
          areas.push_back({box.x + settings.dot_w, box.y, settings.dot2dot_w, settings.dot_h});
        }
      }
      break;
    case 5:
      for (int row = 0; row + 1 < rows; ++row) {
        for (int column = 0; column < kColumns; ++column) {
          const SlipPoint box = DigitBox(settings, 1, row, column);
          areas.push_back({box.x, box.y + settings.dot_h, settings.dot_w, settings.dot2dot_h});
        }
      }
      break;
    case 6:
      for (int position = 1; position <= blocks; ++position) {
        const SlipPoint box = DigitBox(settings, position, 0, 0);
        areas.push_back({box.x, box.y - settings.play2dot, width, settings.play2dot});
      }
      break;
    case 7:
      for (int position = 1; position <= blocks; ++position) {
        const SlipPoint box = MultipleBox(settings, position, 0);
        areas.push_back({box.x, box.y - settings.dot2amt, width, settings.dot2amt});
      }
      break;
    case 8:
      for (int position = 2; position <= blocks; ++position) {
        const SlipPoint box = DigitBox(settings, position, 0, 0);
        const double height = MultipleBox(settings, position, 0).y + settings.dot_h - box.y;
        areas.push_back({settings.left, box.y, box.x - settings.left, height});
      }
      break;
    case 10:
      areas.push_back({settings.left, 0, width, settings.md});
      break;
    case 11:
      areas.push_back({settings.left, first.y, width, settings.p_height});
      break;
    default:
      break;
  }
  return areas;
}

}  // namespace marlevo
