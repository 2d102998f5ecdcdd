#include "ui/ticket_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QBrush>
#include <QFontMetrics>

#include "ui/appearance.h"

namespace marlevo {
namespace {

std::string Row(const TicketModel& model, int row) {
  QString text;
  for (int column = 0; column < model.columnCount(); ++column) {
    text += model.index(row, column).data().toString() + '|';
  }
  return text.toStdString();
}

TEST(TicketModelTest, ShowsNumberedTicketsAndABlankLastRowThroughEveryChange) {
  TicketList tickets;
  TicketModel model(tickets, 4, nullptr);
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
  EXPECT_EQ(model.rowCount(), 1);
  EXPECT_EQ(Row(model, 0), "|||||");

  tickets = {{{'0', '9', '0', '7'}}, {{'1', '2', 0, '4'}}, {{'5', '6', '7', '8'}}};
  EXPECT_EQ(model.rowCount(), 1) << "views have not been told yet";
  model.Refresh();
  ASSERT_EQ(model.rowCount(), 4);
  EXPECT_EQ(Row(model, 0), "1|0|9|0|7|");
  EXPECT_EQ(Row(model, 1), "2|1|2||4|");
  EXPECT_EQ(Row(model, 3), "|||||");

  tickets.erase(tickets.begin());
  EXPECT_EQ(Row(model, 2), "|||||") << "the list is shorter than the views know";
  model.Refresh();
  ASSERT_EQ(model.rowCount(), 3);
  EXPECT_EQ(Row(model, 0), "1|1|2||4|");
}

TEST(TicketModelTest, WinnersAreBlackOnYellowInDigitCellsOnly) {
  const TicketList tickets = {{{'1', '2', '3'}, Paint::kYellow}, {{'1', '2', '4'}, Paint::kWhite}, {{'1', '2', '5'}}};
  const TicketModel model(tickets, 3, nullptr);
  const auto colour = [&model](int row, int column, int role) {
    return model.index(row, column).data(role).value<QColor>();
  };
  for (int column = 1; column <= 3; ++column) {
    EXPECT_EQ(colour(0, column, Qt::BackgroundRole), QColor(255, 255, 0));
    EXPECT_EQ(colour(0, column, Qt::ForegroundRole), QColor(Qt::black));
    EXPECT_EQ(colour(1, column, Qt::BackgroundRole), QColor(255, 255, 255));
    EXPECT_FALSE(colour(2, column, Qt::BackgroundRole).isValid());
  }
  EXPECT_NE(colour(0, 0, Qt::BackgroundRole), QColor(255, 255, 0));
}

TEST(AppearanceTest, ColumnsOfChineseTextStandUnderOneAnother) {
  const QFontMetrics metrics(AlignedFont());
  EXPECT_EQ(metrics.horizontalAdvance("四星正彩"), metrics.horizontalAdvance("12345678"));
  EXPECT_EQ(metrics.horizontalAdvance("張 Ｘ"), metrics.horizontalAdvance("     "));
}

}  // namespace
}  // namespace marlevo
