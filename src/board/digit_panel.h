// The ten digit columns of the board. Columns 1 to 4 always show, with buttons that tick or untick a whole row or
// column of them; columns 5 to 10 have their place reserved and show on demand. Ticks in hidden columns count.
//
// Keyboard: the panel is one stop of the Tab key; the arrow keys move between its cells, Space ticks, a digit key ticks
// or unticks that digit of the column in which the focus is.
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

  // Takes the ticked digits of all ten columns; a box stands for the digit of its caption.
  void ReadInto(Selection& picks) const;
  void UntickAll();
  // Inverts the visibility of the boxes of columns 5 to 10.
  void ToggleExtraColumns();

  // The cell that the Tab key reaches.
  DigitBox* TabStop() const { return tab_stop_; }

 protected:
  // Of the cell that has the focus.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  static constexpr int kDigits = 10;
  static constexpr int kShownColumns = 4;
  // Cells of the keyboard: ten digit rows and two rows of column buttons; four columns, two columns of row buttons, six
  // extra columns.
  static constexpr int kCellRows = kDigits + 2;
  static constexpr int kCellColumns = kPickColumns + 2;
  using Column = std::array<DigitBox*, kDigits>;

  void AddShownColumns();
  void AddExtraColumns();
  // `column` counts from 1, `cell_column` from 0.
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

  std::array<Column, kPickColumns + 1> columns_{};  // from 1, as the columns are counted
  std::array<std::array<DigitBox*, kCellColumns>, kCellRows> cells_{};
  std::array<QLabel*, kPickColumns - kShownColumns> extra_titles_{};
  QGridLayout* grid_;
  QLabel* reserved_;  // stands in the place of the hidden columns
  DigitBox* tab_stop_ = nullptr;
};

}  // namespace marlevo
