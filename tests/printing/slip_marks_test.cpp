#include "printing/slip_marks.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/text/text.h"
#include "support/ticket_text.h"

namespace marlevo {
namespace {

// Columns 100 apart, rows 50 apart; the first digit row lies at 1200, the multiple row at 1720.
// Top, left, dot_w, dot_h, dot2dot_w, dot2dot_h, play2dot, dot2amt, fix, play, md, p_height.
constexpr SlipPrinterSettings kSettings = {1000, 100, 10, 20, 90, 30, 180, 400, 0, 777, 9000, 2000};

TicketList Repeated(int count, const char* ticket) {
  return TicketList(static_cast<std::size_t>(count), test::Tickets(ticket)[0]);
}

SlipOrder Order(SlipType type, int first, int last, int multiple = 0, int multi_draw = 0, bool numbers = false) {
  return {type, first, last, multiple, multi_draw, numbers};
}

// "x,y" of every mark, in the order of drawing, then the texts.
std::string Describe(const PageDrawing& page) {
  std::string text;
  for (const Mark& mark : page.marks) {
    text += NumberText(mark.x) + ',' + NumberText(mark.y) + ' ';
  }
  for (const PageText& line : page.texts) {
    text += '"' + line.text + "\" " + NumberText(line.x) + ',' + NumberText(line.y) + ' ';
  }
  text.resize(text.empty() ? 0 : text.size() - 1);
  return text;
}

// Marks on each page: "25 5".
std::string Counts(const std::vector<PageDrawing>& pages) {
  std::string text;
  for (const PageDrawing& page : pages) {
    text.append(text.empty() ? "" : " ").append(std::to_string(page.marks.size()));
  }
  return text;
}

TEST(SlipMarks, PutsEachDigitIntoItsBox) {
  const auto three = SlipMarks(Repeated(1, "901"), Order(SlipType::kThreeDigit, 1, 1), kSettings);
  ASSERT_EQ(three.size(), 1U);
  EXPECT_EQ(Describe(three[0]), "100,1200 1000,1250 900,1300");
  EXPECT_EQ(three[0].marks[0].width, 10);
  EXPECT_EQ(three[0].marks[0].height, 20);

  // x50 lies leftmost, x 2 in the tenth box; the multiple row is the same on both slips. An empty cell marks 0.
  const auto four = SlipMarks(Repeated(1, "5_09"), Order(SlipType::kFourDigit, 1, 1, 10, 0, true), kSettings);
  EXPECT_EQ(Describe(four[0]), "500,1200 1000,1250 1000,1300 100,1350 100,1720 \"1\" 1050,1720");
  EXPECT_TRUE(Describe(SlipMarks(Repeated(1, "000"), Order(SlipType::kThreeDigit, 1, 1, 1), kSettings)[0])
                  .ends_with(" 1000,1720"));
}

TEST(SlipMarks, BlocksGoDownTheSlipAndAreShiftedByTheSkew) {
  SlipPrinterSettings settings = kSettings;
  settings.fix = 15;
  const auto pages = SlipMarks(Repeated(5, "9999"), Order(SlipType::kFourDigit, 1, 5, 10, 0, true), settings);
  ASSERT_EQ(pages.size(), 1U);
  const Mark last_block = pages[0].marks[4 * 5];
  EXPECT_EQ(last_block.x, 160);
  EXPECT_EQ(last_block.y, 1200 + 4 * 2000);
  EXPECT_EQ(pages[0].texts[4], (PageText{160 + 950, 9720, "5"}));
}

TEST(SlipMarks, FillsSlipsAndMarksFurtherDrawsOnEach) {
  const struct {
    SlipType type;
    int tickets, first, last, multi_draw;
    const char* marks;
  } cases[] = {
      {SlipType::kThreeDigit, 7, 1, 7, 0, "18 3"},      {SlipType::kThreeDigit, 6, 1, 6, 0, "18"},
      {SlipType::kFourDigit, 6, 1, 6, 0, "20 4"},       {SlipType::kFourDigit, 6, 1, 6, 1, "21 5"},
      {SlipType::kFourDigit, 5, 1, 5, 12, "21"},        {SlipType::kFourDigit, 20, 8, 13, 1, "21 5"},
      {SlipType::kFourDigit, 3, 0, 3, 0, "12"},         {SlipType::kFourDigit, 3, -5, -1, 4, ""},
      {SlipType::kFourDigit, 3, 3, 2147483647, 0, "4"}, {SlipType::kFourDigit, 0, 1, 0, 4, ""},
      {SlipType::kFourDigit, 5, 1, 7, 1, "21"},
  };
  for (const auto& c : cases) {
    const SlipOrder order = Order(c.type, c.first, c.last, 0, c.multi_draw);
    const auto pages = SlipMarks(Repeated(c.tickets, "1234"), order, kSettings);
    EXPECT_EQ(Counts(pages), c.marks) << c.tickets << " tickets, " << c.first << " to " << c.last;
    EXPECT_EQ(SlipCount(c.tickets, order), static_cast<int>(pages.size()));
  }
}

TEST(SlipMarks, FurtherDrawsHaveNineBoxesToARow) {
  const std::pair<int, const char*> cases[] = {{1, "1000,9000"}, {9, "200,9000"}, {10, "1000,9050"}, {12, "800,9050"}};
  for (const auto& [multi_draw, at] : cases) {
    const auto pages = SlipMarks(Repeated(1, "111"), Order(SlipType::kThreeDigit, 1, 1, 0, multi_draw), kSettings);
    EXPECT_TRUE(Describe(pages[0]).ends_with(at)) << multi_draw;
  }
}

TEST(SlipMarks, FurtherDrawsAreShiftedByListNumber) {
  SlipPrinterSettings settings = kSettings;
  settings.fix = 1;
  // Slips filled by tickets 12 and 17 carry those numbers; the last one, with ticket 18 alone, one past it.
  const auto pages = SlipMarks(Repeated(30, "1111"), Order(SlipType::kFourDigit, 8, 18, 0, 1), settings);
  ASSERT_EQ(Counts(pages), "21 21 5");
  EXPECT_EQ(pages[0].marks.back().x, 1000 + 11);
  EXPECT_EQ(pages[1].marks.back().x, 1000 + 16);
  EXPECT_EQ(pages[2].marks.back().x, 1000 + 18);
}

}  // namespace
}  // namespace marlevo
