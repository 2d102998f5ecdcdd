#include "board/digit_panel.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <algorithm>

#include "ui/appearance.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {

constexpr int kFirstExtraCell = 6;
constexpr int kGapColumn = kFirstExtraCell + 1;
// Shorter than the names of the other columns: the extra columns are narrower.
constexpr std::array<std::string_view, 6> kExtraNames = {"五柱", "六柱", "七柱", "八柱", "九柱", "十柱"};

// Where a column of cells stands in the layout. The layout's column 0 holds the titles of the rows, and a gap stands
// before the extra columns.
constexpr int GridColumn(int cell_column) {
  return cell_column < kFirstExtraCell ? cell_column + 1 : cell_column + 2;
}

// The title of a column: "第一柱", or just "一" where the column is too narrow for that.
class ColumnTitle : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent*) override {
    QString title = text();
    if (fontMetrics().horizontalAdvance(title) > width()) {
      title.remove("第").remove("柱");
    }
    QPainter(this).drawText(rect(), Qt::AlignCenter, title);
  }
};

// A text in as many lines as its width asks for. It takes the height that it gets, so that a layout does not reckon
// with lines that the panel has room for anyway.
class WrappedText : public QLabel {
 public:
  explicit WrappedText(QWidget* parent) : QLabel(parent) { setWordWrap(true); }

  bool hasHeightForWidth() const override { return false; }
};

QLabel* NewColumnTitle(QWidget* parent, const QString& name, const QString& text) {
  auto* const title = Named(new ColumnTitle(text, parent), name);
  title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  return title;
}

}  // namespace

DigitPanel::DigitPanel(QWidget* parent) : QFrame(parent), grid_(new QGridLayout(this)) {
  SetUpPanel(*this);
  grid_->setContentsMargins(distances::kNear, distances::kNear, distances::kNear, distances::kNear);
  grid_->setSpacing(distances::kHair);
  AddShownColumns();
  AddExtraColumns();
  for (int column = 0; column < kCellColumns; ++column) {
    grid_->setColumnStretch(GridColumn(column), column < kShownColumns ? 3 : 2);
  }
  // The rows of buttons shrink as well as those of digits, which the digits need in a low window.
  for (int row = 0; row < kCellRows; ++row) {
    grid_->setRowStretch(row + 1, row < kDigits ? 3 : 2);
  }
  grid_->setColumnMinimumWidth(0, 18);
  grid_->setColumnMinimumWidth(kGapColumn, 6);

  reserved_ = Named(new WrappedText(this), "lblExtra");
  SetUpPanel(*reserved_);
  reserved_->setAlignment(Qt::AlignCenter);
  reserved_->setForegroundRole(QPalette::PlaceholderText);
  reserved_->setBackgroundRole(QPalette::AlternateBase);
  ReserveExtraColumns(true);
  WriteHiddenPicks();
}

void DigitPanel::AddShownColumns() {
  for (int digit = 0; digit < kDigits; ++digit) {
    QLabel* const title = NewLabel(this, ElementName("lblTitle", digit), QString::number(digit));
    title->setAlignment(Qt::AlignCenter);
    title->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    title->setForegroundRole(QPalette::PlaceholderText);
    grid_->addWidget(title, digit + 1, 0);
    for (int column = 1; column <= kShownColumns; ++column) {
      AddDigit(column, digit, column - 1);
    }
    connect(AddAction("chkAll_X1", digit, "全", QString("四柱都選 %1").arg(digit), digit, kShownColumns),
            &QCheckBox::clicked, this, [this, digit] { chkAll_X1_Click(digit); });
    connect(AddAction("chkAll_X2", digit, "清", QString("四柱都不選 %1").arg(digit), digit, kShownColumns + 1),
            &QCheckBox::clicked, this, [this, digit] { chkAll_X2_Click(digit); });
  }
  for (int column = 0; column < kShownColumns; ++column) {
    const QString title = QString::fromUtf8(kPositionNames[column]);
    grid_->addWidget(NewColumnTitle(this, ElementName("lblTitle2", column), title), 0, GridColumn(column));
    connect(AddAction("chkAll_Y1", column, "全", title + "全選 0 到 9", kDigits, column), &QCheckBox::clicked, this,
            [this, column] { chkAll_Y1_Click(column); });
    connect(AddAction("chkAll_Y2", column, "清", title + "全部不選", kDigits + 1, column), &QCheckBox::clicked, this,
            [this, column] { chkAll_Y2_Click(column); });
  }
}

void DigitPanel::AddExtraColumns() {
  for (int extra = 0; extra < kPickColumns - kShownColumns; ++extra) {
    const int cell_column = kFirstExtraCell + extra;
    extra_titles_[extra] = NewColumnTitle(this, ElementName("lblTitle3", extra), QString::fromUtf8(kExtraNames[extra]));
    extra_titles_[extra]->hide();
    grid_->addWidget(extra_titles_[extra], 0, GridColumn(cell_column));
    for (int digit = 0; digit < kDigits; ++digit) {
      AddDigit(kShownColumns + 1 + extra, digit, cell_column)->hide();
    }
  }
}

// A widget over several columns takes the spacing between them out of the layout even while it is hidden.
void DigitPanel::ReserveExtraColumns(bool reserve) {
  if (reserve) {
    grid_->addWidget(reserved_, 0, GridColumn(kFirstExtraCell), kCellRows + 1, kPickColumns - kShownColumns);
  } else {
    grid_->removeWidget(reserved_);
  }
  reserved_->setVisible(reserve);
}

DigitBox* DigitPanel::AddDigit(int column, int digit, int cell_column) {
  const QString caption = QString::number(digit);
  auto* const box =
      new DigitBox(this, ElementName("chkNum" + QString::number(column), digit), caption, DigitBox::Kind::kDigit);
  const std::string_view title =
      column <= kShownColumns ? kPositionNames[column - 1] : kExtraNames[column - kShownColumns - 1];
  box->setAccessibleName(QString::fromUtf8(title) + (' ' + caption));
  columns_[column][digit] = box;
  AddCell(box, digit, cell_column);
  return box;
}

DigitBox* DigitPanel::AddAction(const char* name, int index, const QString& caption, const QString& tip, int row,
                                int column) {
  auto* const box = new DigitBox(this, ElementName(name, index), caption, DigitBox::Kind::kAction);
  box->setToolTip(tip);
  box->setAccessibleName(tip);
  AddCell(box, row, column);
  return box;
}

void DigitPanel::AddCell(DigitBox* box, int row, int column) {
  grid_->addWidget(box, row + 1, GridColumn(column));
  cells_[row][column] = box;
  box->setFocusPolicy(tab_stop_ == nullptr ? Qt::StrongFocus : Qt::ClickFocus);
  if (tab_stop_ == nullptr) {
    tab_stop_ = box;
  }
  connect(box, &DigitBox::GotFocus, this, [this, box] { chkNum_GotFocus(box); });
}

void DigitPanel::ReadInto(Selection& picks) const {
  for (int column = 1; column <= kPickColumns; ++column) {
    for (const DigitBox* const box : columns_[column]) {
      if (box->isChecked()) {
        picks.Pick(column, box->text().toInt());
      }
    }
  }
}

void DigitPanel::UntickAll() {
  for (int column = 1; column <= kPickColumns; ++column) {
    TickColumn(column, false);
  }
  WriteHiddenPicks();
}

void DigitPanel::ToggleExtraColumns() {
  bool shown = false;
  for (int column = kShownColumns + 1; column <= kPickColumns; ++column) {
    for (DigitBox* const box : columns_[column]) {
      // isHidden() asks for the box's own flag; isVisible() is also false while the panel is hidden.
      box->setVisible(box->isHidden());
      shown = !box->isHidden();
    }
  }
  for (QLabel* const title : extra_titles_) {
    title->setVisible(shown);
  }
  ReserveExtraColumns(!shown);
  if (tab_stop_->isHidden()) {
    SetTabStop(columns_[1][0]);
  }
  WriteHiddenPicks();
}

void DigitPanel::chkAll_X1_Click(int digit) {
  TickRow(digit, true);
}

void DigitPanel::chkAll_X2_Click(int digit) {
  TickRow(digit, false);
}

void DigitPanel::chkAll_Y1_Click(int column) {
  TickColumn(column + 1, true);
}

void DigitPanel::chkAll_Y2_Click(int column) {
  TickColumn(column + 1, false);
}

void DigitPanel::TickRow(int digit, bool ticked) {
  for (int column = 1; column <= kShownColumns; ++column) {
    columns_[column][digit]->setChecked(ticked);
  }
}

void DigitPanel::TickColumn(int column, bool ticked) {
  for (DigitBox* const box : columns_[column]) {
    box->setChecked(ticked);
  }
}

void DigitPanel::chkNum_GotFocus(DigitBox* box) {
  SetTabStop(box);
}

void DigitPanel::SetTabStop(DigitBox* box) {
  tab_stop_->setFocusPolicy(Qt::ClickFocus);
  box->setFocusPolicy(Qt::StrongFocus);
  tab_stop_ = box;
}

void DigitPanel::keyPressEvent(QKeyEvent* event) {
  event->ignore();
  if ((event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
    return;
  }
  // The cell with the focus is the tab stop.
  const auto row = std::ranges::find_if(
      cells_, [this](const auto& cells) { return std::ranges::find(cells, tab_stop_) != cells.end(); });
  const int at_row = static_cast<int>(row - cells_.begin());
  const int at_column = static_cast<int>(std::ranges::find(*row, tab_stop_) - row->begin());
  event->accept();
  switch (event->key()) {
    case Qt::Key_Up:
      return MoveFocus(at_row, at_column, -1, 0);
    case Qt::Key_Down:
      return MoveFocus(at_row, at_column, 1, 0);
    case Qt::Key_Left:
      return MoveFocus(at_row, at_column, 0, -1);
    case Qt::Key_Right:
      return MoveFocus(at_row, at_column, 0, 1);
    default:
      if (event->key() < Qt::Key_0 || event->key() > Qt::Key_9) {
        return event->ignore();
      }
      DigitBox* const digit = cells_[event->key() - Qt::Key_0][at_column];
      digit->setFocus();
      digit->click();
  }
}

// Moves the focus to the next shown cell in a direction. At the edge the focus stays where it is.
void DigitPanel::MoveFocus(int row, int column, int down, int right) {
  for (row += down, column += right; row >= 0 && row < kCellRows && column >= 0 && column < kCellColumns;
       row += down, column += right) {
    DigitBox* const cell = cells_[row][column];
    if (cell != nullptr && !cell->isHidden()) {
      cell->setFocus();
      return;
    }
  }
}

// Picks in hidden columns take part in an expansion all the same, so the columns' place says how many there are.
void DigitPanel::WriteHiddenPicks() {
  int hidden = 0;
  for (int column = kShownColumns + 1; column <= kPickColumns; ++column) {
    for (const DigitBox* const box : columns_[column]) {
      hidden += box->isChecked() ? 1 : 0;
    }
  }
  reserved_->setText(hidden == 0 ? QString("第五柱至第十柱\n按「多柱碰」\n顯示")
                                 : QString("第五柱至第十柱\n已隱藏，其中已選 %1 個號碼，\n組合時一併計算").arg(hidden));
}

}  // namespace marlevo
