// The ten digit columns of the board. Columns 1 to 4 always show, with buttons that tick or untick a whole row or
// column of them; columns 5 to 10 have their place reserved and show on demand. Ticks in hidden columns count.
//
// Keyboard: the Tab key stops at the panel once, at the cell that had the focus last. The arrow keys move between the
// cells, Space ticks a cell, and a digit key ticks or unticks that digit of the column in which the focus is.
#pragma once

#include <QFrame>
#include <array>

#include "board/digit_box.h"
#include "board/selection.h"

class QGridLayout;
class QLabel;

namespace marlevo {

class DigitPanel : public QFrame {
  Q_OBJECT

 public:
  explicit DigitPanel(QWidget* parent);

  // Adds the ticked digits of all ten columns to `picks`. A box stands for the digit of its caption.
  void ReadInto(Selection& picks) const;
  void UntickAll();
  // Shows columns 5 to 10 when they are hidden, and hides them when they are shown.
  void ToggleExtraColumns();

  // The cell that the Tab key reaches.
  DigitBox* TabStop() const { return tab_stop_; }

 protected:
  // Gets the keys that the cell with the focus leaves.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  static constexpr int kDigits = 10;
  static constexpr int kShownColumns = 4;
  // The cells, as the arrow keys see them. Rows: ten digits, then two rows of buttons for whole columns. Columns: the
  // four that always show, then two columns of buttons for whole rows, then the six extra ones.
  static constexpr int kCellRows = kDigits + 2;
  static constexpr int kCellColumns = kPickColumns + 2;
  using Column = std::array<DigitBox*, kDigits>;

  void AddShownColumns();
  void AddExtraColumns();
  // Puts `reserved_` in the place of the extra columns, or takes it away.
  void ReserveExtraColumns(bool reserve);
  // `column` is the column of the picks, from 1; `cell_column` is where it stands among the cells, from 0.
  DigitBox* AddDigit(int column, int digit, int cell_column);
  void AddCell(DigitBox* box, int row, int column);
  DigitBox* AddAction(const char* name, int index, const QString& caption, const QString& tip, int row, int column);
  void chkAll_X1_Click(int digit);
  void chkAll_X2_Click(int digit);
  void chkAll_Y1_Click(int column);
  void chkAll_Y2_Click(int column);
  void TickRow(int digit, bool ticked);
  void TickColumn(int column, bool ticked);
  void chkNum_GotFocus(DigitBox* box);
  void SetTabStop(DigitBox* box);
  void MoveFocus(int row, int column, int down, int right);
  void WriteHiddenPicks();

  std::array<Column, kPickColumns + 1> columns_{};  // from 1, as columns are counted; entry 0 is empty
  std::array<std::array<DigitBox*, kCellColumns>, kCellRows> cells_{};
  std::array<QLabel*, kPickColumns - kShownColumns> extra_titles_{};
  QGridLayout* grid_;
  QLabel* reserved_;  // stands in the place of the hidden columns
  DigitBox* tab_stop_ = nullptr;
};

}  // namespace marlevo
