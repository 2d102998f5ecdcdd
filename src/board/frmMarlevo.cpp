#include "board/frmMarlevo.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

#include "board/button_bar.h"
#include "board/digit_panel.h"
#include "board/expansion.h"
#include "board/kind_rows.h"
#include "board/result_panel.h"
#include "filters/filters.h"
#include "filters/instant_check.h"
#include "ui/appearance.h"
#include "ui/frmMessage.h"
#include "ui/frmMessage2.h"
#include "ui/scrolling.h"

namespace marlevo {

namespace {

constexpr int kMargin = 12;
constexpr int kStageRow = 1;               // of the board's layout: panels and bars
constexpr int kSideWidth = 392;            // kinds, totals and bars: the widest bar caption and totals line fit
constexpr QSize kLargestBoard(1200, 800);  // beyond this the columns only drift apart
constexpr const char* kCheckCaption = "即時對獎";
constexpr const char* kDataCaption = "投注資料";

}  // namespace

frmMarlevo::frmMarlevo(BoardWindows windows) : windows_(std::move(windows)) {
  setObjectName("frmMarlevo");
  setWindowTitle("3、4 星   彩");
}

void frmMarlevo::InitBoard() {
  picMain_ = Named(new QWidget, "picMain");
  picMain_->setMaximumSize(kLargestBoard);
  picMain_->installEventFilter(this);

  QLabel* const caption = NewLabel(picMain_, "lblCaption", "3、4 星   彩");
  caption->setFont(LargeFont());
  caption->setForegroundRole(QPalette::Link);
  lblHint_ = NewLabel(picMain_, "lblHint", {});
  lblHint_->setForegroundRole(QPalette::PlaceholderText);
  // A long line of keys is cut off rather than the board made wider than the window.
  lblHint_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);

  picBox1_ = Named(new QWidget(picMain_), "picBox1");
  kinds_ = new KindRows(picBox1_);
  kinds_->setFixedWidth(kSideWidth);
  digits_ = new DigitPanel(picBox1_);

  // After the panel, so that the Tab key reaches the buttons last.
  picMenu1_ = NewSelectionBar();
  picMenu1_->setFixedWidth(kSideWidth);
  auto* const side = new QVBoxLayout;
  side->setSpacing(0);
  side->addWidget(kinds_, 1);
  side->addSpacing(picMenu1_->sizeHint().height() + kMargin);
  auto* const selection = new QHBoxLayout(picBox1_);
  selection->setContentsMargins(0, 0, 0, 0);
  selection->setSpacing(kMargin);
  selection->addLayout(side);
  selection->addWidget(digits_, 1);

  grid_ = new QGridLayout(picMain_);
  grid_->setContentsMargins(kMargin, kMargin, kMargin, kMargin / 2);
  grid_->setSpacing(kMargin / 2);
  grid_->addWidget(caption, 0, 0);
  grid_->addWidget(picBox1_, kStageRow, 0);
  AddBar(picMenu1_);
  grid_->addWidget(lblHint_, kStageRow + 1, 0);
  grid_->setRowStretch(kStageRow, 1);
  ShowBar(picMenu1_);

  FillScrolling(this, picMain_);
}

void frmMarlevo::InitHiddenParts() {
  if (picBox2_ != nullptr) {
    return;
  }
  digits_->AddExtraColumns();
  picBox2_ = Named(new ResultPanel(picMain_, list_, kSideWidth), "picBox2");
  picBox2_->hide();
  connect(picBox2_->CheckButton(), &QPushButton::clicked, this, &frmMarlevo::cmdCheck2_Click);
  picMenu2_ = NewResultBar();
  picMenu3_ = NewFilterBar();
  const int height = std::max(picMenu2_->sizeHint().height(), picMenu3_->sizeHint().height());
  picBox2_->KeepFree(height + kMargin);
  grid_->addWidget(picBox2_, kStageRow, 0);
  for (ButtonBar* const bar : {picMenu2_, picMenu3_}) {
    bar->hide();
    bar->setFixedSize(kSideWidth, height);
    AddBar(bar);
  }
}

// The panels of a stage leave room for its bar at the bottom of their left column.
void frmMarlevo::AddBar(ButtonBar* bar) {
  grid_->addWidget(bar, kStageRow, 0, Qt::AlignLeft | Qt::AlignBottom);
  bar->raise();
}

bool frmMarlevo::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Paint) {
    picMain_->removeEventFilter(this);
    QTimer::singleShot(0, this, &frmMarlevo::InitHiddenParts);
  }
  return QWidget::eventFilter(watched, event);
}

ButtonBar* frmMarlevo::NewSelectionBar() {
  using Width = ButtonBar::Width;
  auto* const bar = new ButtonBar(picMain_, "picMenu1");
  connect(
      bar->Add("cmdCombine", "組合", Qt::Key_F2, "把勾選的號碼組合成各玩法的投注號碼", Width::kFull, Emphasis::kMain),
      &QPushButton::clicked, this, &frmMarlevo::cmdCombine_Click);
  connect(bar->Add("Command1", "重覆選號碼組合", Qt::Key_F3,
                   "取最先勾選的號碼（四星正彩四個，三星正彩三個），\n排出所有不同的順序"),
          &QPushButton::clicked, this, &frmMarlevo::Command1_Click);
  connect(bar->Add("Command2", " 多柱碰", Qt::Key_F4, "顯示或隱藏第五柱至第十柱；\n隱藏的柱裡已選的號碼照樣參加組合",
                   Width::kQuarter),
          &QPushButton::clicked, this, &frmMarlevo::Command2_Click);
  connect(bar->Add("cmdClear", "清除", Qt::Key_F8, "取消所有玩法與十柱的全部號碼；\n已組合的號碼不變", Width::kQuarter),
          &QPushButton::clicked, this, &frmMarlevo::cmdClear_Click);
  const auto opens = [this](QPushButton* button, const std::function<void(QWidget*)>& window) {
    button->setEnabled(static_cast<bool>(window));
    connect(button, &QPushButton::clicked, this, [this, &window] { window(this); });
  };
  opens(bar->Add("cmdCustom", "客戶資料維護", Qt::Key_F5, {}), windows_.customers);
  opens(bar->Add("cmdInput", "輸入開獎號碼", Qt::Key_F6, {}), windows_.draws);
  opens(bar->Add("cmdSetPrinter", "投注單列印調整", Qt::Key_F7, {}), windows_.set_printer);
  opens(bar->Add("cmdPrintNote", " 4星彩包牌便條紙列印", Qt::Key_F9, {}), windows_.print_note);
  connect(bar->Add("cmdExit", "結束", {}, "關閉視窗即結束", Width::kFull), &QPushButton::clicked, this,
          &QWidget::close);
  return bar;
}

ButtonBar* frmMarlevo::NewResultBar() {
  using Width = ButtonBar::Width;
  auto* const bar = new ButtonBar(picMain_, "picMenu2");
  QPushButton* const print =
      bar->Add("cmdPrint", "列  印", Qt::Key_F9, "把號碼印在投注單上", Width::kFull, Emphasis::kMain);
  print->setEnabled(static_cast<bool>(windows_.print));
  connect(print, &QPushButton::clicked, this, &frmMarlevo::cmdPrint_Click);
  connect(bar->Add("cmdDelete", "刪除法", Qt::Key_F5, {}), &QPushButton::clicked, this, &frmMarlevo::cmdDelete_Click);
  QPushButton* const save = bar->Add("cmdSave", "存  檔", Qt::Key_F6, "把號碼存到客戶名下");
  save->setEnabled(static_cast<bool>(windows_.save));
  connect(save, &QPushButton::clicked, this, &frmMarlevo::cmdSave_Click);
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
    Filter filter;
  };
  static constexpr Button kButtons[] = {
      {"cmdDel1", "純奇數", Qt::Key_F1, "刪除全部是奇數的號碼", DeleteAllOdd},
      {"cmdDel2", "純偶數", Qt::Key_F2, "刪除全部是偶數的號碼", DeleteAllEven},
      {"cmdDel3", "四柱同號", Qt::Key_F3, "刪除各柱都同號的號碼，三星也算", DeleteAllSame},
      {"cmdDel4", "三柱同號", Qt::Key_F4, "刪除至少三柱同號的號碼", DeleteThreeSame},
      {"cmdDel5", "二柱同號", Qt::Key_F5, "刪除至少二柱同號的號碼", DeleteTwoSame},
      {"cmdDel6", "同號刪除", Qt::Key_F6, "重覆的號碼只留第一個；跨玩法比較，\n組彩不論順序", DeleteRepeats},
  };
  // With Shift: what a key removes here must not be what the same key opened a moment ago.
  auto* const bar = new ButtonBar(picMain_, "picMenu3");
  QLabel* const note = NewLabel(bar, "lblNote", "注意 ! 刪除法只會對正彩及三彩做刪除");
  note->setWordWrap(true);
  bar->AddNote(note);
  for (const Button& button : kButtons) {
    connect(bar->Add(button.name, button.caption, QKeySequence(Qt::SHIFT | Qt::Key(button.key)), button.tip),
            &QPushButton::clicked, this, [this, filter = button.filter] { RunFilter(filter); });
  }
  connect(bar->Add("cmdBack2", "返回上層", Qt::Key_F12, {}, ButtonBar::Width::kFull), &QPushButton::clicked, this,
          &frmMarlevo::cmdBack2_Click);
  return bar;
}

void frmMarlevo::Form_Load() {
  InitBoard();
  if (windows_.load_slip_settings) {
    windows_.load_slip_settings();
  }
}

void frmMarlevo::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
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
    const std::string_view message = SelectionMessage(code);
    ShowMessage(this, QString::fromUtf8(message.data(), static_cast<qsizetype>(message.size())));
    return;
  }
  InitHiddenParts();
  picBox1_->hide();
  picBox2_->show();
  ShowBar(picMenu2_);
  frmMessage2 busy(this);
  busy.ShowPainted();
  const TicketCounts counts = expand(picks, list_);
  picBox2_->RefreshGrids();
  picBox2_->ShowTickedPages();
  picBox2_->SetTotals(TotalsText(list_, counts));
  picBox2_->CurrentGrid()->setFocus();
}

void frmMarlevo::Command2_Click() {
  InitHiddenParts();
  digits_->ToggleExtraColumns();
}

void frmMarlevo::cmdClear_Click() {
  kinds_->UntickAll();
  digits_->UntickAll();
}

void frmMarlevo::cmdDelete_Click() {
  ShowBar(picMenu3_);
}

void frmMarlevo::cmdBack2_Click() {
  ShowBar(picMenu2_);
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
  ButtonBar::SetCaption(*cmdCheck_, area->isHidden() ? kCheckCaption : kDataCaption);
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
  ButtonBar::SetCaption(*cmdCheck_, kCheckCaption);
  picBox1_->show();
  ShowBar(picMenu1_);
  digits_->TabStop()->setFocus();
}

void frmMarlevo::cmdSave_Click() {
  windows_.save(this, ReadList());
}

void frmMarlevo::cmdPrint_Click() {
  windows_.print(this, ReadList());
}

Selection frmMarlevo::ReadPicks() {
  ReadList();
  Selection picks;
  for (std::size_t kind = 0; kind < kBetKinds; ++kind) {
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
  for (ButtonBar* const other : {picMenu1_, picMenu2_, picMenu3_}) {
    if (other != nullptr) {
      other->setVisible(other == bar);
    }
  }
  lblHint_->setText(bar->Hint());
}

}  // namespace marlevo
