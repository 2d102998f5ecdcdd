// Lets a gesture of the operator's hand act once. Application asks before it delivers an event.
//
// Mouse: presses that follow one another within the system's double-click interval and distance are one gesture. Only
// the widget that took the first press of a gesture gets the others, so that they never reach a button, a bar or a
// window that has come under the pointer since. Buttons and tick boxes do not get the others either: a double click on
// them is one click. The times are those of the events, so that presses count as they were made, also when the program
// was busy and handles them late.
//
// Keys: function keys, Enter and Esc act when they go down and not again while they are held, in every window.
#pragma once

#include <QEvent>
#include <QPointF>
#include <QPointer>
#include <QWidget>

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
    quint64 time = 0;         // of the last press, in milliseconds
    QPointF place;            // of the last press, on the screen
  };

  bool RefusesPress(QWidget& widget, const QMouseEvent& press);

  bool pressed_ = false;  // there has been a press, told of in last_
  Press last_;
  bool refusing_ = false;  // from a refused press until its release
};

}  // namespace marlevo
