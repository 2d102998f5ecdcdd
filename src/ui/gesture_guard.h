// Lets a gesture of the operator's hand act once. Application asks before it delivers an event.
//
// Mouse: presses that follow one another within the system's double-click interval and distance are one gesture. Only
// the widget that took the first of them gets the others, so that a press never reaches a button, a bar or a window
// that has come under the pointer since. Buttons and tick boxes do not get the others either: a double click on them
// is one click. Times are those of the events, so that presses that waited while the program was busy count as they
// were made.
//
// Keys: a key that acts (function keys, Enter, Esc) acts when it goes down and not again while it is held, in no
// window.
#pragma once

#include <QEvent>
#include <QPointF>
#include <QPointer>
#include <QWidget>
#include <optional>

class QKeyEvent;
class QMouseEvent;

namespace marlevo {

class GestureGuard {
 public:
  // True when the event must not be delivered, because the gesture that it is a part of has acted already.
  bool Refuses(QObject& receiver, QEvent& event);

 private:
  struct Press {
    QPointer<QWidget> taker;  // of the first press of the gesture; null when it is gone
    quint64 time;             // of the last press, in milliseconds
    QPointF place;            // of the last press, on the screen
  };

  bool RefusesPress(QWidget& widget, const QMouseEvent& press);

  std::optional<Press> last_;
  bool refusing_ = false;  // from a refused press until its release
};

}  // namespace marlevo
