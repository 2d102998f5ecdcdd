// The register of draws: its rules on the store, then what the window shows of them.
#include <QScrollBar>
#include <tuple>

#include "draws/frmInput.h"
#include "platform/database/database_fixture.h"
#include "support/window_driver.h"

namespace marlevo {
namespace {

class DrawsTest : public DatabaseFixture {
 protected:
  std::string Stored() const {
    Connection connection = OnDisk();
    return Rows(connection, "SELECT * FROM [NUMERIC] ORDER BY VOU_NO", {"VOU_NO", "NO1", "NO2", "NO3", "NO4"});
  }
  static void EnterDraw(const QWidget& window, const QString& number, const QString& digits, const char* button,
                        const std::vector<ModalStep>& steps = {}) {
    Enter(window, "txtVou_No", number);
    EnterDigits(window, digits);
    Press(window, button, steps);
  }
  static std::string Entered(const QWidget& window) {
    std::string text = BoxText(window, "txtVou_No") + " ";
    for (int i = 0; i < 4; ++i) {
      text += Find<QComboBox>(window, QString("cboCheck(%1)").arg(i)).currentText().toStdString();
    }
    return text;
  }
};

TEST_F(DrawsTest, TheStoreTakesNumbersByValueAndNothingElse) {
  DrawStore store(Opening());
  EXPECT_TRUE(store.Add({"92005", {"3", "0", "7", "1"}}));
  EXPECT_TRUE(store.Add({"092003", {"3", "07", "11", "-1"}}));
  EXPECT_EQ(Stored(), "92003|3|7|11|-1\n92005|3|0|7|1\n");
  EXPECT_FALSE(store.Add({"092005", {"9", "9", "9", "9"}}));
  EXPECT_FALSE(store.Replace({"92004", {"9", "9", "9", "9"}}).found);
  EXPECT_FALSE(store.Remove("92004"));
  EXPECT_TRUE(store.Replace({"0092005", {"9", "8", "7", "6"}}).found);
  EXPECT_EQ(Stored(), "92003|3|7|11|-1\n92005|9|8|7|6\n");
  EXPECT_EQ(store.Draws().back(), (Draw{"92005", {"9", "8", "7", "6"}}));
  EXPECT_TRUE(store.Remove("92003"));
  const std::string one = "92005|9|8|7|6\n";
  EXPECT_EQ(Stored(), one);
  EXPECT_EQ(store.MostDigits(), 10U);
  // Each of these would end as a broken statement or, worse, as one that means other draws.
  for (const char* bad : {"", " ", "abc", "1 OR 1=1", "VOU_NO", "1;2", "1--", "1 2", "--1", "1.2.3", ".", "0x10", "1e3",
                          "９２００１", "(1)", "'1'"}) {
    const auto refuses = [](const auto& call) { return Refusal("檢查要存的資料", call) == Fault::kExplained; };
    EXPECT_TRUE(refuses([&] { store.Add({bad, {"5", "5", "5", "5"}}); })) << bad;
    EXPECT_TRUE(refuses([&] { std::ignore = store.Replace({bad, {"5", "5", "5", "5"}}); })) << bad;
    EXPECT_TRUE(refuses([&] { store.Remove(bad); })) << bad;
    EXPECT_TRUE(refuses([&] { store.Add({"2", {"1", "2", bad, "4"}}); })) << bad;
  }
  EXPECT_EQ(Stored(), one);
  for (const char* number : {"92005", "\t92005 ", "+92005", "92005.", "0092005"}) {
    EXPECT_TRUE(store.Has(number)) << number;
  }
}

TEST_F(DrawsTest, TheWindowMirrorsEveryChangeUntilItIsOpenedAgain) {
  const Shown<frmInput> window(Opening());
  EXPECT_EQ(Entered(window), " 0000");
  EXPECT_EQ(window.focusWidget()->objectName(), "txtVou_No");
  for (const char* button : {"cmdAdd", "cmdEdit", "cmdDel"}) {
    Press(window, button, {ExpectMessage("請先輸入期數 !!")});
  }
  EnterDraw(window, "92001", "3071", "cmdEdit", {ExpectMessage("開獎期數不存在,不可修改 !!")});
  EnterDraw(window, "92001", "3071", "cmdDel", {ExpectMessage("開獎期數不存在,不可刪除 !!")});
  for (const char* draw : {"92001", "92005", "92003"}) {
    EnterDraw(window, draw, "3071", "cmdAdd");
  }
  EnterDraw(window, "92003", "3071", "cmdAdd", {ExpectMessage("開獎期數已經存在,不可新增 !!")});
  EXPECT_EQ(GridText(window, "mfgNumeric"), "92001|3|0|7|1\n92005|3|0|7|1\n92003|3|0|7|1\n||||\n2");
  EnterDraw(window, "92005", "9876", "cmdEdit");
  EXPECT_EQ(GridText(window, "mfgNumeric"), "92001|3|0|7|1\n92005|9|8|7|6\n92003|3|0|7|1\n||||\n1");
  EnterDraw(window, "92001", "0000", "cmdDel");
  EXPECT_EQ(GridText(window, "mfgNumeric"), "92005|9|8|7|6\n92003|3|0|7|1\n||||\n-1");
  EXPECT_EQ(Entered(window), "92001 0000") << "a row that goes chooses no other";
  EnterDraw(window, "092003", "5555", "cmdEdit");  // the same number, but not the same text
  EXPECT_EQ(RowsText(window, "mfgNumeric"), "92005|9|8|7|6\n92003|3|0|7|1\n||||\n");
  EXPECT_EQ(RowsText(Shown<frmInput>(Opening()), "mfgNumeric"), "92003|5|5|5|5\n92005|9|8|7|6\n||||\n");
  EnterDraw(window, "1 OR 1=1", "5555", "cmdDel", {ExpectErrorReport("不是數字", "繼續")});  // it would mean every draw
  // A change deletes the draw first; what the insert is refused for afterwards stays deleted.
  EnterDraw(window, "92005", "12x4", "cmdEdit", {ExpectErrorReport("舊資料已刪除,新資料沒有存入", "繼續")});
  EXPECT_EQ(GridText(window, "mfgNumeric"), "92003|3|0|7|1\n||||\n-1");
  EXPECT_EQ(Entered(window) + "\n" + Stored(), "92005 12x4\n92003|5|5|5|5\n");
}

TEST_F(DrawsTest, TakesTheRowThatIsChosenBeginningAtTheNewest) {
  Connection connection(Opening());
  connection.Execute("INSERT INTO [NUMERIC] (VOU_NO,NO1,NO2,NO3) VALUES (92001,11,0,7)");
  for (int draw = 92002; draw < 92100; ++draw) {
    connection.Execute(InsertDraw({std::to_string(draw), {"1", "2", "3", "4"}}));
  }
  const Shown<frmInput> window(Opening());
  auto& grid = Find<QAbstractItemView>(window, "mfgNumeric");
  EXPECT_EQ(grid.verticalScrollBar()->value(), grid.verticalScrollBar()->maximum());
  grid.setFocus();
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(Entered(window), "92099 1234") << "the row with the focus comes first";
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(Entered(window), " 0000") << "the blank row";
  PressRow(window, "mfgNumeric", 0);
  EXPECT_EQ(Entered(window), "92001 11070") << "a missing digit reads as 0, one of two places is shown";
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(Entered(window), "92002 1234");
  EnterDraw(window, "1", "1234", "cmdAdd");
  EXPECT_EQ(grid.verticalScrollBar()->value(), grid.verticalScrollBar()->maximum());
}

TEST_F(DrawsTest, TakesOnlyDigitsFromTheKeyboardAndAnythingFromTheClipboard) {
  Shown<frmInput> window(Opening());
  auto& box = Find<QLineEdit>(window, "txtVou_No");
  Type(window, "txtVou_No", "9a2-0. 0x1");
  for (const Qt::KeyboardModifiers alt : {Qt::AltModifier | Qt::ControlModifier, Qt::AltModifier | Qt::ShiftModifier}) {
    QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_Q, "@", alt);
  }
  QTest::keySequence(&box, QKeySequence("Backspace,Return,Ctrl+A,Ctrl+X"));
  EXPECT_EQ(BoxText(window, "txtVou_No"), "");
  QTest::keySequence(&box, QKeySequence("Ctrl+V"));
  window.setFocus();
  QTest::mouseClick(&box, Qt::LeftButton, {}, {3, 10});
  QCoreApplication::processEvents();
  EXPECT_EQ(box.selectedText(), "9200") << "a click selects the number, ready to be typed over";
  Type(window, "txtVou_No", "123456789012");
  EXPECT_EQ(BoxText(window, "txtVou_No"), "1234567890") << "no more than the file's numbers have";
  // A click into a digit selects it, too; typing on goes to the next place.
  auto& digit = Find<QComboBox>(window, "cboCheck(2)");
  QTest::mouseClick(digit.lineEdit(), Qt::LeftButton, {}, {3, 10});
  QCoreApplication::processEvents();
  QTest::keySequence(&digit, QKeySequence("1,2,Backspace,Tab"));
  QTest::keyClicks(&Find<QComboBox>(window, "cboCheck(3)"), "7");
  EXPECT_EQ(Entered(window), "1234567890 0017");
  digit.setFocus();
  QTest::keySequence(&digit, QKeySequence("Down,5"));
  EXPECT_EQ(digit.currentText(), "5") << "an entry chosen by the keys is typed over too";
}

}  // namespace
}  // namespace marlevo
