#include "board/result_panel.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/appearance.h"
#include "ui/grid.h"

namespace marlevo {

namespace {

constexpr int kSpacing = 12;
constexpr int kCheckLines = 7;  // the most there can be
constexpr double kGridPoints = 14;
constexpr int kGridBorder = 6;
constexpr double kSequenceWidth = 5.5;  // in widths of "W"
constexpr double kDigitWidth = 6.75;
constexpr double kWidestDigit = 9.5;
constexpr int kDrawnWidth = 50;
constexpr std::array<const char*, 4> kPositions = {"第一柱", "第二柱", "第三柱", "第四柱"};

}  // namespace

ResultPanel::ResultPanel(QWidget* parent, const CurrentList& list, int side_width)
    : QWidget(parent), list_(list), SSTab1_(Named(new QTabWidget(this), "SSTab1")) {
  for (int kind = 0; kind < kBetKinds; ++kind) {
    AddGrid(kind);
  }
  SSTab1_->setUsesScrollButtons(false);

  txtCombineMessage_ = Named(new QPlainTextEdit(this), "txtCombineMessage");
  txtCombineMessage_->setReadOnly(true);
  txtCombineMessage_->setFocusPolicy(Qt::ClickFocus);
  txtCombineMessage_->document()->setDocumentMargin(8);
  txtCombineMessage_->setLineWrapMode(QPlainTextEdit::NoWrap);
  txtCombineMessage_->setFont(AlignedFont());
  txtCombineMessage_->setFixedWidth(side_width);

  picCheck_ = NewCheckArea();
  picCheck_->hide();

  side_ = new QVBoxLayout;
  side_->setSpacing(0);
  side_->addWidget(txtCombineMessage_, 1);
  auto* const list_column = new QVBoxLayout;
  list_column->setSpacing(kSpacing);
  list_column->addWidget(SSTab1_, 1);
  list_column->addWidget(picCheck_);
  auto* const line = new QHBoxLayout(this);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(kSpacing);
  line->addLayout(side_);
  line->addLayout(list_column, 1);
}

void ResultPanel::KeepFree(int height) {
  side_->addSpacing(height);
}

void ResultPanel::AddGrid(int kind) {
  const auto index = static_cast<std::size_t>(kind);
  auto* const grid = Named(new QTableView(SSTab1_), ElementName("mfgData", kind));
  QFont font = grid->font();
  font.setPointSizeF(kGridPoints);
  grid->setFont(font);
  grid->setFrameStyle(QFrame::NoFrame);
  SetUpGrid(*grid, GridSelection::kRow);
  models_[index] = new TicketModel(list_.kinds[index].tickets, DigitColumns(kind), grid);
  grid->setModel(models_[index]);
  mfgData_[index] = grid;
  SSTab1_->addTab(grid,
                  QString::fromUtf8(kBetKindNames[index].data(), static_cast<qsizetype>(kBetKindNames[index].size())));
}

QWidget* ResultPanel::NewCheckArea() {
  auto* const area = Named(new QFrame(this), "picCheck");
  area->setFrameStyle(QFrame::StyledPanel);
  area->setBackgroundRole(QPalette::Base);
  area->setAutoFillBackground(true);

  auto* const drawn = new QHBoxLayout;
  drawn->setSpacing(5);
  for (std::size_t position = 0; position < cboCheck_.size(); ++position) {
    const int index = static_cast<int>(position);
    auto* const list = new DropDownList(area, ElementName("cboCheck", index));
    for (int digit = 0; digit <= 9; ++digit) {
      list->addItem(QString::number(digit));
    }
    list->setMaxVisibleItems(10);
    list->setFixedWidth(kDrawnWidth);
    drawn->addWidget(NewLabel(area, ElementName("lblCheck", index), kPositions[position]));
    drawn->addWidget(list);
    drawn->addSpacing(4);
    cboCheck_[position] = list;
  }
  drawn->addStretch();
  cmdCheck2_ = NewButton(area, "cmdCheck2", "對獎", Emphasis::kMain);
  drawn->addWidget(cmdCheck2_);

  lstCheck_ = Named(new QListWidget(area), "lstCheck");
  lstCheck_->setFont(AlignedFont());
  lstCheck_->setFixedHeight(QFontMetrics(AlignedFont()).height() * kCheckLines + 12);

  auto* const column = new QVBoxLayout(area);
  column->setContentsMargins(12, 10, 12, 12);
  column->addLayout(drawn);
  column->addWidget(lstCheck_);
  return area;
}

// Digits take what room there is, within what reads well.
void ResultPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  layout()->activate();
  for (int kind = 0; kind < kBetKinds; ++kind) {
    QTableView& grid = *mfgData_[static_cast<std::size_t>(kind)];
    const int room = SSTab1_->width() - style()->pixelMetric(QStyle::PM_ScrollBarExtent) - kGridBorder;
    const double units = static_cast<double>(room) / grid.fontMetrics().horizontalAdvance('W') - kSequenceWidth;
    std::vector<double> widths(static_cast<std::size_t>(DigitColumns(kind)) + 1,
                               std::clamp(units / DigitColumns(kind), kDigitWidth, kWidestDigit));
    widths[0] = kSequenceWidth;
    SetColumnWidths(grid, widths);
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
    const bool ticked = list_.kinds[static_cast<std::size_t>(kind)].ticked;
    SSTab1_->setTabEnabled(kind, ticked);
    first = ticked ? kind : first;
  }
  SSTab1_->setCurrentIndex(first);
}

void ResultPanel::RefreshPaint() {
  for (std::size_t kind = 0; kind < kBetKinds; ++kind) {
    models_[kind]->RefreshPaint();
    const TicketList& tickets = list_.kinds[kind].tickets;
    const auto winner = std::find_if(tickets.begin(), tickets.end(),
                                     [](const Ticket& ticket) { return ticket.paint == Paint::kYellow; });
    if (list_.kinds[kind].ticked && winner != tickets.end()) {
      mfgData_[kind]->scrollTo(models_[kind]->index(static_cast<int>(winner - tickets.begin()), 0),
                               QAbstractItemView::PositionAtCenter);
    }
  }
}

void ResultPanel::SetTotals(const std::string& text) {
  txtCombineMessage_->setPlainText(QString::fromStdString(text));
}

std::array<std::string, 4> ResultPanel::DrawnDigits() const {
  std::array<std::string, 4> digits;
  for (std::size_t position = 0; position < digits.size(); ++position) {
    digits[position] = cboCheck_[position]->currentText().toStdString();
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
