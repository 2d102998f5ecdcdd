#include "customers/frmCustom.h"

#include <QAbstractItemModelTester>
#include <QInputMethodEvent>
#include <QTabWidget>

#include "customer_windows.h"
#include "customers/prizes.h"

namespace marlevo {
namespace {

class FrmCustomTest : public CustomerWindowsTest {
 protected:
  frmCustom& Window() { return window_.emplace(Opening()); }
  void EnterCustomer(const std::vector<const char*>& texts) {
    const char* boxes[] = {"txtCustom_No", "txtCustom_Name", "txtTEL1", "txtTEL2", "txtMemo1"};
    for (std::size_t i = 0; i < texts.size(); ++i) {
      Enter(*window_, boxes[i], texts[i]);
    }
  }
  std::string Grids() const {
    std::string text;
    for (int mode = 0; mode < kPlayModes; ++mode) {
      const std::string rows = RowsText(*window_, QString("mfgData(%1)").arg(mode));
      const std::string stake = LabelText(*window_, QString("lblAmt(%1)").arg(mode));
      text += rows + "= " + stake.substr(0, stake.find('\n')) + "\n";
    }
    return text;
  }

  std::optional<Shown<frmCustom>> window_;
};

constexpr char kNoTickets[] = "=   0\n=   0\n=   0\n=   0\n=   0\n";

TEST_F(FrmCustomTest, KeepsGridAndTableInStep) {
  frmCustom& window = Window();
  const QAbstractItemModelTester tester(Find<QAbstractItemView>(window, "mfgCustom_H").model());
  const std::string other = "B01|歐陽娜娜|02-2345-6789|0912-345-678|每週三；說「老樣子」\n";
  EnterCustomer({"B01", "歐陽娜娜", "02-2345-6789", "0912-345-678", "每週三；說「老樣子」"});
  Press(window, "cmdAdd");
  EnterCustomer({"A01", "王小明", "", "", ""});
  Press(window, "cmdAdd");
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), other + "A01|王小明|||\n");

  // A number that was typed, not chosen; another row is the current one.
  PressRow(window, "mfgCustom_H", 0);
  EnterCustomer({"A01", "王大明", "1", "2", "3"});
  Press(window, "cmdEdit");
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), other + "A01|王大明|1|2|3\n");
  EXPECT_EQ(Customers(), "A01|王大明|1|2|3\n" + other);
  EXPECT_EQ(RowsText(Window(), "mfgCustom_H"), Customers());
}

TEST_F(FrmCustomTest, ChangesNothingWhenANumberIsMissingTakenOrUnknown) {
  AddCustomer({"A01", "王小明", "", "", ""});
  frmCustom& window = Window();
  for (const char* button : {"cmdAdd", "cmdEdit", "cmdDel"}) {
    Press(window, button, {ExpectMessage("請先輸入客戶編號 !!")});
  }
  // The database takes both cases of a letter as one.
  EnterCustomer({"a01", "別人", "", "", ""});
  Press(window, "cmdAdd", {ExpectMessage("客戶編號已經存在,\n不可新增 !!")});
  EnterCustomer({"A02"});
  Press(window, "cmdEdit", {ExpectMessage("客戶編號不存在,\n不可修改 !!")});
  Press(window, "cmdDel", {ExpectMessage("客戶編號不存在,\n不可刪除 !!")});
  EXPECT_EQ(Customers(), "A01|王小明|||\n");
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), Customers());
}

TEST_F(FrmCustomTest, DeletesACustomerWithAllPurchasesAfterAYes) {
  for (const char* number : {"A01", "A02", "A03"}) {
    AddCustomer({number, "王小明", "", "", ""});
    AddRecord(number, "20021005143012", {"0 25 1234"});
  }
  frmCustom& window = Window();
  PressRow(window, "mfgCustom_H", 1);
  const QString question = "注意 ! A02客戶所有資料將會被刪除\r\n確定要將A02客戶刪除 ?";
  Press(window, "cmdDel", {ExpectQuestion(question, QMessageBox::No)});
  EXPECT_NE(Tickets("A02"), "");
  Press(window, "cmdDel", {ExpectQuestion(question, QMessageBox::Yes)});
  EXPECT_EQ(Customers(), "A01|王小明|||\nA03|王小明|||\n");
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), Customers());
  EXPECT_EQ(Tickets("A02"), "");
  EXPECT_NE(Tickets("A01") + Tickets("A03"), "");
  EXPECT_EQ(BoxText(window, "txtCustom_No"), "A02") << "no other customer was chosen";
}

TEST_F(FrmCustomTest, ShowsTheRecordThatIsPressed) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddCustomer({"A02", "陳大文", "", "", ""});
  AddRecord("A01", "20021005143012",
            {"2 50 1230", "0 25 1234", "0 25 5678", "1 1250 1110", "3 75 4560", "4 0.5 7890", "9 25 9999"});
  AddRecord("A01", "20021006090000", {"4 25 1200"});
  AddRecord("A01", "", {"0 25 0000"});
  frmCustom& window = Window();
  PressRow(window, "mfgCustom_H", 0);
  EXPECT_EQ(BoxText(window, "txtCustom_Name"), "王小明");
  EXPECT_EQ(RowsText(window, "lstRecord"), "2002/10/05-14:30:12     7張\n2002/10/06-09:00:00     1張\n");
  EXPECT_EQ(Grids(), kNoTickets);

  PressRow(window, "lstRecord", 0, Qt::RightButton);
  EXPECT_EQ(Grids(), kNoTickets);
  PressRow(window, "lstRecord", 0);
  const std::string shown =
      "1|1|2|3|4\n2|5|6|7|8\n=  25\n"
      "1|1|1|1\n= 1250\n"
      "1|1|2|3\n=  50\n"
      "1|4|5\n=  75\n"
      "1|7|8\n= 0.5\n";
  EXPECT_EQ(Grids(), shown);
  EXPECT_EQ(LabelText(window, "lblAmt(0)"), " 25\n元");
  EXPECT_TRUE(Find<QWidget>(window, "picMsg").isHidden());

  // A record whose tickets are all on a page behind brings that page to the front.
  PressRow(window, "lstRecord", 1);
  EXPECT_EQ(Grids(), "=   0\n=   0\n=   0\n=   0\n1|1|2\n=  25\n");
  EXPECT_EQ(Find<QTabWidget>(window, "SSTab1").currentIndex(), 4);

  PressRow(window, "mfgCustom_H", 1);
  EXPECT_EQ(RowsText(window, "lstRecord"), "");
}

TEST_F(FrmCustomTest, DeletesTheSelectedRecordOnly) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddRecord("A01", "20021005143012", {"0 25 1234", "0 25 5678"});
  AddRecord("A01", "20021006090000", {"1 25 1200"});
  AddRecord("A01", "20021007090000", {"2 25 1200"});
  frmCustom& window = Window();
  Press(window, "cmdDelRecord");
  PressRow(window, "mfgCustom_H", 0);
  Press(window, "cmdDelRecord");
  EXPECT_EQ(Find<QAbstractItemView>(window, "lstRecord").model()->rowCount(), 3) << "nothing is selected";

  PressRow(window, "lstRecord", 1);
  const QString question = "要將 2002/10/06-09:00:00     1張 資料移除 ?";
  Press(window, "cmdDelRecord", {ExpectQuestion(question, QMessageBox::No)});
  EXPECT_NE(Grids(), kNoTickets);
  Press(window, "cmdDelRecord", {ExpectQuestion(question, QMessageBox::Yes)});
  EXPECT_EQ(Grids(), kNoTickets);
  EXPECT_EQ(RowsText(window, "lstRecord"), "2002/10/05-14:30:12     2張\n2002/10/07-09:00:00     1張\n");
  EXPECT_EQ(Tickets("A01"),
            "20021005143012|0|25|1|1|2|3|4\n20021005143012|0|25|2|5|6|7|8\n20021007090000|2|25|1|1|2|0|0\n");
  // No neighbour was selected in its place.
  Press(window, "cmdDelRecord");
}

TEST_F(FrmCustomTest, ForgetsTheRecordsWhenANumberIsTyped) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddRecord("A01", "20021005143012", {"0 25 1234"});
  frmCustom& window = Window();
  auto& box = Find<QLineEdit>(window, "txtCustom_No");
  QInputMethodEvent chinese;
  chinese.setCommitString("王");
  const std::vector<std::function<void()>> ways = {
      [&] { QTest::keyClicks(&box, "A"); }, [&] { QTest::keyClick(&box, Qt::Key_Backspace); },
      [&] { QTest::keyClick(&box, Qt::Key_Return); }, [&] { QCoreApplication::sendEvent(&box, &chinese); }};
  for (const auto& type : ways) {
    PressRow(window, "mfgCustom_H", 0);
    EXPECT_NE(RowsText(window, "lstRecord"), "");
    QTest::keyClick(&box, Qt::Key_Left);
    QTest::keyClick(&box, Qt::Key_Tab);
    EXPECT_NE(RowsText(window, "lstRecord"), "") << "moving about is not typing";
    type();
    EXPECT_EQ(RowsText(window, "lstRecord"), "");
  }
}

}  // namespace
}  // namespace marlevo
