// A button that prints once, however hastily it is pressed: paper that went out cannot be taken back.
#pragma once

#include <QPushButton>
#include <functional>

namespace marlevo {

class PrintButton : public QPushButton {
  Q_OBJECT

 public:
  // The button looks like the main action of its window and is named cmdPrint. `print` runs on every click.
  PrintButton(QWidget* parent, const QString& caption, std::function<void()> print);

 protected:
  // Takes no notice, so that the second press of a double click does not count as a click.
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  // Runs `print` while the button is disabled: clicks and keys that arrive meanwhile do nothing.
  void Print(const std::function<void()>& print);
};

}  // namespace marlevo
