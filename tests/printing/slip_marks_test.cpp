#include "printing/slip_marks.h"

#include <gtest/gtest.h>

#include <random>

#include "printing/slip_sample.h"
#include "support/ticket_text.h"

namespace marlevo {
namespace {

// The slips of an order, ticket by ticket down the slips, every term written out.
std::vector<PageDrawing> ObviousSlips(const TicketList& tickets, const SlipOrder& order, const SlipPrinterSettings& s) {
  std::vector<PageDrawing> pages(1);
  const auto mark = [&](double x, double y) { pages.back().marks.push_back({x, y, s.dot_w, s.dot_h}); };
  const double column = s.dot_w + s.dot2dot_w;
  const double row = s.dot_h + s.dot2dot_h;
  const auto mark_further_draws = [&](int ticket) {
    const int n = order.multi_draw - 1;
    if (n >= 0) {
      const int line = n / 9;
      mark(s.left + (9 - n % 9) * column + (ticket - 1) * s.fix, s.md + line * row);
    }
  };
  int position = 1;
  int number = order.first;
  for (; number <= order.last; ++number) {
    if (number < 1 || number > static_cast<int>(tickets.size())) {
      continue;
    }
    const double skew = (position - 1) * s.fix;
    const double y = s.top + s.dot_h + s.play2dot + (position - 1) * s.p_height;
    const double y_multiple = y + 3 * s.dot_h + 2 * s.dot2dot_h + s.dot2amt;
    for (int j = 0; j < (order.type == SlipType::kThreeDigit ? 3 : 4); ++j) {
      const char digit = tickets[static_cast<std::size_t>(number - 1)].cells[static_cast<std::size_t>(j)];
      mark(s.left + (digit == 0 ? 9 : '9' - digit) * column + skew, y + j * row);
    }
    if (order.multiple >= 1) {
      mark(s.left + (10 - order.multiple) * column + skew, y_multiple);
    }
    if (order.print_numbers) {
      pages.back().texts.push_back({s.left + 9.5 * column + skew, y_multiple, std::to_string(number)});
    }
    if (++position > (order.type == SlipType::kThreeDigit ? 6 : 5)) {
      mark_further_draws(number);
      position = 1;
      pages.emplace_back();
    }
  }
  if (position > 1) {
    mark_further_draws(number);
  } else {
    pages.pop_back();
  }
  return pages;
}

TEST(SlipMarks, LieWhereTheObviousWayPutsThem) {
  std::mt19937 random(1);
  const auto any = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
  for (int run = 0; run < 2000; ++run) {
    SlipPrinterSettings settings;
    for (const SlipField& field : kSlipFieldTable) {
      settings.*field.value = any(-20, 3000);  // whole numbers, whose sums are exact in any order
    }
    TicketList tickets(static_cast<std::size_t>(any(0, 20)));
    for (Ticket& ticket : tickets) {
      for (char& cell : ticket.cells) {
        cell = any(0, 10) == 0 ? '\0' : static_cast<char>(any('0', '9'));
      }
    }
    const SlipOrder order = {any(0, 1) == 0 ? SlipType::kThreeDigit : SlipType::kFourDigit,
                             any(-3, 12),
                             any(-3, 22),
                             any(0, 10),
                             any(0, 12),
                             any(0, 1) == 0};
    const auto slips = SlipMarks(tickets, order, settings);
    const auto expected = ObviousSlips(tickets, order, settings);
    ASSERT_EQ(slips.size(), expected.size()) << run;
    ASSERT_EQ(SlipCount(static_cast<int>(tickets.size()), order), static_cast<int>(slips.size())) << run;
    for (std::size_t i = 0; i < slips.size(); ++i) {
      ASSERT_EQ(slips[i].marks, expected[i].marks) << run;
      ASSERT_EQ(slips[i].texts, expected[i].texts) << run;
    }
  }
}

TEST(TestSheet, KeepsItsTextsOffTheMarksAndTheEdges) {
  const SlipPrinterSettings laser = {1270, 4300, 60, 60, 300, 240, 420, 530, 0, 1800, 9050, 1520};
  for (const SlipType type : {SlipType::kThreeDigit, SlipType::kFourDigit}) {
    for (const SlipPrinterSettings& settings : {SlipPrinterSettings{}, laser}) {
      const PageDrawing sheet = TestSheet(type, settings, 11900, 16840);
      const std::size_t numbers = SampleSlip(type, settings).texts.size();
      ASSERT_EQ(sheet.texts.size(), numbers + 1 + kSlipFields);
      for (std::size_t i = numbers; i < sheet.texts.size(); ++i) {
        const PageText& text = sheet.texts[i];
        EXPECT_TRUE(text.x >= 300 && text.y >= 300 && text.x + 2200 <= 11600 && text.y <= 16240) << text.text;
        for (const Mark& mark : sheet.marks) {
          EXPECT_FALSE(mark.x < text.x + 2200 && text.x < mark.x + mark.width && mark.y < text.y + 200 &&
                       text.y < mark.y + mark.height);
        }
      }
    }
  }
}

TEST(FieldAreas, GrowWithTheValueThatTheyMeasure) {
  for (int field = 0; field < kSlipFields; ++field) {
    SlipPrinterSettings larger;
    larger.*kSlipFieldTable[static_cast<std::size_t>(field)].value += 7;
    const auto before = FieldAreas(field, SlipType::kFourDigit, {});
    const auto after = FieldAreas(field, SlipType::kFourDigit, larger);
    ASSERT_EQ(before.empty(), field == 9);
    const bool across = field == 1 || field == 2 || field == 4 || field == 8;
    for (std::size_t i = 0; i < before.size(); ++i) {
      // The skew adds up from block to block.
      const double grown = field == 8 ? 7.0 * static_cast<double>(i + 1) : 7;
      EXPECT_EQ(across ? after[i].width - before[i].width : after[i].height - before[i].height, grown) << field;
    }
  }
}

}  // namespace
}  // namespace marlevo
