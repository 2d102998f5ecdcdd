#include "draws/frmInput.h"

#include <QAbstractItemModelTester>
#include <optional>

#include "platform/database/database_fixture.h"
#include "support/window_driver.h"

namespace marlevo {
namespace {

class FrmInputTest : public DatabaseFixture {
 protected:
  // Opens the window afresh.
  frmInput& Window() { return window_.emplace(Opening()); }

  void EnterDraw(const QString& number, const QString& digits) {
    Enter(*window_, "txtVou_No", number);
    EnterDigits(*window_, digits);
  }
  std::string Entered() const {
    std::string text = BoxText(*window_, "txtVou_No") + " ";
    for (int i = 0; i < 4; ++i) {
      text += Find<QComboBox>(*window_, QString("cboCheck(%1)").arg(i)).currentText().toStdString();
    }
    return text;
  }

  std::optional<Shown<frmInput>> window_;
};

TEST_F(FrmInputTest, MirrorsEveryChangeUntilItIsOpenedAgain) {
  frmInput& window = Window();
  const QAbstractItemModelTester tester(Find<QAbstractItemView>(window, "mfgNumeric").model());
  EXPECT_EQ(Entered(), " 0000");
  for (const char* button : {"cmdAdd", "cmdEdit", "cmdDel"}) {
    Press(window, button, {ExpectMessage("請先輸入期數 !!")});
  }
  EnterDraw("92001", "3071");
  Press(window, "cmdEdit", {ExpectMessage("開獎期數不存在,不可修改 !!")});
  Press(window, "cmdDel", {ExpectMessage("開獎期數不存在,不可刪除 !!")});
  for (const char* draw : {"92001", "92005", "92003"}) {
    EnterDraw(draw, "3071");
    Press(window, "cmdAdd");
  }
  Press(window, "cmdAdd", {ExpectMessage("開獎期數已經存在,不可新增 !!")});
  EXPECT_EQ(GridText(*window_, "mfgNumeric"), "92001|3|0|7|1\n92005|3|0|7|1\n92003|3|0|7|1\n||||\n2");
  EXPECT_EQ(Entered(), "92003 3071") << "the boxes keep their contents";

  EnterDraw("92005", "9876");
  Press(window, "cmdEdit");
  EXPECT_EQ(GridText(*window_, "mfgNumeric"), "92001|3|0|7|1\n92005|9|8|7|6\n92003|3|0|7|1\n||||\n1");
  EnterDraw("92001", "0000");
  Press(window, "cmdDel");
  EXPECT_EQ(GridText(*window_, "mfgNumeric"), "92005|9|8|7|6\n92003|3|0|7|1\n||||\n-1");
  EXPECT_EQ(Entered(), "92001 0000") << "a row that goes chooses no other";

  // The same number, but not the same text.
  EnterDraw("092003", "5555");
  Press(window, "cmdEdit");
  EXPECT_EQ(RowsText(window, "mfgNumeric"), "92005|9|8|7|6\n92003|3|0|7|1\n||||\n");
  EXPECT_EQ(RowsText(Window(), "mfgNumeric"), "92003|5|5|5|5\n92005|9|8|7|6\n||||\n");
}

TEST_F(FrmInputTest, TakesTheRowThatIsChosenByMouseOrKeys) {
  Connection(Opening()).Execute("INSERT INTO [NUMERIC] (VOU_NO,NO1,NO2,NO3) VALUES (92001,11,0,7)");
  Connection(Opening()).Execute("INSERT INTO [NUMERIC] (VOU_NO,NO1,NO2,NO3,NO4) VALUES (92002,1,2,3,4)");
  frmInput& window = Window();
  auto& grid = Find<QWidget>(window, "mfgNumeric");
  grid.setFocus();
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(BoxText(window, "txtVou_No"), "92002") << "the newest draw is current, and the first Down chooses it";
  PressRow(window, "mfgNumeric", 0);
  EXPECT_EQ(Entered(), "92001 11070") << "a missing digit reads as 0, one of two places is shown";
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(Entered(), "92002 1234");
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(Entered(), " 0000") << "the blank row";
}

TEST_F(FrmInputTest, TakesOnlyDigitsFromTheKeyboardAndAnythingFromTheClipboard) {
  frmInput& window = Window();
  auto& box = Find<QLineEdit>(window, "txtVou_No");
  Type(window, "txtVou_No", "9a2-0. 0x1");
  for (const Qt::KeyboardModifiers alt : {Qt::AltModifier | Qt::ControlModifier, Qt::AltModifier | Qt::ShiftModifier}) {
    QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_Q, "@", alt);
  }
  EXPECT_EQ(BoxText(window, "txtVou_No"), "92001");
  QTest::keyClick(&box, Qt::Key_Backspace);
  QTest::keyClick(&box, Qt::Key_Return);
  EXPECT_EQ(BoxText(window, "txtVou_No"), "9200");
  box.selectAll();
  QTest::keyClick(&box, Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(BoxText(window, "txtVou_No"), "");
  QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(BoxText(window, "txtVou_No"), "9200");
  // A click into the box selects the whole number, ready to be typed over.
  window.setFocus();
  QTest::mouseClick(&box, Qt::LeftButton, {}, {3, 10});
  QCoreApplication::processEvents();
  EXPECT_EQ(box.selectedText(), "9200");
  // So does a click into a digit; typing on goes to the next place.
  auto& digit = Find<QComboBox>(window, "cboCheck(2)");
  QTest::mouseClick(digit.lineEdit(), Qt::LeftButton, {}, {3, 10});
  QCoreApplication::processEvents();
  QTest::keyClicks(&digit, "12");
  QTest::keyClick(&digit, Qt::Key_Backspace);
  EXPECT_EQ(digit.currentText(), "1");
  QTest::keyClick(&digit, Qt::Key_Tab);
  EXPECT_FALSE(digit.lineEdit()->hasSelectedText());
  QTest::keyClicks(&Find<QComboBox>(window, "cboCheck(3)"), "7");
  EXPECT_EQ(Entered(), "9200 0017");
  digit.setFocus();
  QTest::keyClick(&digit, Qt::Key_Down);
  QTest::keyClicks(&digit, "5");
  EXPECT_EQ(digit.currentText(), "5") << "an entry chosen by the keys is typed over too";
  QTest::keyClick(&box, Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(FrmInputTest, GoesOnAfterAStatementThatTheDatabaseRefuses) {
  Window();
  EnterDraw("92001", "1234");
  Press(*window_, "cmdAdd");
  EnterDraw("1 OR 1=1", "5555");  // pasted, it would mean every draw
  Press(*window_, "cmdDel", {ExpectErrorReport("不是數字", "繼續")});
  EXPECT_EQ(RowsText(*window_, "mfgNumeric"), "92001|1|2|3|4\n||||\n");
  // A change deletes the draw first; what the insert is refused for afterwards stays deleted.
  EnterDraw("92001", "12x4");
  Press(*window_, "cmdEdit", {ExpectErrorReport("舊資料已刪除,新資料沒有存入", "繼續")});
  EXPECT_EQ(GridText(*window_, "mfgNumeric"), "||||\n-1");
  EXPECT_EQ(Entered(), "92001 12x4");
  EnterDraw("92001", "4321");
  Press(*window_, "cmdAdd");
  Type(*window_, "txtVou_No", "123456789012");
  EXPECT_EQ(BoxText(*window_, "txtVou_No"), "1234567890") << "no more than the file's numbers have";
  EXPECT_EQ(RowsText(Window(), "mfgNumeric"), "92001|4|3|2|1\n||||\n") << "what the file holds";
}

}  // namespace
}  // namespace marlevo
