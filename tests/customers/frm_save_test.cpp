#include "customers/frmSave.h"

#include <QProgressBar>

#include "customer_windows.h"
#include "support/ticket_text.h"

namespace marlevo {
namespace {

// Counts how often a widget is really painted.
class PaintCounter : public QObject {
 public:
  int painted = 0;
  bool eventFilter(QObject*, QEvent* event) override {
    painted += event->type() == QEvent::Paint ? 1 : 0;
    return false;
  }
};

class FrmSaveTest : public CustomerWindowsTest {
 protected:
  // The tickets of all saves, without their stamps.
  std::string Saved(const std::string& number) const {
    Connection connection(Opening());
    return Rows(connection, "SELECT * FROM CUSTOM_D WHERE CUSTOM_NO='" + number + "' ORDER BY PLAY_MODE,PLAY_SEQ",
                {"PLAY_MODE", "PLAY_AMT", "PLAY_SEQ", "NO1", "NO2", "NO3", "NO4"});
  }
  static std::vector<ModalStep> YesToSaving(const QString& number) {
    return {ExpectQuestion("確定要將號碼組合資料存檔到 [" + number + "] ?", QMessageBox::Yes),
            ExpectMessage("存檔完畢 !")};
  }
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
  EXPECT_EQ(Saved("A01"), "");
  PressRow(window, "mfgCustom_H", 1);
  auto& panel = Find<QWidget>(window, "picMsg");
  PaintCounter counter;
  panel.installEventFilter(&counter);
  Press(window, "cmdPrint", YesToSaving("A02"));
  EXPECT_EQ(Saved("A02"), "0|25|1|1|2|3|4\n0|25|2|5|6|7|8\n3|1250|1|1|1|2|0\n3|1250|2|1|0|3|0\n");
  EXPECT_GT(counter.painted, 0);
  EXPECT_TRUE(panel.isHidden());
  EXPECT_EQ(Find<QProgressBar>(window, "prgMsg").value(), Find<QProgressBar>(window, "prgMsg").maximum());

  Connection connection(Opening());
  const std::string record = Rows(connection, SelectRecords("A02"), {"SAL_DATE", "SAL_NUM"});
  EXPECT_EQ(record.size(), 17U) << record;  // 14 digits, "|4" and the line break
  EXPECT_EQ(record.find_first_not_of("0123456789"), 14U) << record;
}

TEST_F(FrmSaveTest, SavesAListWithoutTicketsAndAListWithoutCustomers) {
  const CurrentList empty;
  const CurrentList one = test::Lists({{2, "123"}});
  {
    const Shown<frmSave> window(Opening(), one);
    Press(window, "cmdPrint", YesToSaving("客戶編號"));
    EXPECT_EQ(Saved("客戶編號"), "2|25|1|1|2|3|0\n") << "with no customer the heading row is the current one";
  }
  AddCustomer({"A01", "王小明", "", "", ""});
  const Shown<frmSave> window(Opening(), empty);
  Press(window, "cmdPrint", YesToSaving("A01"));
  EXPECT_EQ(Saved("A01"), "");
}

TEST_F(FrmSaveTest, OffersTheCustomersThatMaintenanceAdded) {
  AddCustomer({"B01", "王小明", "", "", ""});
  const CurrentList list = test::Lists({{2, "123"}});
  const Shown<frmSave> window(Opening(), list);
  WithModals([&] { Click(window, "cmdCustom"); }, {[](QWidget& maintenance) {
               EXPECT_EQ(maintenance.objectName(), "frmCustom");
               Enter(maintenance, "txtCustom_No", "A01");
               Click(maintenance, "cmdAdd");
               Click(maintenance, "cmdExit");
             }});
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), "A01|\nB01|王小明\n");
  Press(window, "cmdPrint", YesToSaving("A01"));
  EXPECT_EQ(Saved("A01"), "2|25|1|1|2|3|0\n");
}

TEST_F(FrmSaveTest, NeverSavesByAKeyAlone) {
  AddCustomer({"A01", "王小明", "", "", ""});
  const CurrentList list = test::Lists({{2, "123"}});
  const Shown<frmSave> window(Opening(), list);
  WithModals([&] { QTest::keyClick(&Find<QWidget>(window, "mfgCustom_H"), Qt::Key_Return); }, {});
  EXPECT_TRUE(window.isVisible());
  WithModals([&] { Click(window, "cmdPrint"); }, {[](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); }});
  EXPECT_EQ(Saved("A01"), "");
  QTest::keyClick(&Find<QWidget>(window, "mfgCustom_H"), Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace marlevo
