#include "ui/digit_list.h"

namespace marlevo {

DigitList::DigitList(QWidget* parent, const QString& name) : DropDownList(parent, name) {
  setEditable(true);
  setInsertPolicy(NoInsert);
  setCompleter(nullptr);
  for (int digit = 0; digit <= 9; ++digit) {
    addItem(QString::number(digit));
  }
  SetDigit("0");
}

void DigitList::SetDigit(const QString& text) {
  // The entry too, so that the arrow keys go on from it.
  setCurrentIndex(findText(text));
  setEditText(text);
}

}  // namespace marlevo
