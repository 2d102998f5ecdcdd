// A text box that selects its text when it gets the focus, by key or by mouse, so that typing replaces it.
#pragma once

#include <QLineEdit>

namespace marlevo {

class SelectAllEdit : public QLineEdit {
  Q_OBJECT

 public:
  using QLineEdit::QLineEdit;

 protected:
  void focusInEvent(QFocusEvent* event) override;
};

}  // namespace marlevo
