#include "customers/frmSave.h"

#include <QProgressBar>

#include "customer_windows.h"
#include "support/ticket_text.h"

namespace marlevo {
namespace {

class FrmSaveTest : public CustomerWindowsTest {
 protected:
  const CurrentList one_ = test::Lists({{2, "123"}});
};

TEST_F(FrmSaveTest, StoresEveryTicketOfTheTickedKindsUnderOneStamp) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddCustomer({"A02", "陳大文", "", "", ""});
  // A three-digit list has no fourth column, whatever its cell holds; an empty cell is 0.
  CurrentList list = test::Lists({{0, "1234 5678"}, {3, "1126 1_3"}, {4, ""}});
  list.kinds[1].tickets = test::Tickets("9999");
  list.kinds[3].amount = "1250";
  const Shown<frmSave> window(Opening(), list);
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), "A01|王小明\nA02|陳大文\n");

  Press(window, "cmdPrint", {ExpectQuestion("確定要將號碼組合資料存檔到 [A01] ?", QMessageBox::No)});
  PressRow(window, "mfgCustom_H", 1);
  const PaintCounter counter("picMsg");
  Press(window, "cmdPrint", YesToSaving("A02"));
  EXPECT_GT(counter.painted, 0);
  EXPECT_TRUE(Find<QWidget>(window, "picMsg").isHidden());
  EXPECT_EQ(Find<QProgressBar>(window, "prgMsg").value(), Find<QProgressBar>(window, "prgMsg").maximum());
  EXPECT_EQ(Tickets("A01"), "");
  const std::string stored = Tickets("A02");
  EXPECT_EQ(stored.find_first_not_of("0123456789"), 14U) << stored;
  std::string expected;
  for (const char* ticket : {"0|25|1|1|2|3|4", "0|25|2|5|6|7|8", "3|1250|1|1|1|2|0", "3|1250|2|1|0|3|0"}) {
    expected += stored.substr(0, 14) + "|" + ticket + "\n";
  }
  EXPECT_EQ(stored, expected);
}

TEST_F(FrmSaveTest, SavesAListWithoutTicketsAndAListWithoutCustomers) {
  const CurrentList empty;
  {
    const Shown<frmSave> window(Opening(), one_);
    Press(window, "cmdPrint", YesToSaving("客戶編號"));
    EXPECT_EQ(StoredOfSave("客戶編號", one_), 1U) << "with no customer the heading row is the current one";
  }
  AddCustomer({"A01", "王小明", "", "", ""});
  const Shown<frmSave> window(Opening(), empty);
  Press(window, "cmdPrint", YesToSaving("A01"));
  EXPECT_EQ(Tickets("A01"), "");
}

TEST_F(FrmSaveTest, OffersTheCustomersThatMaintenanceAdded) {
  AddCustomer({"B01", "王小明", "", "", ""});
  const Shown<frmSave> window(Opening(), one_);
  Press(window, "cmdCustom", {[](QWidget& maintenance) {
          EXPECT_EQ(maintenance.objectName(), "frmCustom");
          Enter(maintenance, "txtCustom_No", "A01");
          Click(maintenance, "cmdAdd");
          Click(maintenance, "cmdExit");
        }});
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), "A01|\nB01|王小明\n");
  Press(window, "cmdPrint", YesToSaving("A01"));
  EXPECT_EQ(StoredOfSave("A01", one_), 1U);
}

TEST_F(FrmSaveTest, NeverSavesByAKeyAlone) {
  AddCustomer({"A01", "王小明", "", "", ""});
  const Shown<frmSave> window(Opening(), one_);
  WithModals([&] { QTest::keyClick(&Find<QWidget>(window, "mfgCustom_H"), Qt::Key_Return); }, {});
  EXPECT_TRUE(window.isVisible());
  Press(window, "cmdPrint", {[](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); }});
  EXPECT_EQ(Tickets("A01"), "");
  QTest::keyClick(&Find<QWidget>(window, "mfgCustom_H"), Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace marlevo
