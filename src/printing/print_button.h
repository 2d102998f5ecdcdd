// A button that prints: paper that went out cannot be taken back, so it does its work once however hastily it is
// pressed.
#pragma once

#include <QPushButton>
#include <functional>

namespace marlevo {

class PrintButton : public QPushButton {
  Q_OBJECT

 public:
  // The main action of its window, named cmdPrint.
  PrintButton(QWidget* parent, const QString& caption, std::function<void()> print);

 protected:
  // The second press of a double click is none of its own.
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  // Runs `print`; what is pressed meanwhile meets a button that is off.
  void Print(const std::function<void()>& print);
};

}  // namespace marlevo
