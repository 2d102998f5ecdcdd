// How windows make their widgets. Every widget carries its name as objectName; an element of a widget array is called
// "name(i)".
#pragma once

#include <QComboBox>
#include <QFrame>
#include <QKeySequence>
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

// Adds to `window` a key that presses the button, when it goes down and not again while it is held; the button's
// tooltip names the key. The key is an object of its own, because QPushButton::setShortcut presses the button only a
// tenth of a second later, when another window may be in front.
void PressByKey(QAbstractButton& button, const QKeySequence& key, QWidget& window);

// A button that Enter presses while it has the focus, on every system, and at no other time, in dialogs too. kMain
// marks the one main action of its bar.
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

// Gives a frame the look of a panel: white inside an outline.
void SetUpPanel(QFrame& frame);

// A drop-down list that the wheel does not change while it is closed, so that scrolling a window changes no amount in
// passing; the open list scrolls as usual.
class DropDownList : public QComboBox {
  Q_OBJECT

 public:
  DropDownList(QWidget* parent, const QString& name);

 protected:
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace marlevo
