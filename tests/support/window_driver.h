// What an operator does to a window, and what is to be seen in it.
#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QString>
#include <QTest>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/qt_modal.h"

namespace marlevo {

// A window on the screen.
template <typename Window>
class Shown : public Window {
 public:
  template <typename... Arguments>
  explicit Shown(Arguments&&... arguments) : Window(nullptr, std::forward<Arguments>(arguments)...) {
    this->show();
  }
};

// Counts how often widgets of a name are really painted.
class PaintCounter : public QObject {
 public:
  explicit PaintCounter(const QString& name) : name_(name) { qApp->installEventFilter(this); }
  bool eventFilter(QObject* receiver, QEvent* event) override {
    painted += event->type() == QEvent::Paint && receiver->objectName() == name_ ? 1 : 0;
    return false;
  }

  int painted = 0;

 private:
  QString name_;
};

template <typename Widget>
Widget& Find(const QWidget& window, const QString& name) {
  auto* const widget = window.findChild<Widget*>(name);
  if (widget == nullptr) {
    throw std::runtime_error("no widget " + name.toStdString());
  }
  return *widget;
}

// Runs `action` inside an event, so that what it throws reaches the program's guard of errors.
inline void RunInEvent(const std::function<void()>& action) {
  QMetaObject::invokeMethod(qApp, action, Qt::QueuedConnection);
  QCoreApplication::sendPostedEvents(qApp, QEvent::MetaCall);
}

// Calls click() instead of sending an event of the mouse or a key: when the handler of such an event throws, Qt leaks
// memory, and sanitized builds report it.
inline void Click(const QWidget& window, const QString& button) {
  RunInEvent([&pressed = Find<QAbstractButton>(window, button)] { pressed.click(); });
}

// Presses a button and walks through the windows that it opens.
inline void Press(const QWidget& window, const QString& button, const std::vector<ModalStep>& steps = {}) {
  WithModals([&] { Click(window, button); }, steps);
}

// Rows count from 0, without the heading.
inline void PressRow(const QWidget& window, const QString& view, int row, Qt::MouseButton button = Qt::LeftButton) {
  auto& rows = Find<QAbstractItemView>(window, view);
  const QModelIndex index = rows.model()->index(row, 0);
  rows.scrollTo(index);
  QTest::mouseClick(rows.viewport(), button, {}, rows.visualRect(index).center());
}

// Replaces the text of a box, key by key.
inline void Type(const QWidget& window, const QString& box, const QString& text) {
  auto& edit = Find<QLineEdit>(window, box);
  edit.setFocus();
  edit.selectAll();
  QTest::keyClick(&edit, Qt::Key_Delete);
  QTest::keyClicks(&edit, text);
}

// Sets the text of a box at once, as an input method does.
inline void Enter(const QWidget& window, const QString& box, const QString& text) {
  Find<QLineEdit>(window, box).setText(text);
}

// One digit for each of the four lists of a drawn number.
inline void EnterDigits(const QWidget& window, const QString& digits) {
  for (int i = 0; i < 4; ++i) {
    Find<QComboBox>(window, QString("cboCheck(%1)").arg(i)).setEditText(digits.mid(i, 1));
  }
}

inline std::string BoxText(const QWidget& window, const QString& box) {
  return Find<QLineEdit>(window, box).text().toStdString();
}

inline std::string LabelText(const QWidget& window, const QString& label) {
  return Find<QLabel>(window, label).text().toStdString();
}

// The row of a grid or list that is highlighted; -1 when none is.
inline int Highlighted(const QWidget& window, const QString& view) {
  const QModelIndexList rows = Find<QAbstractItemView>(window, view).selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : rows.first().row();
}

// The rows of a grid or list, each ending in a line break, the cells joined by "|".
inline std::string RowsText(const QWidget& window, const QString& view) {
  const QAbstractItemModel& model = *Find<QAbstractItemView>(window, view).model();
  std::string text;
  for (int row = 0; row < model.rowCount(); ++row) {
    for (int column = 0; column < model.columnCount(); ++column) {
      text += column == 0 ? "" : "|";
      text += model.index(row, column).data().toString().toStdString();
    }
    text += "\n";
  }
  return text;
}

// The same and, behind the last line break, the highlighted row.
inline std::string GridText(const QWidget& window, const QString& view) {
  return RowsText(window, view) + std::to_string(Highlighted(window, view));
}

}  // namespace marlevo
