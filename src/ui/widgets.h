// How windows make their widgets: every widget carries its name as objectName, an element of a widget array as
// "name(i)".
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QString>

namespace marlevo {

// "chkPlay(0)"
QString ElementName(const QString& array, int index);

template <typename Widget>
Widget* Named(Widget* widget, const QString& name) {
  widget->setObjectName(name);
  return widget;
}

// A button that Enter never presses by itself, not even in a dialog. An emphasized button is the main action of its
// bar.
enum class Emphasis { kNormal, kMain };
QPushButton* NewButton(QWidget* parent, const QString& name, const QString& caption,
                       Emphasis emphasis = Emphasis::kNormal);

// The same, and a press calls `pressed` of the window.
template <typename Window>
QPushButton* NewButton(Window* window, const QString& name, const QString& caption, void (Window::*pressed)(),
                       Emphasis emphasis = Emphasis::kNormal) {
  QPushButton* const button = NewButton(window, name, caption, emphasis);
  QObject::connect(button, &QPushButton::clicked, window, pressed);
  return button;
}

QLabel* NewLabel(QWidget* parent, const QString& name, const QString& text);

// A closed drop-down list. The wheel never changes it, so that scrolling a window changes no amount in passing; the
// open list scrolls as usual.
class DropDownList : public QComboBox {
  Q_OBJECT

 public:
  DropDownList(QWidget* parent, const QString& name);

 protected:
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace marlevo
