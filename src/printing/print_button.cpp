#include "printing/print_button.h"

#include <QCoreApplication>
#include <utility>

#include "ui/widgets.h"

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

QPushButton* NewPrintButton(QWidget* parent, const QString& caption, std::function<void()> print) {
  QPushButton* const button = NewButton(parent, "cmdPrint", caption, Emphasis::kMain);
  QObject::connect(button, &QPushButton::clicked, button, [button, print = std::move(print)] {
    const SwitchedOff off(*button);
    print();
    QCoreApplication::processEvents();
  });
  return button;
}

}  // namespace marlevo
