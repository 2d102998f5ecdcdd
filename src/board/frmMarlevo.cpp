#include "board/frmMarlevo.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "board/button_bar.h"
#include "board/digit_panel.h"
#include "board/expansion.h"
#include "board/growth.h"
#include "board/kind_rows.h"
#include "board/result_panel.h"
#include "filters/filters.h"
#include "filters/instant_check.h"
#include "ui/frmMessage.h"
#include "ui/frmMessage2.h"
#include "ui/manual.h"
#include "ui/question.h"
#include "ui/scrolling.h"

namespace marlevo {

namespace {

// Of kinds, totals and bars: the widest caption of a bar and the widest line of the totals fit.
constexpr int kSideWidth = 392;
// In a larger board the columns would only drift apart.
constexpr QSize kLargestBoard(1200, 800);
constexpr double kMostGrowth = 1.5;
constexpr double kGrowthStep = 0.125;  // every step needs fonts of its own
constexpr const char* kCheckCaption = "即時對獎";
constexpr const char* kDataCaption = "投注資料";

bool HasTickets(const KindList& kind) {
  return !kind.tickets.empty();
}

bool HasTickets(const CurrentList& list) {
  return std::ranges::any_of(list.kinds, [](const KindList& kind) { return HasTickets(kind); });
}

}  // namespace

frmMarlevo::frmMarlevo(BoardWindows windows) : windows_(std::move(windows)) {
  setObjectName("frmMarlevo");
  setWindowTitle("3、4 星   彩");
}

void frmMarlevo::Form_Load() {
  InitBoard();
  CheckDatabase();
  if (windows_.load_slip_settings) {
    windows_.load_slip_settings();
  }
}

// The bars of the selection stage and of the filters stand at the bottom of the left column; the bar of the result
// stage, which comes between the two, stands in the line of the title. The way back to the list stands where that bar
// has the way back to the picks. No other button stands where the next stage has one.
void frmMarlevo::InitBoard() {
  picMain_ = Named(new QWidget, "picMain");
  // Before there are drop-down lists: one whose font changes makes its list window at once, which would delay the
  // start.
  picMain_->setFont(WindowFont());
  lblCaption_ = NewLabel(picMain_, "lblCaption", "3、4 星   彩");
  lblCaption_->setForegroundRole(QPalette::Link);

  // Widgets are made in the order in which the Tab key reaches them: panels before their bars.
  picBox1_ = Named(new QWidget(picMain_), "picBox1");
  kinds_ = new KindRows(picBox1_);
  kinds_part_ = NewScrollingPart(kinds_);
  digits_ = new DigitPanel(picBox1_);
  picMenu1_ = NewSelectionBar();
  picMenu4_ = NewListBar();
  picBox2_ = Named(new ResultPanel(picMain_, list_), "picBox2");
  picBox2_->hide();
  connect(picBox2_->CheckButton(), &QPushButton::clicked, this, &frmMarlevo::cmdCheck2_Click);
  picMenu2_ = NewResultBar();
  picMenu3_ = NewFilterBar();
  lblHint_ = NewLabel(picMain_, "lblHint", {});
  lblHint_->setForegroundRole(QPalette::PlaceholderText);
  // A narrow window cuts off the line of keys; without this the line would make the board wider than the window.
  lblHint_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  QLabel* const version = NewLabel(picMain_, "lblVersion", "版本 " + QCoreApplication::applicationVersion());
  version->setForegroundRole(QPalette::PlaceholderText);

  side_ = new QVBoxLayout;
  side_->addWidget(kinds_part_);
  auto* const selection = new QHBoxLayout(picBox1_);
  selection->setContentsMargins(0, 0, 0, 0);
  selection->setSpacing(distances::kApart);
  selection->addLayout(side_);
  selection->addWidget(digits_, 1);

  title_ = new QGridLayout;
  title_->setColumnStretch(0, 1);
  title_->addWidget(lblCaption_, 0, 0);
  title_->addWidget(picMenu2_, 0, 1);
  title_->addWidget(picMenu4_, 0, 1, Qt::AlignRight);
  auto* const stage = new QGridLayout;
  stage->addWidget(picBox1_, 0, 0);
  stage->addWidget(picBox2_, 0, 0);
  stage->addWidget(picMenu1_, 0, 0, Qt::AlignLeft | Qt::AlignBottom);
  stage->addWidget(picMenu3_, 0, 0, Qt::AlignLeft | Qt::AlignBottom);
  auto* const all = new QVBoxLayout(picMain_);
  all->setContentsMargins(distances::kApart, distances::kHair, distances::kApart, distances::kHair);
  all->addLayout(title_);
  all->addLayout(stage, 1);
  auto* const hint = new QHBoxLayout;
  hint->setSpacing(distances::kApart);
  hint->addWidget(lblHint_, 1);
  hint->addWidget(version);
  all->addLayout(hint);

  SetGrowth(1);
  ShowBar(picMenu1_);
  scroll_ = FillScrolling(this, picMain_);
  Form_Paint();
}

void frmMarlevo::SetGrowth(double growth) {
  growth_ = growth;
  const int side_width = Grown(kSideWidth, growth);
  picMain_->setMaximumSize(Grown(kLargestBoard.width(), growth), Grown(kLargestBoard.height(), growth));
  picMain_->setFont(Grown(WindowFont(), growth));
  lblCaption_->setFont(Grown(LargeFont(), growth));
  kinds_->SetGrowth(growth);
  picBox2_->SetGrowth(growth, side_width);
  for (ButtonBar* const bar : {picMenu1_, picMenu2_, picMenu3_}) {
    bar->SetGrowth(growth);
  }
  for (QWidget* const part : std::initializer_list<QWidget*>{kinds_part_, picMenu1_, picMenu3_}) {
    part->setFixedWidth(side_width);
  }
  side_->setContentsMargins(0, 0, 0, picMenu1_->sizeHint().height() + distances::kApart);
  title_->setRowMinimumHeight(0, picMenu2_->sizeHint().height());
}

ButtonBar* frmMarlevo::NewSelectionBar() {
  using Width = ButtonBar::Width;
  auto* const bar = new ButtonBar(picMain_, "picMenu1", ButtonBar::Shape::kPanel);
  const auto add = [&](const char* name, const char* caption, const QKeySequence& key, const char* tip, Width width,
                       void (frmMarlevo::*click)(), Emphasis emphasis = Emphasis::kNormal) {
    QPushButton* const button = bar->Add(name, caption, key, tip, width, emphasis);
    connect(button, &QPushButton::clicked, this, click);
    return button;
  };
  add("cmdCombine", "組合", Qt::Key_F2, "把勾選的號碼組合成各玩法的投注號碼", Width::kFull,
      &frmMarlevo::cmdCombine_Click, Emphasis::kMain);
  add("Command1", "重覆選號碼組合", Qt::Key_F3, "取最先勾選的號碼（四星正彩四個，三星正彩三個），\n排出所有不同的順序",
      Width::kHalf, &frmMarlevo::Command1_Click);
  add("Command2", " 多柱碰", Qt::Key_F4, "顯示或隱藏第五柱至第十柱；\n隱藏的柱裡已選的號碼照樣參加組合",
      Width::kQuarter, &frmMarlevo::Command2_Click);
  add("cmdClear", "清除", Qt::Key_F8, "取消所有玩法與十柱的全部號碼；\n已組合的號碼不變", Width::kQuarter,
      &frmMarlevo::cmdClear_Click);
  add("cmdCustom", "客戶資料維護", Qt::Key_F5, "", Width::kHalf, &frmMarlevo::cmdCustom_Click)
      ->setEnabled(windows_.customers != nullptr);
  add("cmdInput", "輸入開獎號碼", Qt::Key_F6, "", Width::kHalf, &frmMarlevo::cmdInput_Click)
      ->setEnabled(windows_.draws != nullptr);
  add("cmdSetPrinter", "投注單列印調整", Qt::Key_F7, "", Width::kHalf, &frmMarlevo::cmdSetPrinter_Click)
      ->setEnabled(windows_.set_printer != nullptr);
  add("cmdPrintNote", " 4星彩包牌便條紙列印", Qt::Key_F9, "", Width::kHalf, &frmMarlevo::cmdPrintNote_Click)
      ->setEnabled(windows_.print_note != nullptr);
  add("cmdExit", "結束", {}, "關閉視窗即結束", Width::kFull, &frmMarlevo::cmdExit_Click);
  return bar;
}

ButtonBar* frmMarlevo::NewListBar() {
  auto* const bar = new ButtonBar(picMain_, "picMenu4", ButtonBar::Shape::kLine);
  connect(bar->Add("cmdList", "回到清單", Qt::Key_F11, "不重新組合，再看一次號碼清單；\n金額照現在選的計算"),
          &QPushButton::clicked, this, &frmMarlevo::cmdList_Click);
  return bar;
}

ButtonBar* frmMarlevo::NewResultBar() {
  using Width = ButtonBar::Width;
  auto* const bar = new ButtonBar(picMain_, "picMenu2", ButtonBar::Shape::kLine);
  QPushButton* const cmdPrint =
      bar->Add("cmdPrint", "列  印", Qt::Key_F9, "把號碼印在投注單上", Width::kHalf, Emphasis::kMain);
  cmdPrint->setEnabled(windows_.print != nullptr);
  connect(cmdPrint, &QPushButton::clicked, this, &frmMarlevo::cmdPrint_Click);
  connect(bar->Add("cmdDelete", "刪除法", Qt::Key_F5, {}), &QPushButton::clicked, this, &frmMarlevo::cmdDelete_Click);
  QPushButton* const cmdSave = bar->Add("cmdSave", "存  檔", Qt::Key_F6, "把號碼存到客戶名下");
  cmdSave->setEnabled(windows_.save != nullptr);
  connect(cmdSave, &QPushButton::clicked, this, &frmMarlevo::cmdSave_Click);
  cmdCheck_ = bar->Add("cmdCheck", kCheckCaption, Qt::Key_F7, "顯示或隱藏對獎區");
  connect(cmdCheck_, &QPushButton::clicked, this, &frmMarlevo::cmdCheck_Click);
  connect(bar->Add("cmdBack", "返回選號", Qt::Key_F11, "勾選的號碼與組合結果都保留"), &QPushButton::clicked, this,
          &frmMarlevo::cmdBack_Click);
  return bar;
}

ButtonBar* frmMarlevo::NewFilterBar() {
  struct Button {
    const char* name;
    const char* caption;
    int key;
    const char* tip;
    void (frmMarlevo::*click)();
  };
  static constexpr Button kButtons[] = {
      {"cmdDel1", "純奇數", Qt::Key_F1, "刪除全部是奇數的號碼", &frmMarlevo::cmdDel1_Click},
      {"cmdDel2", "純偶數", Qt::Key_F2, "刪除全部是偶數的號碼", &frmMarlevo::cmdDel2_Click},
      {"cmdDel3", "四柱同號", Qt::Key_F3, "刪除各柱都同號的號碼，三星也算", &frmMarlevo::cmdDel3_Click},
      {"cmdDel4", "三柱同號", Qt::Key_F4, "刪除至少三柱同號的號碼", &frmMarlevo::cmdDel4_Click},
      {"cmdDel5", "二柱同號", Qt::Key_F5, "刪除至少二柱同號的號碼", &frmMarlevo::cmdDel5_Click},
      {"cmdDel6", "同號刪除", Qt::Key_F6, "重覆的號碼只留第一個；跨玩法比較，\n組彩不論順序",
       &frmMarlevo::cmdDel6_Click},
  };
  auto* const bar = new ButtonBar(picMain_, "picMenu3", ButtonBar::Shape::kPanel);
  QLabel* const note = NewLabel(bar, "lblNote", "注意 ! 刪除法只會對正彩及三彩做刪除");
  bar->AddNote(note);
  for (const Button& button : kButtons) {
    // The keys of the filters take Shift, because without it the same keys open windows in the stages before.
    connect(bar->Add(button.name, button.caption, QKeySequence(Qt::SHIFT | Qt::Key(button.key)), button.tip),
            &QPushButton::clicked, this, button.click);
  }
  connect(bar->Add("cmdBack2", "返回上層", Qt::Key_F12, {}, ButtonBar::Width::kFull), &QPushButton::clicked, this,
          &frmMarlevo::cmdBack2_Click);
  return bar;
}

void frmMarlevo::paintEvent(QPaintEvent* event) {
  QWidget::paintEvent(event);
  Form_Paint();
}

// Centres the board in the window, in each direction in which the window is the larger one.
void frmMarlevo::Form_Paint() {
  scroll_->setAlignment(Qt::AlignCenter);
}

void frmMarlevo::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const double room = std::min(static_cast<double>(width()) / TextPixels(kLargestBoard.width()),
                               static_cast<double>(height()) / TextPixels(kLargestBoard.height()));
  const double growth = std::clamp(std::floor(room / kGrowthStep) * kGrowthStep, 1.0, kMostGrowth);
  if (growth != growth_) {
    SetGrowth(growth);
    ShowBar(bar_);  // another size of the bar
  }
}

void frmMarlevo::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
  Form_Unload();
}

void frmMarlevo::Form_Unload() {
  Q_EMIT Unloaded();
}

void frmMarlevo::cmdCombine_Click() {
  ExpandPicks(ExpandTickets);
}

void frmMarlevo::Command1_Click() {
  ExpandPicks(ExpandOrderings);
}

void frmMarlevo::ExpandPicks(Expand expand) {
  const Selection picks = ReadPicks();
  const int code = CheckSelection(picks);
  if (code != 0) {
    ShowMessage(this, QString::fromUtf8(SelectionMessage(code)));
    return;
  }
  ShowResultStage();
  frmMessage2 busy(this);
  busy.ShowPainted();
  ClearTicketGrids();
  const TicketCounts counts = expand(picks, list_);
  picBox2_->RefreshGrids();
  picBox2_->ShowTickedPages();
  WriteTotals(counts);
  picBox2_->CurrentGrid()->setFocus();
}

void frmMarlevo::ShowResultStage() {
  picBox1_->hide();
  picBox2_->show();
  ShowBar(picMenu2_);
}

void frmMarlevo::ShowList() {
  ShowResultStage();
  picBox2_->ShowTickedPages();
  picBox2_->SetTotals(RecountTotals(list_));
  picBox2_->CurrentGrid()->setFocus();
}

// Whatever was unticked since, "清除" included: the list comes back whole.
void frmMarlevo::cmdList_Click() {
  ReadList();
  for (KindList& kind : list_.kinds) {
    kind.ticked = kind.ticked || HasTickets(kind);
  }
  kinds_->Write(list_);
  ShowList();
}

bool frmMarlevo::ShowStoredList(QWidget* asker, CurrentList list) {
  if (HasTickets(list_) && !Question(asker, "目前的號碼清單會被取代,確定要載回 ?")) {
    return false;
  }
  list_ = std::move(list);
  for (KindList& kind : list_.kinds) {
    kind.multiplier = StakeOf(kind.amount).value();
  }
  kinds_->Write(list_);
  picBox2_->RefreshGrids();
  ShowList();
  return true;
}

void frmMarlevo::ClearTicketGrids() {
  for (KindList& kind : list_.kinds) {
    kind.tickets.clear();
  }
  picBox2_->RefreshGrids();
}

void frmMarlevo::WriteTotals(const TicketCounts& counts) {
  picBox2_->SetTotals(TotalsText(list_, counts));
}

void frmMarlevo::Command2_Click() {
  digits_->ToggleExtraColumns();
}

void frmMarlevo::cmdClear_Click() {
  kinds_->UntickAll();
  digits_->UntickAll();
}

void frmMarlevo::cmdCustom_Click() {
  windows_.customers(this, [this](QWidget* asker, CurrentList list) { return ShowStoredList(asker, std::move(list)); });
  CheckDatabase();
}

void frmMarlevo::cmdInput_Click() {
  windows_.draws(this);
  CheckDatabase();
}

void frmMarlevo::cmdSetPrinter_Click() {
  windows_.set_printer(this);
}

void frmMarlevo::cmdPrintNote_Click() {
  windows_.print_note(this);
}

void frmMarlevo::cmdExit_Click() {
  close();
}

void frmMarlevo::cmdDelete_Click() {
  ShowBar(picMenu3_);
}

void frmMarlevo::cmdBack2_Click() {
  ShowBar(picMenu2_);
}

void frmMarlevo::cmdDel1_Click() {
  RunFilter(DeleteAllOdd);
}

void frmMarlevo::cmdDel2_Click() {
  RunFilter(DeleteAllEven);
}

void frmMarlevo::cmdDel3_Click() {
  RunFilter(DeleteAllSame);
}

void frmMarlevo::cmdDel4_Click() {
  RunFilter(DeleteThreeSame);
}

void frmMarlevo::cmdDel5_Click() {
  RunFilter(DeleteTwoSame);
}

void frmMarlevo::cmdDel6_Click() {
  RunFilter(DeleteRepeats);
}

void frmMarlevo::RunFilter(Filter filter) {
  ReadList();
  filter(list_);
  picBox2_->RefreshGrids();
  picBox2_->SetTotals(RecountTotals(list_));
  ShowMessage(this, "刪除完畢 !");
}

void frmMarlevo::cmdCheck_Click() {
  QWidget* const area = picBox2_->CheckArea();
  area->setVisible(area->isHidden());
  cmdCheck_->setText(area->isHidden() ? kCheckCaption : kDataCaption);
  ShowBar(picMenu2_);
}

void frmMarlevo::cmdCheck2_Click() {
  ReadList();
  const InstantResult result = CheckInstantly(list_, picBox2_->DrawnDigits());
  picBox2_->RefreshPaint();
  picBox2_->ShowCheckLines(result.lines);
}

void frmMarlevo::cmdBack_Click() {
  picBox2_->hide();
  picBox2_->CheckArea()->hide();
  cmdCheck_->setText(kCheckCaption);
  picBox1_->show();
  ShowBar(picMenu1_);
  digits_->TabStop()->setFocus();
}

void frmMarlevo::cmdSave_Click() {
  windows_.save(this, ReadList());
  CheckDatabase();
}

void frmMarlevo::cmdPrint_Click() {
  windows_.print(this, ReadList());
}

Selection frmMarlevo::ReadPicks() {
  ReadList();
  Selection picks;
  for (int kind = 0; kind < kBetKinds; ++kind) {
    picks.kinds[kind] = list_.kinds[kind].ticked;
  }
  digits_->ReadInto(picks);
  return picks;
}

const CurrentList& frmMarlevo::ReadList() {
  kinds_->ReadInto(list_);
  return list_;
}

void frmMarlevo::ShowBar(ButtonBar* bar) {
  bar_ = bar;
  for (ButtonBar* const other : {picMenu1_, picMenu2_, picMenu3_}) {
    other->setVisible(other == bar);
  }
  picMenu4_->setVisible(bar == picMenu1_ && HasTickets(list_));
  picBox2_->KeepFree(bar == picMenu3_ ? bar->sizeHint().height() + distances::kApart : 0);
  SetManualSection(*this, bar == picMenu1_                    ? "選號"
                          : bar == picMenu3_                  ? "刪除法"
                          : picBox2_->CheckArea()->isHidden() ? "組合"
                                                              : "即時對獎");
  if (problem_.isEmpty()) {
    WriteHint();
  } else {
    CheckDatabase();
  }
}

void frmMarlevo::CheckDatabase() {
  problem_ = windows_.database_problem ? windows_.database_problem() : QString();
  WriteHint();
}

// The keys of the bar, or what is wrong with the database as long as something is.
void frmMarlevo::WriteHint() {
  const QString keys = bar_->Hint() + (picMenu4_->isHidden() ? QString() : "   " + picMenu4_->Hint());
  QPalette palette = picMain_->palette();
  if (!problem_.isEmpty()) {
    palette.setColor(QPalette::PlaceholderText, QColor(colours::kWarning));
  }
  lblHint_->setPalette(palette);
  lblHint_->setText(problem_.isEmpty() ? keys : problem_);
  lblHint_->setToolTip(problem_);
}

}  // namespace marlevo
