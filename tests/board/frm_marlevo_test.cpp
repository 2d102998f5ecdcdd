#include "board/frmMarlevo.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTabWidget>
#include <QTableView>

#include "support/ticket_text.h"
#include "support/window_driver.h"

namespace marlevo {
namespace {

// The board as the operator has it: everything goes through keys, and through widgets found by their names.
class FrmMarlevoTest : public testing::Test {
 protected:
  void SetUp() override {
    board_.Form_Load();
    board_.resize(1366, 768);
    board_.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&board_));
  }

  template <typename Widget>
  Widget& Find(const QString& name) {
    return marlevo::Find<Widget>(board_, name);
  }
  bool Shown(const QString& name) { return !Find<QWidget>(name).isHidden(); }
  bool Ticked(const QString& name) { return Find<QCheckBox>(name).isChecked(); }
  // Ticks boxes, e.g. "chkPlay(0) chkNum1(3)".
  void Tick(const QString& names) {
    for (const QString& name : names.split(' ')) {
      Find<QCheckBox>(name).setChecked(true);
    }
  }
  void Click(const QString& name) { QTest::mouseClick(&Find<QWidget>(name), Qt::LeftButton); }
  // Without a window manager a window that is closed does not make the board active again.
  void Activate() {
    board_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&board_));
  }
  // Presses "F2" or "Shift+F2", with the message that must come of it.
  void Key(const QString& key, const QString& message = {}) {
    Activate();
    const auto press = [&] { QTest::keySequence(&board_, QKeySequence(key)); };
    WithModals(press, message.isEmpty() ? std::vector<ModalStep>() : std::vector{ExpectMessage(message)});
  }
  std::string Focus() { return board_.focusWidget()->objectName().toStdString(); }
  std::string Totals() { return Find<QPlainTextEdit>("txtCombineMessage").toPlainText().toStdString(); }
  QRect Place(const QString& name) {
    const auto& widget = Find<QWidget>(name);
    return {widget.mapTo(&board_, QPoint(0, 0)), widget.size()};
  }
  // What the screen shows, which is more than what the widgets would paint if they were asked to.
  QImage Screen() {
    Activate();
    QCoreApplication::processEvents();
    return board_.screen()->grabWindow(board_.winId()).toImage();
  }
  // The tickets of a grid, without their numbers: "1234 1235".
  std::string Grid(int kind) {
    const QAbstractItemModel& model = *Find<QTableView>(QString("mfgData(%1)").arg(kind)).model();
    QStringList tickets;
    for (int row = 0; row < model.rowCount(); ++row) {
      const bool last = row == model.rowCount() - 1;
      EXPECT_EQ(model.headerData(row, Qt::Vertical).toString(), last ? QString() : QString::number(row + 1));
      QString ticket;
      for (int column = 1; column < model.columnCount(); ++column) {
        ticket += model.index(row, column).data().toString();
      }
      tickets.append(ticket);
    }
    EXPECT_EQ(tickets.takeLast(), "");
    return tickets.join(' ').toStdString();
  }

  std::string opened_;
  CurrentList printed_;
  QString problem_ = "找不到資料庫";
  frmMarlevo board_{{.customers = [this](QWidget*, const StoredListShower&) { opened_ += "customers "; },
                     .draws = [this](QWidget*) { opened_ += "draws ", problem_ = "無法開啟資料庫"; },
                     .print_note = [this](QWidget*) { opened_ += "memo "; },
                     .set_printer = [this](QWidget*) { opened_ += "settings "; },
                     .save = [this](QWidget*, const CurrentList& list) { opened_ += "save ", printed_ = list; },
                     .print = [this](QWidget*, const CurrentList& list) { opened_ += "print ", printed_ = list; },
                     .database_problem = [this] { return problem_; },
                     .load_slip_settings = [this] { opened_ += "load "; }}};
};

TEST_F(FrmMarlevoTest, EveryKeyDoesWhatItsButtonSays) {
  for (const QPushButton* const button : board_.findChildren<QPushButton*>()) {
    EXPECT_TRUE(button->isEnabled()) << button->objectName().toStdString();
  }
  Tick("chkPlay(0) chkPlay(2) chkNum1(1) chkNum2(2) chkNum3(3) chkNum4(4)");
  const struct {
    const char* key;
    const char* bar;     // that is shown afterwards
    const char* focus;   // that is there afterwards
    bool seen;           // whether the screen is another one
    const char* opened;  // the window that has been opened
    const char* four;    // the tickets of 四星正彩
  } steps[] = {
      {"F5", "picMenu1", "chkNum1(0)", false, "load customers ", ""},
      {"F7", "picMenu1", "chkNum1(0)", false, "settings ", ""},
      {"F9", "picMenu1", "chkNum1(0)", false, "memo ", ""},
      {"F4", "picMenu1", "chkNum1(0)", true, "", ""},
      {"F4", "picMenu1", "chkNum1(0)", true, "", ""},
      {"Shift+F2", "picMenu1", "chkNum1(0)", false, "", ""},
      {"F2", "picMenu2", "mfgData(0)", true, "", "1234"},
      {"F9", "picMenu2", "mfgData(0)", false, "print ", "1234"},
      {"F6", "picMenu2", "mfgData(0)", false, "save ", "1234"},
      {"F7", "picMenu2", "mfgData(0)", true, "", "1234"},
      {"F5", "picMenu3", "mfgData(0)", true, "", "1234"},
      {"F3", "picMenu3", "mfgData(0)", false, "", "1234"},
      {"F12", "picMenu2", "mfgData(0)", true, "", "1234"},
      {"F11", "picMenu1", "chkNum1(0)", true, "", "1234"},
      {"F8", "picMenu1", "chkNum1(0)", true, "", "1234"},
      {"F11", "picMenu2", "mfgData(0)", true, "", "1234"},
      {"F11", "picMenu1", "chkNum1(0)", true, "", "1234"},
      {"F6", "picMenu1", "chkNum1(0)", true, "draws ", "1234"},
  };
  for (const auto& [key, bar, focus, seen, opened, four] : steps) {
    const QImage before = Screen();
    opened_ = opened_ == "load " ? opened_ : "";
    Key(key);
    EXPECT_EQ(Screen() != before, seen) << key << " " << bar;
    for (const char* const each : {"picMenu1", "picMenu2", "picMenu3"}) {
      EXPECT_EQ(Shown(each), std::string(each) == bar) << key << " " << each;
    }
    EXPECT_EQ(Shown("picBox1"), std::string(bar) == "picMenu1") << key;
    EXPECT_FALSE(Shown("picBox2") && Place("txtCombineMessage").intersects(Place(bar))) << key;
    EXPECT_EQ(Shown("picMenu4"), std::string(bar) == "picMenu1" && Grid(0) != "") << key;
    EXPECT_EQ(Focus(), focus) << key << " " << bar;
    EXPECT_EQ(opened_, opened) << key;
    EXPECT_EQ(Grid(0), four) << key;
  }
  EXPECT_EQ(LabelText(board_, "lblHint"), "無法開啟資料庫");
  Find<QCheckBox>("chkPlay(0)").setChecked(false);
  Tick("chkNum1(0) chkNum2(2) chkNum3(1)");
  Key("F3");
  EXPECT_EQ(Grid(0) + Grid(2), "021 012 102 120 210 201");
  EXPECT_EQ(Find<QTabWidget>("SSTab1").currentIndex(), 2);
  Key("F11");
  const auto ground = [this](const char* row) { return Screen().pixelColor(Place(row).topLeft() + QPoint(3, 3)); };
  EXPECT_NE(ground("fraPlay(2)"), ground("fraPlay(3)")) << "one is ticked";
  QObject::connect(&board_, &frmMarlevo::Unloaded, [this] { opened_ = "the end"; });
  Click("cmdExit");
  EXPECT_EQ(opened_ + (board_.isVisible() ? "!" : ""), "the end");
}

TEST_F(FrmMarlevoTest, TheAmountFollowsTheMultiplierEvenWhenItIsChosenAgain) {
  auto& multiplier = Find<QComboBox>("cboPlay2(3)");
  auto& amount = Find<QComboBox>("cboPlay(3)");
  multiplier.setFocus();
  QTest::keyClicks(&multiplier, "x12");
  EXPECT_EQ(amount.currentText(), "300");
  EXPECT_EQ(Find<QComboBox>("cboPlay(2)").currentText(), "25");
  EXPECT_EQ(LabelText(board_, "lblDiffers(3)"), "");
  amount.setCurrentText("50");
  EXPECT_EQ(LabelText(board_, "lblDiffers(3)"), "≠");
  EXPECT_EQ(amount.toolTip().toStdString(),
            "金額與倍數不一致：\n計價與存檔用金額 50 元，\n投注單上印的倍數是 x12（300 元）");
  Q_EMIT multiplier.activated(multiplier.currentIndex());
  EXPECT_EQ(amount.currentText(), "300");
  EXPECT_EQ(LabelText(board_, "lblDiffers(3)"), "");
}

TEST_F(FrmMarlevoTest, RowAndColumnButtonsActOnEveryClickAndNeverStayTicked) {
  for (int round = 0; round < 2; ++round) {
    Click("chkAll_X1(0)");
    EXPECT_TRUE(Ticked("chkNum1(0)") && Ticked("chkNum4(0)"));
    EXPECT_FALSE(Ticked("chkNum5(0)") || Ticked("chkNum1(1)") || Ticked("chkAll_X1(0)"));
    Click("chkAll_X2(0)");
    EXPECT_FALSE(Ticked("chkNum1(0)") || Ticked("chkNum4(0)"));
    Click("chkAll_Y1(3)");
    EXPECT_TRUE(Ticked("chkNum4(0)") && Ticked("chkNum4(9)"));
    EXPECT_FALSE(Ticked("chkNum3(9)") || Ticked("chkAll_Y1(3)"));
    Click("chkAll_Y2(3)");
    EXPECT_FALSE(Ticked("chkNum4(0)") || Ticked("chkNum4(9)"));
  }
}

TEST_F(FrmMarlevoTest, AnExpansionShowsItsTicketsTotalsAndPages) {
  const PaintCounter busy("frmMessage2");
  Key("F2", "請先選擇彩券玩法");
  Tick("chkPlay(2) chkNum1(1) chkNum2(2)");
  Key("F3", "選擇三星玩法\n一 二 三排需要有號碼");
  Tick("chkPlay(0) chkPlay(4) chkNum1(0) chkNum3(3)");
  Key("F2", "選擇四星需要有四柱號碼");
  EXPECT_TRUE(Shown("picBox1") && !Shown("picBox2") && busy.painted == 0);
  Find<QCheckBox>("chkPlay(2)").setChecked(false);
  Tick("chkNum4(4) chkNum4(5)");
  Find<QComboBox>("cboPlay2(4)").setCurrentIndex(1);
  Key("F2");
  EXPECT_GE(busy.painted, 1);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_EQ(Grid(0) + Grid(1), "0234 0235 1234 1235");
  EXPECT_EQ(Totals(),
            "----- 共   16張 需     700元 -----\n"
            "四星正彩    4張 Ｘ 25元 ＝     100元\n"
            "三星對彩   12張 Ｘ 50元 ＝     600元");
  for (int kind = 0; kind < kBetKinds; ++kind) {
    EXPECT_EQ(Find<QTabWidget>("SSTab1").isTabEnabled(kind), kind == 0 || kind == 4) << kind;
  }
}

TEST_F(FrmMarlevoTest, HiddenColumnsCountAndClearReachesThem) {
  const auto& board = Find<QWidget>("picMain");
  board_.resize(800, 400);
  for (const bool shown : {false, true}) {
    QCoreApplication::processEvents();
    EXPECT_EQ(Shown("chkNum5(0)") && Shown("chkNum10(9)"), shown);
    EXPECT_EQ(board.size(), board.parentWidget()->size()) << "a board that scrolls";
    Key("F4");
  }
  Key("F4");
  board_.resize(1800, 1200);
  QCoreApplication::processEvents();
  EXPECT_EQ(board.fontInfo().pointSizeF(), 1.5 * board_.fontInfo().pointSizeF());
  Tick("chkPlay(0) chkNum1(1) chkNum2(2) chkNum3(3) chkNum4(4) chkNum9(5)");
  EXPECT_EQ(LabelText(board_, "lblExtra"), "第五柱至第十柱\n按「多柱碰」\n顯示");
  Key("F4");
  EXPECT_EQ(LabelText(board_, "lblExtra"), "第五柱至第十柱\n已隱藏，其中已選 1 個號碼，\n組合時一併計算");
  Key("F2");
  EXPECT_EQ(Grid(0), "1234 1235 1245 1345 2345");
  const std::string totals = Totals();
  Key("F11");
  Key("F8");
  for (const QCheckBox* const box : board_.findChildren<QCheckBox*>()) {
    EXPECT_FALSE(box->isChecked()) << box->objectName().toStdString();
  }
  EXPECT_EQ(LabelText(board_, "lblExtra"), "第五柱至第十柱\n按「多柱碰」\n顯示");
  EXPECT_EQ(Grid(0), "1234 1235 1245 1345 2345");
  EXPECT_EQ(Totals(), totals);
}

TEST_F(FrmMarlevoTest, AListComesBackWithoutAnExpansion) {
  Tick("chkPlay(0) chkNum1(1) chkNum2(2) chkNum3(3) chkNum4(4)");
  EXPECT_EQ(LabelText(board_, "lblHint"), "找不到資料庫");
  problem_.clear();
  Key("F2");
  EXPECT_EQ(LabelText(board_, "lblHint").find("F9 列  印   F5 刪除法"), 0U);
  Key("F11");
  EXPECT_TRUE(LabelText(board_, "lblHint").ends_with("   F11 回到清單"));
  Key("F8");
  Find<QComboBox>("cboPlay2(0)").setCurrentText("x 2");
  Click("cmdList");
  EXPECT_TRUE(Ticked("chkPlay(0)") && !Ticked("chkNum1(1)"));
  EXPECT_EQ(Totals(), "----- 共    1張 需      50元 -----\n4星正彩      1張 Ｘ 50元 ＝      50元\n");

  CurrentList stored = test::Lists({{2, "321 012"}});
  stored.kinds[2].amount = 100;
  const auto show = [&] { board_.ShowStoredList(&board_, stored); };
  WithModals(show, {ExpectQuestion("目前的號碼清單會被取代,確定要載回 ?", QMessageBox::No)});
  EXPECT_EQ(Grid(0) + Grid(2), "1234");
  WithModals(show, {ExpectQuestion("目前的號碼清單會被取代,確定要載回 ?", QMessageBox::Yes)});
  EXPECT_EQ(Grid(0) + Grid(2), "321 012");
  EXPECT_TRUE(Ticked("chkPlay(2)") && !Ticked("chkPlay(0)"));
  EXPECT_EQ(Focus(), "mfgData(2)");
  EXPECT_EQ(Totals(), "----- 共    2張 需     200元 -----\n3星正彩    2張 Ｘ100元 ＝     200元\n");
  Key("F9");
  EXPECT_EQ(printed_.kinds[2].multiplier, 3);
}

TEST_F(FrmMarlevoTest, FiltersThinTheListThatIsCheckedAndPrinted) {
  Tick("chkPlay(0) chkPlay(1) chkNum1(1) chkNum1(2) chkNum2(1) chkNum2(2) chkNum3(2) chkNum3(3) chkNum4(4) chkNum4(5)");
  Key("F2");
  Key("F5");
  const std::pair<const char*, const char*> left[] = {{"Shift+F3", "   32張"}, {"Shift+F1", "   30張"},
                                                      {"Shift+F2", "   28張"}, {"Shift+F4", "   26張"},
                                                      {"Shift+F5", "    8張"}, {"Shift+F6", "    4張"}};
  for (const auto& [filter, tickets] : left) {
    const QImage before = Screen();
    Key(filter, "刪除完畢 !");
    EXPECT_NE(Screen(), before) << filter;
    EXPECT_EQ(Totals().find(tickets), std::string("----- 共").size()) << filter << ": " << Totals();
    Find<QComboBox>("cboPlay(0)").setCurrentText("100");
  }
  EXPECT_EQ(Grid(0), "1234 1235 2134 2135");
  EXPECT_EQ(Totals(),
            "----- 共    4張 需     400元 -----\n"
            "4星正彩      4張 Ｘ100元 ＝     400元\n"
            "4星組彩   0張 Ｘ 25元 ＝       0元\n");
  Key("F12");
  for (const auto& [key, amount] : {std::pair("F9", 50), {"F6", 75}}) {
    Find<QComboBox>("cboPlay(0)").setCurrentText(QString::number(amount));
    Key(key);
    EXPECT_TRUE(printed_.kinds[0].ticked && printed_.kinds[0].tickets.size() == 4U);
    EXPECT_EQ(printed_.kinds[0].amount, amount);
    EXPECT_EQ(printed_.kinds[0].multiplier, 0);
  }
}

TEST_F(FrmMarlevoTest, TheCheckPaintsTheWinnersAndBringsTheFirstIntoView) {
  Tick("chkPlay(0) chkNum1(1) chkNum4(4)");
  Click("chkAll_Y1(1)");
  Click("chkAll_Y1(2)");
  Key("F2");
  Key("F7");
  auto& view = Find<QTableView>("mfgData(0)");
  const auto check = [&](const QString& digits) {
    for (int position = 0; position < 4; ++position) {
      Find<QComboBox>(QString("cboCheck(%1)").arg(position)).setCurrentText(digits.mid(position, 1));
    }
    Click("cmdCheck2");
  };
  const auto colour = [&](int row) {
    const QPoint corner = view.visualRect(view.model()->index(row, 1)).topLeft() + QPoint(2, 2);
    return view.viewport()->rect().contains(corner) ? Screen().pixelColor(view.viewport()->mapTo(&board_, corner))
                                                    : QColor();
  };
  check("1784");
  EXPECT_EQ(colour(78), QColor(Qt::yellow));
  check("1774");
  EXPECT_EQ(colour(78), QColor(Qt::white));
  EXPECT_EQ(RowsText(board_, "lstCheck"), "共中獎 1張\n" + std::string(48, '-') + "\n四星正彩    1 張\n");
  EXPECT_EQ(colour(77), QColor(Qt::yellow));
  const QRect cell(view.viewport()->mapTo(&board_, view.visualRect(view.model()->index(77, 1)).topLeft()),
                   QSize(60, 20));
  const QImage plain = Screen().copy(cell);
  view.selectRow(77);
  EXPECT_EQ(Screen().copy(cell), plain);
  Key("F7");
  EXPECT_EQ(Find<QPushButton>("cmdCheck").text() + (Shown("picCheck") ? "!" : ""), "即時對獎");
  Key("F7");
  EXPECT_EQ(Find<QPushButton>("cmdCheck").text() + (Shown("picCheck") ? "!" : ""), "投注資料!");
  Key("F11");
  EXPECT_EQ(Find<QPushButton>("cmdCheck").text() + (Shown("picCheck") ? "!" : ""), "即時對獎");
}

TEST_F(FrmMarlevoTest, TheDigitPanelWorksByKeyboardAlone) {
  // Keys, and the focus afterwards.
  const std::pair<std::vector<Qt::Key>, const char*> steps[] = {
      {{Qt::Key_Tab}, "chkNum1(0)"},
      {{Qt::Key_Up, Qt::Key_Left, Qt::Key_Down, Qt::Key_Right, Qt::Key_Space}, "chkNum2(1)"},
      {{Qt::Key_7, Qt::Key_Right}, "chkNum3(7)"},
      {{Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right}, "chkAll_X2(7)"},
      {{Qt::Key_F4, Qt::Key_F4}, "chkAll_X2(7)"},  // not in the columns that were hidden
      {{Qt::Key_Tab}, "cmdCombine"},
      {{Qt::Key_Backtab}, "chkAll_X2(7)"},
      {{Qt::Key_F4, Qt::Key_Right, Qt::Key_F4}, "cmdCombine"},
      {{Qt::Key_Backtab}, "chkNum1(0)"},  // the cell before is hidden
      {{Qt::Key_Tab, Qt::Key_Escape}, "cmdCombine"}};
  Find<QWidget>("cboPlay(4)").setFocus();
  for (const auto& [keys, focus] : steps) {
    for (const Qt::Key key : keys) {
      QTest::keyClick(QApplication::focusWidget(), key);
    }
    EXPECT_EQ(Focus(), focus);
  }
  WithModals([] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); }, {ExpectMessage("請先選擇彩券玩法")});
  EXPECT_TRUE(Ticked("chkNum2(1)") && Ticked("chkNum2(7)"));
  EXPECT_TRUE(board_.isVisible() && Shown("picBox1"));
}

}  // namespace
}  // namespace marlevo
