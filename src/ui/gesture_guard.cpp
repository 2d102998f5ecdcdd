#include "ui/gesture_guard.h"

#include <QAbstractButton>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleHints>

namespace marlevo {

namespace {

bool IsHeldActingKey(const QKeyEvent& key) {
  const bool acts = (key.key() >= Qt::Key_F1 && key.key() <= Qt::Key_F35) || key.key() == Qt::Key_Return ||
                    key.key() == Qt::Key_Enter || key.key() == Qt::Key_Escape;
  return acts && key.isAutoRepeat();
}

}  // namespace

bool GestureGuard::Refuses(QObject& receiver, QEvent& event) {
  switch (event.type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
      if (!IsHeldActingKey(static_cast<QKeyEvent&>(event))) {
        return false;
      }
      // Accepting the override keeps the key from all shortcuts. Qt then sends it as a key press, refused here too.
      event.accept();
      return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:  // Qt sends it in the place of the second press
      if (receiver.isWidgetType() && event.spontaneous()) {
        refusing_ = RefusesPress(static_cast<QWidget&>(receiver), static_cast<QMouseEvent&>(event));
        return refusing_;
      }
      return false;
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease: {
      const bool refused = refusing_ && receiver.isWidgetType();
      if (refused && static_cast<QMouseEvent&>(event).buttons() == Qt::NoButton) {
        refusing_ = false;
      }
      return refused;
    }
    default:
      return false;
  }
}

bool GestureGuard::RefusesPress(QWidget& widget, const QMouseEvent& press) {
  const QStyleHints& hints = *QGuiApplication::styleHints();
  const bool same_gesture =
      pressed_ && press.timestamp() - last_.time <= static_cast<quint64>(hints.mouseDoubleClickInterval()) &&
      (press.globalPosition() - last_.place).manhattanLength() <= hints.mouseDoubleClickDistance();
  if (!same_gesture) {
    pressed_ = true;
    last_.taker = &widget;
  }
  last_.time = press.timestamp();
  last_.place = press.globalPosition();
  return same_gesture && (last_.taker != &widget || qobject_cast<QAbstractButton*>(&widget) != nullptr);
}

}  // namespace marlevo
