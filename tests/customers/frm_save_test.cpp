#include "customers/frmSave.h"

#include <QProgressBar>
#include <QTableView>

#include "customer_database.h"
#include "support/ticket_text.h"
#include "support/window_driver.h"

namespace marlevo {
namespace {

class FrmSaveTest : public CustomerDatabaseTest {
 protected:
  // Answers the question and closes the message that all is stored, which is true by then.
  std::vector<ModalStep> YesToSaving(const QString& number) const {
    return {ExpectQuestion("確定要將號碼組合資料存檔到 [" + number + "] ?", QMessageBox::Yes),
            [this, number](QWidget& message) {
              EXPECT_EQ(Tickets(number.toStdString()).substr(14), "|2|25|1|1|2|3|0\n");
              ExpectMessage("存檔完畢 !")(message);
            }};
  }

  const CurrentList one_ = test::Lists({{2, "123"}});
};

TEST_F(FrmSaveTest, SavesUnderTheCurrentCustomerAfterAYes) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddCustomer({"A02", std::string(90, 'x'), "", "", ""});
  const Shown<frmSave> window(Opening(), one_);
  auto& grid = Find<QTableView>(window, "mfgCustom_H");
  const int width = window.fontMetrics().horizontalAdvance(QString(15, u'W'));
  EXPECT_EQ(grid.columnWidth(0), width);
  EXPECT_EQ(grid.columnWidth(1), width);
  WithModals([&] { QTest::keyClick(&grid, Qt::Key_Return); }, {});
  Press(window, "cmdPrint", {ExpectQuestion("確定要將號碼組合資料存檔到 [A01] ?", QMessageBox::No)});
  Press(window, "cmdPrint", {[](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); }});
  QTest::keyClick(&grid, Qt::Key_Down);
  const PaintCounter counter("picMsg");
  Press(window, "cmdPrint", YesToSaving("A02"));
  EXPECT_GT(counter.painted, 0);
  EXPECT_TRUE(Find<QWidget>(window, "picMsg").isHidden());
  EXPECT_EQ(Find<QProgressBar>(window, "prgMsg").value(), Find<QProgressBar>(window, "prgMsg").maximum());
  EXPECT_EQ(Tickets("A01"), "");
  QTest::keyClick(&grid, Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(FrmSaveTest, TheCurrentCustomerIsTheHeadingOrTheLastAddedOrTheOneBefore) {
  const Shown<frmSave> window(Opening(), one_);
  Press(window, "cmdPrint", YesToSaving("客戶編號"));
  const auto visit = [&window](const std::vector<const char*>& added, const char* button) {
    Press(window, "cmdCustom", {[&](QWidget& maintenance) {
            EXPECT_EQ(maintenance.objectName(), "frmCustom");
            for (const char* number : added) {
              Enter(maintenance, "txtCustom_No", number);
              Click(maintenance, button);
            }
            Click(maintenance, "cmdExit");
          }});
    return GridText(window, "mfgCustom_H");
  };
  EXPECT_EQ(visit({"B01", "C01", "A01"}, "cmdAdd"), "A01|\nB01|\nC01|\n0");
  PressRow(window, "mfgCustom_H", 1);
  EXPECT_EQ(visit({"A01"}, "cmdEdit"), "A01|\nB01|\nC01|\n1");
  Run(DeleteCustomer("B01"));
  EXPECT_EQ(visit({}, ""), "A01|\nC01|\n0");
  EXPECT_EQ(visit({"B01"}, "cmdAdd"), "A01|\nB01|\nC01|\n1");
  Press(window, "cmdPrint", YesToSaving("B01"));
}

}  // namespace
}  // namespace marlevo
