// What the customer windows show, say and hand over. The rules behind them are tested on the store.
#include <QAbstractItemModelTester>
#include <QFileDialog>
#include <QInputMethodEvent>
#include <QListWidget>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>
#include <fstream>
#include <optional>

#include "customer_database.h"
#include "customers/frmCustom.h"
#include "customers/frmCustom_CHK.h"
#include "customers/frmSave.h"
#include "support/ticket_text.h"
#include "support/window_driver.h"

namespace marlevo {
namespace {

constexpr char kNoTickets[] = "=   0\n=   0\n=   0\n=   0\n=   0\n";

class CustomerWindowsTest : public CustomerDatabaseTest {
 protected:
  // Does one thing after the other: NAME presses a button, NAME:3 a row, NAME=TEXT enters a text.
  static void Do(const QWidget& window, const QString& things, const std::vector<ModalStep>& steps = {}) {
    const auto all = [&] {
      for (const QString& thing : things.split(' ')) {
        if (thing.contains('=')) {
          Enter(window, thing.section('=', 0, 0), thing.section('=', 1));
        } else if (thing.contains(':')) {
          PressRow(window, thing.section(':', 0, 0), thing.section(':', 1).toInt());
        } else {
          Click(window, thing);
        }
      }
    };
    WithModals(all, steps);
  }
  // The record grids, each with its stake, and the sum.
  static std::string Record(const QWidget& window) {
    std::string text;
    for (const char* mode : {"(0)", "(1)", "(2)", "(3)", "(4)"}) {
      const std::string stake = LabelText(window, QString("lblAmt") + mode);
      text += RowsText(window, QString("mfgData") + mode) + "= " + stake.substr(0, stake.find('\n')) + "\n";
    }
    return text + LabelText(window, "lblSum");
  }
  static int Current(const QWidget& window, const QString& view) {
    return Find<QAbstractItemView>(window, view).currentIndex().row();
  }

  const CurrentList one_ = test::Lists({{2, "123"}});
};

TEST_F(CustomerWindowsTest, MaintenanceKeepsGridAndTableInStepAndHighlightsWhatIsEntered) {
  const Shown<frmCustom> window(Opening());
  const QAbstractItemModelTester tester(Find<QAbstractItemView>(window, "mfgCustom_H").model());
  EXPECT_EQ(window.focusWidget()->objectName(), "txtCustom_No");
  for (const char* button : {"cmdAdd", "cmdEdit", "cmdDel"}) {
    Do(window, button, {ExpectMessage("請先輸入客戶編號 !!")});
  }
  Do(window, "txtCustom_No=B01 txtCustom_Name=歐陽娜娜 txtTEL1=02-2345-6789 txtTEL2=0912-345-678 txtMemo1=每週三");
  Do(window, "cmdEdit", {ExpectMessage("客戶編號不存在,\n不可修改 !!")});
  Do(window, "cmdDel", {ExpectMessage("客戶編號不存在,\n不可刪除 !!")});
  Do(window, "cmdAdd cmdAdd", {ExpectMessage("客戶編號已經存在,\n不可新增 !!")});
  Do(window, "cmdClear txtCustom_No=A01 txtCustom_Name=王小明 cmdAdd");
  const std::string other = "B01|歐陽娜娜|02-2345-6789|0912-345-678|每週三\n";
  EXPECT_EQ(GridText(window, "mfgCustom_H"), other + "A01|王小明|||\n1");
  Do(window, "mfgCustom_H:0 txtCustom_No=A01 txtTEL1=1 cmdEdit");  // typed, not chosen
  const std::string changed = "A01|歐陽娜娜|1|0912-345-678|每週三\n";
  EXPECT_EQ(GridText(window, "mfgCustom_H"), other + changed + "1");
  EXPECT_EQ(Customers(), changed + other);
  // A change that is refused has deleted the old row; what was typed is still there to be added again.
  Do(window, "txtMemo1=it's cmdEdit", {ExpectErrorReport("舊資料已刪除,新資料沒有存入", "繼續")});
  EXPECT_EQ(GridText(window, "mfgCustom_H"), other + "-1");
  Do(window, "txtMemo1=每週三 cmdAdd");
  EXPECT_EQ(Customers(), changed + other);

  const QString question = "注意 ! B01客戶所有資料將會被刪除\r\n確定要將B01客戶刪除 ?";
  Do(window, "mfgCustom_H:0 cmdDel", {ExpectQuestion(question, QMessageBox::No)});
  EXPECT_EQ(Customers(), changed + other);
  Do(window, "txtFind=B01 cmdDel", {ExpectQuestion(question, QMessageBox::Yes)});
  for (const char* widget : {"mfgCustom_H", "txtFind"}) {
    QTest::keyClick(&Find<QWidget>(window, widget), Qt::Key_Return);
    EXPECT_EQ(GridText(window, "mfgCustom_H"), changed + "-1") << "the neighbour has not taken the place";
  }
  EXPECT_EQ(BoxText(window, "txtCustom_No"), "B01");
}

TEST_F(CustomerWindowsTest, MovingLoadsNothingAndTheChosenRecordIsShownAndDeleted) {
  AddCustomers({{"A01", "王小明"}, {"A02", "王小明"}});
  AddRecord("A02", "20021005143012", {"0,25,1,1,2,3,4", "1,1250,1,1,1,1,0"});
  AddRecord("A02", "20021006090000", {"4,NULL,1,1,2,0,0"});
  AddRecord("A02", "20021007090000", {"2,25,1,1,2,0,0"});
  const Shown<frmCustom> window(Opening());
  auto& customers = Find<QAbstractItemView>(window, "mfgCustom_H");
  auto& records = Find<QListWidget>(window, "lstRecord");
  customers.setCurrentIndex(customers.model()->index(0, 0));
  QTest::keyClick(&customers, Qt::Key_Down);
  EXPECT_EQ(BoxText(window, "txtCustom_No") + GridText(window, "mfgCustom_H"), "A01|王小明|||\nA02|王小明|||\n-1");
  QTest::keyClick(&customers, Qt::Key_Return);
  EXPECT_EQ(BoxText(window, "txtCustom_No") + std::to_string(Highlighted(window, "mfgCustom_H")), "A021");
  const std::string first = "2002/10/05-14:30:12     2張\n";
  const std::string last = "2002/10/07-09:00:00     1張\n";
  EXPECT_EQ(RowsText(window, "lstRecord"), first + "2002/10/06-09:00:00     1張\n" + last);
  EXPECT_EQ(Current(window, "lstRecord"), 2) << "the newest";
  Do(window, "cmdDelRecord");  // without a selected record it does nothing, not even ask

  PressRow(window, "lstRecord", 0, Qt::RightButton);
  EXPECT_EQ(Record(window), kNoTickets);
  Do(window, "lstRecord:0");
  const std::string shown = "1|1|2|3|4\n=  25\n1|1|1|1\n= 1250\n=   0\n=   0\n=   0\n合計 2 張，1275 元";
  QTest::keyClick(&records, Qt::Key_Down);
  EXPECT_EQ(Record(window) + std::to_string(Highlighted(window, "lstRecord")), shown + "0");
  Run({"DELETE FROM CUSTOM_D WHERE PLAY_MODE=0"});
  QTest::mouseClick(records.viewport(), Qt::LeftButton, {}, records.viewport()->rect().bottomLeft() + QPoint(9, -9));
  EXPECT_EQ(Record(window).find(shown.substr(0, 9)), std::string::npos) << "a press beside the lines reads again";
  // A record whose tickets are all on a page behind brings that page to the front.
  records.setCurrentRow(1, QItemSelectionModel::NoUpdate);
  QTest::keyClick(&records, Qt::Key_Space);
  EXPECT_EQ(Record(window), "=   0\n=   0\n=   0\n=   0\n1|1|2\n=    \n合計 1 張，0 元");
  EXPECT_EQ(Find<QTabWidget>(window, "SSTab1").currentIndex(), 4);
  EXPECT_TRUE(Find<QWidget>(window, "picMsg").isHidden());

  const QString question = "要將 2002/10/06-09:00:00     1張 資料移除 ?";
  Do(window, "cmdDelRecord", {ExpectQuestion(question, QMessageBox::No)});
  EXPECT_NE(Record(window), kNoTickets);
  Do(window, "cmdDelRecord", {ExpectQuestion(question, QMessageBox::Yes)});
  QTest::keyClick(&records, Qt::Key_Return);
  EXPECT_EQ(Record(window) + GridText(window, "lstRecord"), kNoTickets + first + last + "-1");
  EXPECT_EQ(Tickets("A02"), "20021005143012|1|1250|1|1|1|1|0\n20021007090000|2|25|1|1|2|0|0\n");
}

TEST_F(CustomerWindowsTest, NothingOfTheCustomerBeforeStays) {
  AddCustomers({{"A01", "王小明"}, {"A02", "陳大文"}});
  AddRecord("A01", "20021005143012", {"0,25,1,1,2,3,4"});
  const Shown<frmCustom> window(Opening());
  auto& box = Find<QLineEdit>(window, "txtCustom_No");
  QInputMethodEvent chinese;
  chinese.setCommitString("王");
  for (const QString edit : {"A", "Backspace", "Shift+Ins", "Del", "Ctrl+X", "Ctrl+Z", "Return", "王", "cmdClear"}) {
    Do(window, "mfgCustom_H:0 lstRecord:0");
    for (const char* moving : {"Left", "Tab", "F5", "Ctrl+C"}) {
      QTest::keySequence(&box, QKeySequence(moving));
    }
    EXPECT_NE(RowsText(window, "lstRecord"), "") << "moving about is not typing";
    if (edit == "cmdClear") {
      Do(window, edit);
    } else if (edit == "王") {
      QCoreApplication::sendEvent(&box, &chinese);
    } else {
      QTest::keySequence(&box, QKeySequence(edit));
    }
    EXPECT_EQ(RowsText(window, "lstRecord") + Record(window), kNoTickets) << edit.toStdString();
    EXPECT_EQ(Highlighted(window, "mfgCustom_H"), -1);
  }
  EXPECT_EQ(BoxText(window, "txtCustom_No") + BoxText(window, "txtCustom_Name"), "") << "清空";
  EXPECT_EQ(window.focusWidget(), &box);

  // Nor when the next customer has no records, or they cannot be read.
  Do(window, "mfgCustom_H:0 lstRecord:0 mfgCustom_H:1");
  EXPECT_EQ(Record(window), kNoTickets);
  Do(window, "mfgCustom_H:0 lstRecord:0");
  const auto healthy = static_cast<std::streamoff>(std::filesystem::file_size(file_));
  AddRecord("A02", "20021005143012", std::vector<std::string>(3000, "0,25,1,1,2,3,4"));
  std::fstream(file_, std::ios::in | std::ios::out | std::ios::binary).seekp(healthy + 32768)
      << std::string(32768, '\xAA');
  Do(window, "lstRecord:0", {ExpectErrorReport("檔案", "繼續")});
  EXPECT_EQ(Record(window), kNoTickets);
  Do(window, "mfgCustom_H:1", {ExpectErrorReport("檔案", "繼續")});
  EXPECT_EQ(RowsText(window, "lstRecord"), "");
  // The customer is deleted before the purchases, which cannot be read.
  const ModalStep yes = ExpectQuestion("注意 ! A02客戶所有資料將會被刪除\r\n確定要將A02客戶刪除 ?", QMessageBox::Yes);
  Do(window, "cmdDel", {yes, ExpectErrorReport("他的購買記錄沒有刪除", "繼續")});
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), Customers());
}

TEST_F(CustomerWindowsTest, TheFindBoxFramesAndChoosesOnlyOnEnter) {
  AddCustomers({{"A01", "王小明"}, {"A02", "陳大文"}, {"A03", "王大明"}});
  const Shown<frmCustom> custom(Opening());
  const Shown<frmCustom_CHK> check(Opening());
  const Shown<frmSave> save(Opening(), one_);
  for (const QWidget* const window : std::initializer_list<const QWidget*>{&custom, &check, &save}) {
    auto& box = Find<QLineEdit>(*window, "txtFind");
    auto& grid = Find<QTableView>(*window, "mfgCustom_H");
    const QImage plain = grid.grab().toImage();
    const QPalette white = box.palette();
    // The current row and the chosen one after a key.
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
      QTest::keyClick(&box, key, modifiers);
      return std::pair(Current(*window, "mfgCustom_H"), Highlighted(*window, "mfgCustom_H"));
    };
    const int before = Highlighted(*window, "mfgCustom_H");
    const_cast<QWidget*>(window)->activateWindow();
    QCoreApplication::processEvents();
    Do(*window, "txtFind=a0");
    EXPECT_NE(grid.grab().toImage(), plain) << "what is found can be seen";
    EXPECT_EQ(press(Qt::Key_F3), std::pair(1, before));
    EXPECT_EQ(press(Qt::Key_F3), std::pair(2, before));
    EXPECT_EQ(press(Qt::Key_F3, Qt::ShiftModifier), std::pair(1, before));
    EXPECT_EQ(press(Qt::Key_Return), std::pair(1, 1));
    EXPECT_EQ(press(Qt::Key_Return), std::pair(2, 2));
    Do(*window, "txtFind=a0x");
    EXPECT_NE(box.palette(), white);
    EXPECT_EQ(press(Qt::Key_Return), std::pair(2, 2));
    Do(*window, "txtFind=");
    EXPECT_EQ(box.palette(), white);
    grid.setFocus();
    press(Qt::Key_F3);
    EXPECT_TRUE(box.hasFocus());
  }
  EXPECT_EQ(BoxText(custom, "txtCustom_Name") + BoxText(check, "txtCustom_No"), "王大明A03");
  EXPECT_EQ(LabelText(save, "lblCustom"), "存到  A03 王大明");
}

TEST_F(CustomerWindowsTest, ARecordGoesBackToTheBoardWhichMayRefuse) {
  AddCustomers({{"A01", "王小明"}});
  AddRecord("A01", "20021005143012", {"2,50,2,4,5,6,0", "2,50,1,1,2,3,0"});
  AddRecord("A01", "20021006143012", {"0,30,1,1,2,3,4"});
  std::string taken;
  const Shown<frmCustom> window(Opening(), [&](QWidget* asker, const CurrentList& list) {
    taken += asker->objectName().toStdString() + test::Text(list, 2) + std::to_string(list.kinds[2].amount) + ";";
    return taken.size() > 30;
  });
  Do(window, "mfgCustom_H:0 cmdLoadRecord", {ExpectMessage("請先選擇購買記錄 !!")});
  Do(window, "lstRecord:1 cmdLoadRecord", {ExpectMessage("這筆記錄的金額或號碼無法組成號碼清單,\n不可載回 !!")});
  Do(window, "lstRecord:0 cmdLoadRecord");
  EXPECT_TRUE(window.isVisible());
  Do(window, "cmdLoadRecord");
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(taken, "frmCustom123 45650;frmCustom123 45650;");
  EXPECT_TRUE(Find<QWidget>(Shown<frmCustom>(Opening()), "cmdLoadRecord").isHidden()) << "nobody there takes a list";
}

TEST_F(CustomerWindowsTest, ABackupAsksBeforeItReplacesOne) {
  const std::filesystem::path stick = folder_.Path() / "stick";
  std::filesystem::create_directory(stick);
  std::ofstream(folder_.Path() / "3Star.ini") << "[PRINTER SET]";
  const Shown<frmCustom> window(Opening());
  const ModalStep choose = [&stick](QWidget& dialog) {
    Enter(dialog, "fileNameEdit", QString::fromStdU16String(stick.u16string()));
    QTest::keyClick(&Find<QLineEdit>(dialog, "fileNameEdit"), Qt::Key_Return);
  };
  const ModalStep pull_out = [&](QWidget& dialog) {
    choose(dialog);
    std::filesystem::remove_all(stick);
  };
  const QString replace = "這個資料夾裡已經有今天的備份\r\n要用現在的資料取代 ?";
  const ModalStep done = ExpectMessage("備份完畢,讀回檢查無誤 !");
  Do(window, "cmdBackup", {[](QWidget& dialog) { dialog.close(); }});
  EXPECT_TRUE(std::filesystem::is_empty(stick));
  Do(window, "cmdBackup", {choose, done});
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(stick), {}), 2);
  Do(window, "cmdBackup", {choose, ExpectQuestion(replace, QMessageBox::No)});
  Do(window, "cmdBackup", {choose, ExpectQuestion(replace, QMessageBox::Yes), done});
  Do(window, "cmdBackup", {pull_out, ExpectErrorReport("備份沒有完成", "繼續")});
}

TEST_F(CustomerWindowsTest, SavesUnderTheCurrentCustomerAfterAYesAndSaysWhat) {
  AddCustomers({{"A01", "王小明"}, {"A02", "陳大文"}});
  const Shown<frmSave> window(Opening(), one_);
  auto& grid = Find<QTableView>(window, "mfgCustom_H");
  EXPECT_EQ(window.focusWidget(), &grid);
  const int width = window.fontMetrics().horizontalAdvance(QString(15, u'W'));
  EXPECT_TRUE(grid.columnWidth(0) == width && grid.columnWidth(1) == width);
  QTest::keyClick(&grid, Qt::Key_Return);
  Do(window, "cmdPrint", {ExpectQuestion("確定要將號碼組合資料存檔到 [A01] ?", QMessageBox::No)});
  Do(window, "cmdPrint", {[](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); }});
  EXPECT_EQ(LabelText(window, "lblCustom") + LabelText(window, "lblSaved"), "存到  A01 王小明");
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(LabelText(window, "lblCustom"), "存到  A02 陳大文");
  const PaintCounter counter("picMsg");
  const ModalStep stored = [this](QWidget& message) {
    EXPECT_EQ(Tickets("A02").substr(14), "|2|25|1|1|2|3|0\n") << "the message is true";
    ExpectMessage("存檔完畢 !")(message);
  };
  Do(window, "cmdPrint", {ExpectQuestion("確定要將號碼組合資料存檔到 [A02] ?", QMessageBox::Yes), stored});
  EXPECT_EQ(LabelText(window, "lblSaved"), RecordLine({Tickets("A02").substr(0, 14), 1}) + " 已存到  A02 陳大文");
  EXPECT_TRUE(counter.painted > 0 && Find<QWidget>(window, "picMsg").isHidden());
  EXPECT_EQ(Tickets("A01"), "");
}

TEST_F(CustomerWindowsTest, TheCustomerToSaveUnderIsTheHeadingOrTheLastAddedOrTheOneBefore) {
  const Shown<frmSave> window(Opening(), one_);
  Do(window, "cmdPrint", {ExpectQuestion("確定要將號碼組合資料存檔到 [客戶編號] ?", QMessageBox::No)});
  const auto visit = [&window](const QString& things) {
    Do(window, "cmdCustom", {[&](QWidget& maintenance) { Do(maintenance, things + "cmdExit"); }});
    return GridText(window, "mfgCustom_H");
  };
  EXPECT_EQ(visit("txtCustom_No=B01 cmdAdd txtCustom_No=C01 cmdAdd txtCustom_No=A01 cmdAdd "), "A01|\nB01|\nC01|\n0");
  Do(window, "mfgCustom_H:1");
  EXPECT_EQ(visit("txtCustom_No=A01 cmdEdit "), "A01|\nB01|\nC01|\n1");
  Run({DeleteCustomer("B01")});
  EXPECT_EQ(visit(""), "A01|\nC01|\n0");
  EXPECT_EQ(visit("txtCustom_No=B01 cmdAdd "), "A01|\nB01|\nC01|\n1");
  EXPECT_EQ(LabelText(window, "lblCustom"), "存到  B01 ");
}

TEST_F(CustomerWindowsTest, ChecksTheChosenScopeOrSaysWhatIsMissing) {
  AddCustomers({{"A01", "王小明"}, {"A02", "陳大文"}, {"A03", "王大明"}});
  AddRecord("A01", "20021005143012", {"0,25,1,1,2,3,4"});
  AddRecord("A02", "20021005143012", {"0,50,1,1,2,3,4"});
  AddRecord("A02", "20021006090000", {"3,25,1,1,2,9,9"});
  AddRecord("A09", "20021006090000", {"4,25,1,3,4,9,9"});
  const Shown<frmCustom_CHK> window(Opening());
  const auto check = [&window](const QString& things, const std::vector<ModalStep>& steps = {}) {
    Do(window, things + " cmdCheck2", steps);
    return RowsText(window, "lstCheck");
  };
  const auto notice = [](const char* text) {
    return std::vector<ModalStep>{[text](QWidget& box) {
      EXPECT_TRUE(dynamic_cast<QMessageBox&>(box).icon() == QMessageBox::NoIcon && box.windowTitle() == "提示訊息");
      ExpectMessage(text)(box);
    }};
  };
  EXPECT_EQ(window.focusWidget()->objectName(), "mfgCustom_H");
  Do(window, "cmdCheck2", notice("請先選擇購買記錄 !"));  // one record is the first choice
  EnterDigits(window, "1234");
  const std::string first = "A01 正彩中獎 125000 元 !!\n";
  const std::string straight = "A02 正彩中獎 250000 元 !!\n";
  const std::string pair = "A02 前對彩中獎 1000 元 !!\n";
  EXPECT_EQ(check("Option1(2)"), first + straight + pair + "A09 後對彩中獎 1000 元 !!\n");
  const auto customer = [&window] {
    return BoxText(window, "txtCustom_No") + std::to_string(Find<QListWidget>(window, "lstRecord").count()) + " " +
           std::to_string(Highlighted(window, "mfgCustom_H")) + std::to_string(Highlighted(window, "lstCheck"));
  };
  Do(window, "lstCheck:2");
  EXPECT_EQ(customer(), "A022 12");
  Do(window, "lstCheck:3");
  EXPECT_EQ(customer(), "A091 -13") << "a number that no customer has any more";
  Do(window, "mfgCustom_H:2");
  EXPECT_EQ(customer(), "A030 2-1");
  EXPECT_EQ(check("Option1(1)", notice("此客戶無購買記錄 !")), "") << "every check starts from an empty list";
  EXPECT_EQ(check("mfgCustom_H:1 Option1(0)", notice("請先選擇購買記錄 !")), "");
  EXPECT_EQ(check("Option1(1)"), straight + pair);
  EXPECT_EQ(check("lstRecord:0 Option1(0)"), straight);
  EXPECT_EQ(check("txtCustom_No=A01"), first) << "what is typed over the number is what is asked";
}

TEST_F(CustomerWindowsTest, EveryTextFitsTheFileAndEveryColumnASmallScreen) {
  const std::string lines = "一\n二\n三\n" + std::string(200, 'x');
  Run({InsertCustomer({"A01", std::string(100, 'x'), "02-2345-6789", "0912-345-678", lines})});
  AddRecord("A01", "20021005143012", std::vector<std::string>(100, "0,1250,10000,1,2,3,4"));
  Shown<frmCustom> window(Opening());
  window.resize(1024, 700);
  Do(window, "mfgCustom_H:0 lstRecord:0");
  QCoreApplication::processEvents();
  for (const char* grid : {"mfgCustom_H", "mfgData(0)"}) {
    EXPECT_EQ(Find<QTableView>(window, grid).horizontalScrollBar()->maximum(), 0) << grid;
  }
  EXPECT_EQ(Find<QLineEdit>(window, "txtMemo1").cursorPosition(), 0) << "read from its beginning";
  // In an old file a Chinese character takes the room of two.
  const std::filesystem::path jet3 = folder_.Path() / "jet3.mdb";
  MakeDatabase(jet3, {.version = 3, .code_page = 950});
  const Shown<frmCustom> old(FileConnectionString(jet3));
  for (const auto& [name, most] : {std::pair{"txtCustom_No", 50}, {"txtCustom_Name", 100}, {"txtMemo1", 255}}) {
    Do(window, "cmdClear");
    Find<QLineEdit>(window, name).insert(QString(most + 1, u'x'));
    EXPECT_EQ(Find<QLineEdit>(window, name).text().size(), most) << name;
    for (int typed = 0; typed < most; ++typed) {
      Find<QLineEdit>(old, name).insert("王");
    }
    EXPECT_EQ(Find<QLineEdit>(old, name).text().size(), most / 2) << name;
  }
}

TEST_F(CustomerWindowsTest, AnEmptyListSaysWhatComesNext) {
  const Shown<frmCustom> custom(Opening());
  const Shown<frmCustom_CHK> check(Opening());
  const Shown<frmSave> save(Opening(), one_);
  for (const QWidget* const window : std::initializer_list<const QWidget*>{&custom, &check, &save}) {
    for (auto* const view : window->findChildren<QAbstractItemView*>(QRegularExpression("mfgCustom_H|lst.*"))) {
      const QImage seen = view->viewport()->grab().toImage();
      QImage blank = seen;
      blank.fill(seen.pixel(0, 0));
      EXPECT_NE(seen, blank) << view->objectName().toStdString();
    }
  }
}

}  // namespace
}  // namespace marlevo
