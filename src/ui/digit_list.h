// A drop-down list of the digits 0 to 9 that takes other texts too, because a stored value may be something else. Its
// text is selected when it gets the focus or an entry is chosen, so that typing replaces it.
#pragma once

#include <string>

#include "ui/widgets.h"

namespace marlevo {

class DigitList : public DropDownList {
  Q_OBJECT

 public:
  // Starts at "0".
  DigitList(QWidget* parent, const QString& name);

  void SetDigit(const QString& text);
  std::string Text() const { return currentText().toStdString(); }

 private:
  void cboCheck_Click();
};

}  // namespace marlevo
