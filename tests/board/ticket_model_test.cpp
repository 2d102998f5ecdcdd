#include "board/ticket_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>

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

}  // namespace
}  // namespace marlevo
