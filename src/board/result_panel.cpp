#include "board/result_panel.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "board/growth.h"
#include "ui/grid.h"

namespace marlevo {

namespace {

constexpr int kCheckLines = 2 + kBetKinds;  // the total, the line of hyphens, and a line of each kind with winners
constexpr double kGridPoints = 14;
constexpr int kGridBorder = 6;
// Widths of columns, in widths of the text "W".
constexpr double kSequenceWidth = 3.75;
constexpr double kNarrowestDigit = 4;  // so narrow that a grid fits into the smallest window, 800 wide
constexpr double kWidestDigit = 10.25;
constexpr int kDrawnWidth = 50;

// Draws tickets. The yellow of a winning one stays to be seen when its row is selected, has the focus or lies under the
// mouse.
class TicketDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->backgroundBrush.color() == QColor(Qt::yellow)) {
      option->state &= ~(QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver);
    }
  }
};

}  // namespace

ResultPanel::ResultPanel(QWidget* parent, const CurrentList& list)
    : QWidget(parent), list_(list), SSTab1_(Named(new QTabWidget(this), "SSTab1")) {
  for (int kind = 0; kind < kBetKinds; ++kind) {
    AddGrid(kind);
  }
  SSTab1_->setUsesScrollButtons(false);
  SSTab1_->setDocumentMode(true);
  SSTab1_->tabBar()->setExpanding(true);  // the tabs share the whole width

  txtCombineMessage_ = Named(new QPlainTextEdit(this), "txtCombineMessage");
  txtCombineMessage_->setAccessibleName("總張數與總金額");
  txtCombineMessage_->setReadOnly(true);
  txtCombineMessage_->setFocusPolicy(Qt::ClickFocus);
  txtCombineMessage_->document()->setDocumentMargin(distances::kNear - 2);
  txtCombineMessage_->setLineWrapMode(QPlainTextEdit::NoWrap);

  picCheck_ = NewCheckArea();
  picCheck_->hide();

  side_ = new QVBoxLayout;
  side_->addWidget(txtCombineMessage_);
  auto* const list_column = new QVBoxLayout;
  list_column->setSpacing(distances::kApart);
  list_column->addWidget(SSTab1_, 1);
  list_column->addWidget(picCheck_);
  auto* const line = new QHBoxLayout(this);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(distances::kApart);
  line->addLayout(side_);
  line->addLayout(list_column, 1);
}

void ResultPanel::SetGrowth(double growth, int side_width) {
  QFont digits = WindowFont();
  digits.setPointSizeF(kGridPoints * TextScale() * growth);
  for (QTableView* const grid : mfgData_) {
    grid->setFont(digits);
    FitRows(*grid);
    QHeaderView& numbers = *grid->verticalHeader();
    numbers.setFixedWidth(static_cast<int>(std::lround(kSequenceWidth * grid->fontMetrics().horizontalAdvance('W'))));
  }
  const QFont aligned = Grown(AlignedFont(), growth);
  txtCombineMessage_->setFont(aligned);
  txtCombineMessage_->setFixedWidth(side_width);
  lstCheck_->setFont(aligned);
  lstCheck_->setMaximumHeight(QFontMetrics(aligned).height() * kCheckLines + 12);
  for (DropDownList* const list : cboCheck_) {
    list->setFixedWidth(Grown(kDrawnWidth, growth));
  }
  FitColumns();
}

void ResultPanel::KeepFree(int height) {
  side_->setContentsMargins(0, 0, 0, height);
}

void ResultPanel::AddGrid(int kind) {
  auto* const grid = Named(new QTableView(SSTab1_), ElementName("mfgData", kind));
  SetUpGrid(*grid, GridSelection::kRows);
  grid->setItemDelegate(new TicketDelegate(grid));
  models_[kind] = new TicketModel(list_.kinds[kind].tickets, DigitColumns(kind), grid);
  grid->setModel(models_[kind]);
  // The heads of the rows show the sequence numbers instead: they stay in sight when the digits are scrolled sideways.
  grid->hideColumn(0);
  QHeaderView& numbers = *grid->verticalHeader();
  numbers.show();
  numbers.setDefaultAlignment(Qt::AlignCenter);
  numbers.setHighlightSections(false);
  numbers.setSectionsClickable(false);
  mfgData_[kind] = grid;
  SSTab1_->addTab(grid, QString::fromUtf8(kBetKindNames[kind]));
  grid->setAccessibleName(SSTab1_->tabText(kind));
}

QWidget* ResultPanel::NewCheckArea() {
  auto* const area = Named(new QFrame(this), "picCheck");
  SetUpPanel(*area);

  auto* const drawn = new QGridLayout;
  drawn->setVerticalSpacing(distances::kHair);
  for (int position = 0; position < 4; ++position) {
    auto* const list = new DropDownList(area, ElementName("cboCheck", position));
    for (int digit = 0; digit <= 9; ++digit) {
      list->addItem(QString::number(digit));
    }
    list->setMaxVisibleItems(10);
    QLabel* const title =
        NewLabel(area, ElementName("lblCheck", position), QString::fromUtf8(kPositionNames[position]));
    title->setBuddy(list);
    drawn->addWidget(title, 0, position);
    drawn->addWidget(list, 1, position);
    cboCheck_[position] = list;
  }
  cmdCheck2_ = NewButton(area, "cmdCheck2", "對獎", Emphasis::kMain);
  drawn->addWidget(cmdCheck2_, 1, 5);
  drawn->setColumnStretch(4, 1);

  lstCheck_ = Named(new QListWidget(area), "lstCheck");
  lstCheck_->setAccessibleName("即時對獎結果");
  lstCheck_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  LetRowsBeCopied(*lstCheck_);
  // Nothing is lost without a scroll bar: in a narrow window only the line of hyphens is cut off.
  lstCheck_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

  auto* const column = new QVBoxLayout(area);
  column->addLayout(drawn);
  column->addWidget(lstCheck_);
  return area;
}

void ResultPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  FitColumns();
}

void ResultPanel::FitColumns() {
  layout()->activate();
  for (int kind = 0; kind < kBetKinds; ++kind) {
    QTableView& grid = *mfgData_[kind];
    const int columns = DigitColumns(kind);
    const double room = SSTab1_->width() - style()->pixelMetric(QStyle::PM_ScrollBarExtent) - kGridBorder;
    const double units = room / grid.fontMetrics().horizontalAdvance('W') - kSequenceWidth;
    for (int column = 1; column <= columns; ++column) {
      SetColumnWidth(grid, column, std::clamp(units / columns, kNarrowestDigit, kWidestDigit));
    }
  }
}

void ResultPanel::RefreshGrids() {
  for (TicketModel* const model : models_) {
    model->Refresh();
  }
}

void ResultPanel::ShowTickedPages() {
  int first = -1;
  for (int kind = kBetKinds - 1; kind >= 0; --kind) {
    const bool ticked = list_.kinds[kind].ticked;
    SSTab1_->setTabEnabled(kind, ticked);
    first = ticked ? kind : first;
  }
  SSTab1_->setCurrentIndex(first);
}

void ResultPanel::RefreshPaint() {
  for (int kind = 0; kind < kBetKinds; ++kind) {
    models_[kind]->RefreshPaint();
    const TicketList& tickets = list_.kinds[kind].tickets;
    const auto winner = std::find_if(tickets.begin(), tickets.end(),
                                     [](const Ticket& ticket) { return ticket.paint == Paint::kYellow; });
    if (list_.kinds[kind].ticked && winner != tickets.end()) {
      mfgData_[kind]->scrollTo(models_[kind]->index(static_cast<int>(winner - tickets.begin()), 1),
                               QAbstractItemView::PositionAtCenter);
    }
  }
}

void ResultPanel::SetTotals(const std::string& text) {
  txtCombineMessage_->setPlainText(QString::fromStdString(text));
}

std::array<int, 4> ResultPanel::DrawnDigits() const {
  std::array<int, 4> digits;
  for (int position = 0; position < 4; ++position) {
    digits[position] = cboCheck_[position]->currentIndex();
  }
  return digits;
}

void ResultPanel::ShowCheckLines(const std::vector<std::string>& lines) {
  lstCheck_->clear();
  for (const std::string& line : lines) {
    lstCheck_->addItem(QString::fromStdString(line));
  }
}

}  // namespace marlevo
