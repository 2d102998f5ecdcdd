// The box txtFind over a customer grid: finds a customer by a part of the number, the name or a telephone.
//
// Nothing is filtered away. Typing, F3 and Shift+F3 frame the first, next or previous match in the grid, around its end
// and its beginning, and choose nothing, so that what is chosen, entered or shown stays as long as the operator only
// looks. Enter chooses the framed match, as a click on it does, and a further Enter the next one. The box is red while
// nothing matches. F3 in a window whose box is empty puts the cursor into the box.
#pragma once

#include <QHBoxLayout>
#include <QLineEdit>

namespace marlevo {

class CustomerGrid;

class FindBox : public QLineEdit {
  Q_OBJECT

 public:
  // The grid outlives the box.
  FindBox(QWidget* parent, CustomerGrid& grid);

  // The line that holds the box and its caption.
  QHBoxLayout* Line();

 private:
  void txtFind_Change();
  void txtFind_Return();
  void txtFind_F3();
  void txtFind_ShiftF3();

  // The row of the grid at which the search stands: the framed one, else the current line.
  int Place() const;
  // Frames the first match on the way from a row of the grid on.
  void Find(int from, int step);

  CustomerGrid& grid_;
  bool taken_ = false;  // Enter has chosen the framed match
};

}  // namespace marlevo
