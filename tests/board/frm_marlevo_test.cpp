#include "board/frmMarlevo.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTableView>

#include "support/ticket_text.h"
#include "support/window_driver.h"

namespace marlevo {
namespace {

// The board as the operator has it: everything goes through widgets found by their names.
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
  void ClickExpecting(const QString& name, const QString& message) {
    WithModals([&] { Click(name); }, {ExpectMessage(message)});
  }
  std::string Totals() { return Find<QPlainTextEdit>("txtCombineMessage").toPlainText().toStdString(); }
  // The tickets of a grid, without their numbers: "1234 1235".
  std::string Grid(int kind) {
    const QAbstractItemModel& model = *Find<QTableView>(QString("mfgData(%1)").arg(kind)).model();
    QStringList tickets;
    for (int row = 0; row < model.rowCount() - 1; ++row) {
      EXPECT_EQ(model.index(row, 0).data().toInt(), row + 1);
      QString ticket;
      for (int column = 1; column < model.columnCount(); ++column) {
        ticket += model.index(row, column).data().toString();
      }
      tickets.append(ticket);
    }
    return tickets.join(' ').toStdString();
  }

  CurrentList printed_;
  QString problem_ = "找不到資料庫";
  frmMarlevo board_{{.customers = {},
                     .draws = [this](QWidget*) { problem_ = "無法開啟資料庫"; },
                     .print_note = {},
                     .set_printer = {},
                     .save = {},
                     .print = [this](QWidget*, const CurrentList& list) { printed_ = list; },
                     .database_problem = [this] { return problem_; },
                     .load_slip_settings = {}}};
};

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

TEST_F(FrmMarlevoTest, BadPicksGetTheirMessageAndChangeNothing) {
  ClickExpecting("cmdCombine", "請先選擇彩券玩法");
  Tick("chkPlay(2) chkNum1(1) chkNum2(2)");
  ClickExpecting("Command1", "選擇三星玩法\n一 二 三排需要有號碼");
  Tick("chkPlay(0) chkNum3(3)");
  ClickExpecting("cmdCombine", "選擇四星需要有四柱號碼");
  EXPECT_TRUE(Shown("picBox1") && Shown("picMenu1"));
  EXPECT_FALSE(Shown("picBox2") || Shown("picMenu2"));
  EXPECT_EQ(Grid(0) + Grid(2) + Totals(), "");
}

TEST_F(FrmMarlevoTest, AnExpansionShowsItsTicketsTotalsAndPages) {
  const PaintCounter busy("frmMessage2");
  Tick("chkPlay(0) chkPlay(4) chkNum1(0) chkNum1(1) chkNum2(2) chkNum3(3) chkNum4(4) chkNum4(5)");
  Find<QComboBox>("cboPlay2(4)").setCurrentIndex(1);
  Click("cmdCombine");

  EXPECT_GE(busy.painted, 1);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_TRUE(Shown("picBox2") && Shown("picMenu2"));
  EXPECT_FALSE(Shown("picBox1") || Shown("picMenu1") || Shown("picCheck"));
  EXPECT_EQ(Grid(0), "0234 0235 1234 1235");
  EXPECT_EQ(Grid(1), "");
  EXPECT_EQ(Totals(),
            "----- 共   16張 需     700元 -----\n"
            "四星正彩    4張 Ｘ 25元 ＝     100元\n"
            "三星對彩   12張 Ｘ 50元 ＝     600元");
  auto& pages = Find<QTabWidget>("SSTab1");
  EXPECT_EQ(pages.currentIndex(), 0);
  for (int kind = 0; kind < kBetKinds; ++kind) {
    EXPECT_EQ(pages.isTabEnabled(kind), kind == 0 || kind == 4) << kind;
  }

  // A second expansion of another kind replaces everything.
  Click("cmdBack");
  EXPECT_TRUE(Ticked("chkNum1(0)"));
  Find<QCheckBox>("chkPlay(0)").setChecked(false);
  Find<QCheckBox>("chkPlay(4)").setChecked(false);
  Tick("chkPlay(2)");
  Click("Command1");
  EXPECT_EQ(Grid(0), "");
  EXPECT_EQ(Grid(2), "012 021 201 210 120 102");
  EXPECT_EQ(pages.currentIndex(), 2);
}

TEST_F(FrmMarlevoTest, HiddenColumnsCountAndClearReachesThem) {
  EXPECT_FALSE(Shown("chkNum5(0)") || Shown("chkNum10(9)"));
  Click("Command2");
  EXPECT_TRUE(Shown("chkNum5(0)") && Shown("chkNum10(9)"));
  board_.resize(800, 600);
  QCoreApplication::processEvents();
  const auto& board = Find<QWidget>("picMain");
  EXPECT_LE(board.width(), board.parentWidget()->width()) << "scrolls sideways";
  Tick("chkPlay(0) chkNum1(1) chkNum2(2) chkNum3(3) chkNum4(4) chkNum9(5)");
  Click("Command2");
  EXPECT_FALSE(Shown("chkNum5(0)") || Shown("chkNum10(9)"));
  Click("cmdCombine");
  EXPECT_EQ(Grid(0), "1234 1235 1245 1345 2345");

  const std::string totals = Totals();
  Click("cmdBack");
  Click("cmdClear");
  for (const QCheckBox* const box : board_.findChildren<QCheckBox*>()) {
    EXPECT_FALSE(box->isChecked()) << box->objectName().toStdString();
  }
  EXPECT_EQ(Grid(0), "1234 1235 1245 1345 2345");
  EXPECT_EQ(Totals(), totals);
}

TEST_F(FrmMarlevoTest, AListComesBackWithoutAnExpansion) {
  Tick("chkPlay(0) chkNum1(1) chkNum2(2) chkNum3(3) chkNum4(4)");
  EXPECT_FALSE(Shown("picMenu4"));
  EXPECT_EQ(LabelText(board_, "lblHint"), "找不到資料庫");
  problem_.clear();
  Click("cmdCombine");
  EXPECT_FALSE(Shown("picMenu4"));
  EXPECT_EQ(LabelText(board_, "lblHint").find("F9 列  印   F5 刪除法"), 0U);
  Click("cmdBack");
  EXPECT_TRUE(Shown("picMenu4"));
  EXPECT_TRUE(LabelText(board_, "lblHint").ends_with("   F11 回到清單"));
  Click("cmdInput");
  EXPECT_EQ(LabelText(board_, "lblHint"), "無法開啟資料庫");
  Click("cmdClear");
  Find<QComboBox>("cboPlay2(0)").setCurrentText("x 2");
  Click("cmdList");
  EXPECT_TRUE(Shown("picBox2") && Shown("picMenu2") && !Shown("picBox1") && !Shown("picMenu4"));
  EXPECT_TRUE(Ticked("chkPlay(0)") && !Ticked("chkNum1(1)"));
  EXPECT_EQ(board_.focusWidget()->objectName().toStdString(), "mfgData(0)");
  EXPECT_EQ(Grid(0), "1234");
  EXPECT_EQ(Totals(), "----- 共    1張 需      50元 -----\n4星正彩      1張 Ｘ 50元 ＝      50元\n");

  CurrentList stored = test::Lists({{2, "321 012"}});
  stored.kinds[2].amount = 100;
  const auto show = [&] { board_.ShowStoredList(&board_, stored); };
  WithModals(show, {ExpectQuestion("目前的號碼清單會被取代,確定要載回 ?", QMessageBox::No)});
  EXPECT_EQ(Grid(0) + Grid(2), "1234");
  WithModals(show, {ExpectQuestion("目前的號碼清單會被取代,確定要載回 ?", QMessageBox::Yes)});
  EXPECT_EQ(Grid(0) + Grid(2), "321 012");
  EXPECT_TRUE(Ticked("chkPlay(2)") && !Ticked("chkPlay(0)"));
  EXPECT_EQ(board_.focusWidget()->objectName().toStdString(), "mfgData(2)");
  EXPECT_EQ(Totals(), "----- 共    2張 需     200元 -----\n3星正彩    2張 Ｘ100元 ＝     200元\n");
  Click("cmdPrint");
  EXPECT_EQ(printed_.kinds[2].multiplier, 3);
}

TEST_F(FrmMarlevoTest, FiltersThinTheListThatIsCheckedAndPrinted) {
  Tick("chkPlay(0) chkPlay(1) chkNum1(1) chkNum1(2) chkNum2(1) chkNum2(2) chkNum3(2) chkNum3(3) chkNum4(4) chkNum4(5)");
  Click("cmdCombine");
  Click("cmdDelete");
  EXPECT_TRUE(Shown("picMenu3") && !Shown("picMenu2"));
  const std::pair<const char*, const char*> left[] = {{"cmdDel3", "   32張"}, {"cmdDel1", "   30張"},
                                                      {"cmdDel2", "   28張"}, {"cmdDel4", "   26張"},
                                                      {"cmdDel5", "    8張"}, {"cmdDel6", "    4張"}};
  for (const auto& [filter, tickets] : left) {
    ClickExpecting(filter, "刪除完畢 !");
    EXPECT_EQ(Totals().find(tickets), std::string("----- 共").size()) << filter << ": " << Totals();
  }
  EXPECT_EQ(Grid(0), "1234 1235 2134 2135");
  EXPECT_EQ(Totals(),
            "----- 共    4張 需     100元 -----\n"
            "4星正彩      4張 Ｘ 25元 ＝     100元\n"
            "4星組彩   0張 Ｘ 25元 ＝       0元\n");
  Click("cmdBack2");
  EXPECT_TRUE(Shown("picMenu2") && !Shown("picMenu3"));

  auto& check = Find<QPushButton>("cmdCheck");
  Click("cmdCheck");
  EXPECT_TRUE(Shown("picCheck"));
  EXPECT_EQ(check.text(), "投注資料");
  for (int position = 0; position < 4; ++position) {
    Find<QComboBox>(QString("cboCheck(%1)").arg(position)).setCurrentIndex(position + 1);
  }
  Click("cmdCheck2");
  EXPECT_EQ(RowsText(board_, "lstCheck"), "共中獎 1張\n" + std::string(48, '-') + "\n四星正彩    1 張\n");
  const QAbstractItemModel& grid = *Find<QTableView>("mfgData(0)").model();
  EXPECT_EQ(grid.index(0, 4).data(Qt::BackgroundRole).value<QColor>(), QColor(255, 255, 0));
  EXPECT_EQ(grid.index(1, 4).data(Qt::BackgroundRole).value<QColor>(), QColor(255, 255, 255));

  auto& view = Find<QTableView>("mfgData(0)");
  view.selectRow(0);
  const QPoint corner = view.visualRect(grid.index(0, 1)).topLeft() + QPoint(2, 2);
  EXPECT_EQ(view.viewport()->grab().toImage().pixelColor(corner), QColor(255, 255, 0)) << "also when selected";

  Find<QComboBox>("cboPlay(0)").setCurrentText("100");
  Click("cmdPrint");
  EXPECT_EQ(printed_.kinds[0].tickets.size(), 4U);
  EXPECT_TRUE(printed_.kinds[0].ticked);
  EXPECT_EQ(printed_.kinds[0].amount, 100);
  EXPECT_EQ(printed_.kinds[0].multiplier, 0);

  Click("cmdBack");
  EXPECT_FALSE(Shown("picCheck"));
  EXPECT_EQ(check.text(), "即時對獎");
  EXPECT_FALSE(Find<QPushButton>("cmdSave").isEnabled()) << "its window is not there";
}

TEST_F(FrmMarlevoTest, TheDigitPanelWorksByKeyboardAlone) {
  const auto focus = [] { return QApplication::focusWidget()->objectName().toStdString(); };
  const auto press = [](std::initializer_list<Qt::Key> keys) {
    for (const Qt::Key key : keys) {
      QTest::keyClick(QApplication::focusWidget(), key);
    }
  };
  Find<QWidget>("cboPlay(4)").setFocus();
  press({Qt::Key_Tab});
  EXPECT_EQ(focus(), "chkNum1(0)");
  press({Qt::Key_Up, Qt::Key_Left, Qt::Key_Down, Qt::Key_Right, Qt::Key_Space});
  EXPECT_EQ(focus(), "chkNum2(1)");
  EXPECT_TRUE(Ticked("chkNum2(1)"));
  press({Qt::Key_7, Qt::Key_Right});
  EXPECT_TRUE(Ticked("chkNum2(7)"));
  EXPECT_EQ(focus(), "chkNum3(7)");
  press({Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right});
  EXPECT_EQ(focus(), "chkAll_X2(7)") << "hidden columns are passed over";
  press({Qt::Key_Tab});
  EXPECT_EQ(focus(), "cmdCombine");
  press({Qt::Key_Backtab});
  EXPECT_EQ(focus(), "chkAll_X2(7)") << "the panel remembers where the focus was";
  Click("Command2");
  Find<QWidget>("chkNum10(9)").setFocus();
  Click("Command2");
  Find<QWidget>("cmdCombine").setFocus();
  press({Qt::Key_Backtab});
  EXPECT_EQ(focus(), "chkNum1(0)") << "the cell where the focus was is hidden";
  press({Qt::Key_Tab, Qt::Key_Return, Qt::Key_Escape});
  EXPECT_TRUE(board_.isVisible() && Shown("picBox1"));
}

}  // namespace
}  // namespace marlevo
