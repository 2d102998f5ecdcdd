#include "printing/print_button.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <utility>

#include "ui/style.h"

namespace marlevo {

namespace {

// Disables a button for its own lifetime, also when printing throws.
class SwitchedOff {
 public:
  explicit SwitchedOff(QPushButton& button) : button_(button), had_focus_(button.hasFocus()) {
    button_.setEnabled(false);
  }
  ~SwitchedOff() {
    button_.setEnabled(true);
    if (had_focus_) {
      button_.setFocus();
    }
  }
  SwitchedOff(const SwitchedOff&) = delete;
  SwitchedOff& operator=(const SwitchedOff&) = delete;

 private:
  QPushButton& button_;
  bool had_focus_;
};

}  // namespace

PrintButton::PrintButton(QWidget* parent, const QString& caption, std::function<void()> print)
    : QPushButton(caption, parent) {
  setObjectName("cmdPrint");
  setAutoDefault(false);
  setPalette(MainButtonPalette());
  connect(this, &QPushButton::clicked, this, [this, print = std::move(print)] { Print(print); });
}

void PrintButton::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
}

void PrintButton::Print(const std::function<void()>& print) {
  const SwitchedOff off(*this);
  print();
  QCoreApplication::processEvents();
}

}  // namespace marlevo
