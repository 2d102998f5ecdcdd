#include "ui/digit_list.h"

#include "ui/select_all_edit.h"

namespace marlevo {

DigitList::DigitList(QWidget* parent, const QString& name) : DropDownList(parent, name) {
  setLineEdit(new SelectAllEdit(this));
  setInsertPolicy(NoInsert);
  setCompleter(nullptr);
  for (int digit = 0; digit <= 9; ++digit) {
    addItem(QString::number(digit));
  }
  SetDigit("0");
  connect(this, &QComboBox::activated, this, &DigitList::cboCheck_Click);
}

// Qt also calls this when a typed text is taken because the focus goes to another widget. Nothing is selected then.
void DigitList::cboCheck_Click() {
  if (hasFocus()) {
    lineEdit()->selectAll();
  }
}

void DigitList::SetDigit(const QString& text) {
  // The entry becomes the current one too, so that the arrow keys go on from there.
  setCurrentIndex(findText(text));
  setEditText(text);
}

}  // namespace marlevo
