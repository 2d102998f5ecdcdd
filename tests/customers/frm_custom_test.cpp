#include "customers/frmCustom.h"

#include <QAbstractItemModelTester>
#include <QInputMethodEvent>
#include <QListWidget>
#include <QTabWidget>
#include <optional>

#include "customer_database.h"
#include "customers/prizes.h"
#include "support/window_driver.h"

namespace marlevo {
namespace {

class FrmCustomTest : public CustomerDatabaseTest {
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

TEST_F(FrmCustomTest, KeepsGridAndTableInStepAndHighlightsWhatIsEntered) {
  frmCustom& window = Window();
  const QAbstractItemModelTester tester(Find<QAbstractItemView>(window, "mfgCustom_H").model());
  for (const char* button : {"cmdAdd", "cmdEdit", "cmdDel"}) {
    Press(window, button, {ExpectMessage("請先輸入客戶編號 !!")});
  }
  EnterCustomer({"B01", "歐陽娜娜", "02-2345-6789", "0912-345-678", "每週三"});
  Press(window, "cmdEdit", {ExpectMessage("客戶編號不存在,\n不可修改 !!")});
  Press(window, "cmdDel", {ExpectMessage("客戶編號不存在,\n不可刪除 !!")});
  Press(window, "cmdAdd");
  Press(window, "cmdAdd", {ExpectMessage("客戶編號已經存在,\n不可新增 !!")});
  EnterCustomer({"A01", "王小明", "", "", ""});
  Press(window, "cmdAdd");
  const std::string other = "B01|歐陽娜娜|02-2345-6789|0912-345-678|每週三\n";
  EXPECT_EQ(GridText(window, "mfgCustom_H"), other + "A01|王小明|||\n1");
  PressRow(window, "mfgCustom_H", 0);
  EnterCustomer({"A01", "王大明", "1", "2", "3"});  // typed, not chosen
  Press(window, "cmdEdit");
  EXPECT_EQ(GridText(window, "mfgCustom_H"), other + "A01|王大明|1|2|3\n1");

  // The change has deleted the old row; what was typed is still there to be added again.
  Enter(window, "txtMemo1", "it's");
  Press(window, "cmdEdit", {ExpectErrorReport("舊資料已刪除,新資料沒有存入", "繼續")});
  EXPECT_EQ(GridText(window, "mfgCustom_H"), other + "-1");
  EXPECT_EQ(Customers(), other);
  Enter(window, "txtMemo1", "it is");
  Press(window, "cmdAdd");
  EXPECT_EQ(GridText(window, "mfgCustom_H"), other + "A01|王大明|1|2|it is\n1");
  EXPECT_EQ(Customers(), "A01|王大明|1|2|it is\n" + other);

  const QString question = "注意 ! B01客戶所有資料將會被刪除\r\n確定要將B01客戶刪除 ?";
  PressRow(window, "mfgCustom_H", 0);
  Press(window, "cmdDel", {ExpectQuestion(question, QMessageBox::No)});
  EXPECT_NE(Customers().find(other), std::string::npos);
  Press(window, "cmdDel", {ExpectQuestion(question, QMessageBox::Yes)});
  EXPECT_EQ(Customers(), "A01|王大明|1|2|it is\n");
  EXPECT_EQ(GridText(window, "mfgCustom_H"), Customers() + "-1") << "no neighbour is highlighted";
  EXPECT_EQ(BoxText(window, "txtCustom_No"), "B01");
}

TEST_F(FrmCustomTest, MovingLoadsNothingAndTheChosenRecordIsShownAndDeleted) {
  for (const char* number : {"A01", "A02", "A03"}) {
    AddCustomer({number, "王小明", "", "", ""});
  }
  AddRecord("A02", "20021005143012", {"0,25,1,1,2,3,4", "1,1250,1,1,1,1,0"});
  AddRecord("A02", "20021006090000", {"4,NULL,1,1,2,0,0"});
  AddRecord("A02", "20021007090000", {"2,25,1,1,2,0,0"});
  Run("INSERT INTO [CUSTOM_H] (CUSTOM_NO) VALUES ('0''0')");
  frmCustom& window = Window();
  auto& customers = Find<QAbstractItemView>(window, "mfgCustom_H");
  auto& records = Find<QListWidget>(window, "lstRecord");
  customers.setCurrentIndex(customers.model()->index(1, 0));
  QTest::keyClick(&customers, Qt::Key_Down);
  EXPECT_EQ(BoxText(window, "txtCustom_No"), "");
  EXPECT_EQ(Highlighted(window, "mfgCustom_H"), -1);
  QTest::keyClick(&customers, Qt::Key_Return);
  EXPECT_EQ(BoxText(window, "txtCustom_No"), "A02");
  EXPECT_EQ(Highlighted(window, "mfgCustom_H"), 2);
  EXPECT_EQ(RowsText(window, "lstRecord"),
            "2002/10/05-14:30:12     2張\n2002/10/06-09:00:00     1張\n2002/10/07-09:00:00     1張\n");
  Press(window, "cmdDelRecord");  // without a selected record it does nothing, not even ask

  PressRow(window, "lstRecord", 0, Qt::RightButton);
  EXPECT_EQ(Grids(), kNoTickets);
  PressRow(window, "lstRecord", 0);
  const std::string shown = "1|1|2|3|4\n=  25\n1|1|1|1\n= 1250\n=   0\n=   0\n=   0\n";
  EXPECT_EQ(Grids(), shown);
  EXPECT_EQ(LabelText(window, "lblAmt(0)"), " 25\n元");
  QTest::keyClick(&records, Qt::Key_Down);
  EXPECT_EQ(Grids(), shown);
  EXPECT_EQ(Highlighted(window, "lstRecord"), 0);
  Run("DELETE FROM CUSTOM_D WHERE PLAY_MODE=0");
  QTest::mouseClick(records.viewport(), Qt::LeftButton, {}, records.viewport()->rect().bottomLeft() + QPoint(9, -9));
  EXPECT_EQ(Grids(), "=   0\n1|1|1|1\n= 1250\n=   0\n=   0\n=   0\n") << "a press beside the lines reads again";
  // A record whose tickets are all on a page behind brings that page to the front.
  records.setCurrentRow(1, QItemSelectionModel::NoUpdate);
  QTest::keyClick(&records, Qt::Key_Space);
  EXPECT_EQ(Grids(), "=   0\n=   0\n=   0\n=   0\n1|1|2\n=    \n") << "no stake is not a stake of 0";
  EXPECT_EQ(Find<QTabWidget>(window, "SSTab1").currentIndex(), 4);
  EXPECT_TRUE(Find<QWidget>(window, "picMsg").isHidden());

  const std::string before = Tickets("A02");
  const QString question = "要將 2002/10/06-09:00:00     1張 資料移除 ?";
  Press(window, "cmdDelRecord", {ExpectQuestion(question, QMessageBox::No)});
  EXPECT_EQ(Tickets("A02"), before);
  EXPECT_NE(Grids(), kNoTickets);
  Press(window, "cmdDelRecord", {ExpectQuestion(question, QMessageBox::Yes)});
  EXPECT_EQ(Grids(), kNoTickets);
  EXPECT_EQ(GridText(window, "lstRecord"), "2002/10/05-14:30:12     2張\n2002/10/07-09:00:00     1張\n-1");
  EXPECT_EQ(Tickets("A02"), "20021005143012|1|1250|1|1|1|1|0\n20021007090000|2|25|1|1|2|0|0\n");

  WithModals([&] { PressRow(window, "mfgCustom_H", 0); }, {ExpectErrorReport("單引號", "繼續")});
  EXPECT_EQ(BoxText(window, "txtCustom_No"), "0'0");
  EXPECT_EQ(RowsText(window, "lstRecord"), "") << "those of the customer before are gone";
}

TEST_F(FrmCustomTest, ForgetsTheRecordsWhenANumberIsTyped) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddRecord("A01", "20021005143012", {"0,25,1,1,2,3,4"});
  frmCustom& window = Window();
  auto& box = Find<QLineEdit>(window, "txtCustom_No");
  QInputMethodEvent chinese;
  chinese.setCommitString("王");
  const auto press = [&box](const std::pair<Qt::Key, Qt::KeyboardModifiers>& key) {
    QTest::keyClick(&box, key.first, key.second);
  };
  const std::pair<Qt::Key, Qt::KeyboardModifiers> moving[] = {
      {Qt::Key_Left, {}}, {Qt::Key_Tab, {}}, {Qt::Key_F5, {}}, {Qt::Key_C, Qt::ControlModifier}};
  const std::pair<Qt::Key, Qt::KeyboardModifiers> editing[] = {{Qt::Key_A, {}},
                                                               {Qt::Key_Backspace, {}},
                                                               {Qt::Key_Insert, Qt::ShiftModifier},
                                                               {Qt::Key_Delete, {}},
                                                               {Qt::Key_X, Qt::ControlModifier},
                                                               {Qt::Key_Z, Qt::ControlModifier},
                                                               {Qt::Key_Return, {}},
                                                               {Qt::Key_unknown, {}}};
  for (const auto& key : editing) {
    PressRow(window, "mfgCustom_H", 0);
    std::ranges::for_each(moving, press);
    EXPECT_NE(RowsText(window, "lstRecord"), "") << "moving about is not typing";
    if (key.first == Qt::Key_unknown) {
      QCoreApplication::sendEvent(&box, &chinese);
    } else {
      press(key);
    }
    EXPECT_EQ(RowsText(window, "lstRecord"), "") << key.first;
    EXPECT_EQ(Highlighted(window, "mfgCustom_H"), -1);
  }
  for (const auto& [name, most] : {std::pair{"txtCustom_No", 50}, {"txtTEL2", 50}, {"txtMemo1", 255}}) {
    Type(window, name, QString(most + 1, u'x'));
    EXPECT_EQ(BoxText(window, name).size(), static_cast<std::size_t>(most)) << name;
  }
}

}  // namespace
}  // namespace marlevo
