// Tells a driver outside the program where its widgets are. Preloaded into the real program (for Windows linked into
// it), which knows nothing of it: the driver asks by object name through one pipe, gets a line through another, and
// then clicks with the real mouse.
//
//   find NAME              -> "x y width height" of the widget on the screen, or "none" while it cannot be clicked
//   item NAME ROW COLUMN   -> the same for a cell of a grid or list (both from 0), after scrolling it into view
//   button CAPTION         -> the same for a button, by what is written on it
//   text NAME              -> its text; lines are joined with "|"
//   window                 -> objectName of the window that has the input
//   keyboard               -> the same, or "none" while the keys do not go there
//   inputs                 -> how many clicks and keys have reached the program
//   paint                  -> "painted" when the screen shows all windows as they are
//
// The pipes are named by the environment: MARLEVO_FINDER_ASK and MARLEVO_FINDER_ANSWER.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QMetaObject>
#include <QWindow>
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

namespace {

// Sees what reaches the program.
class InputCounter : public QObject {
 public:
  int count = 0;

  bool eventFilter(QObject* receiver, QEvent* event) override {
    // A key acts when it is pressed: the window may be gone when it is released.
    const bool input = event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::KeyPress;
    count += input && receiver->isWindowType() ? 1 : 0;
    return false;
  }
};

InputCounter* inputs = nullptr;

bool OnScreen(const QWidget* window) {
  return window->isVisible() && window->windowHandle() != nullptr && window->windowHandle()->isExposed();
}

QWidget* WindowWithTheInput() {
  QWidget* const modal = QApplication::activeModalWidget();
  return modal != nullptr ? modal : QApplication::activeWindow();
}

// Where that property has that value, in the window that has the input, otherwise in any window that is to be seen.
QWidget* Find(const char* property, const QString& value) {
  QWidget* const modal = QApplication::activeModalWidget();
  for (const QWidget* const window : modal != nullptr ? QWidgetList{modal} : QApplication::topLevelWidgets()) {
    for (QWidget* const widget : OnScreen(window) ? window->findChildren<QWidget*>() : QWidgetList()) {
      if (widget->isVisible() && widget->property(property).toString() == value) {
        return widget;
      }
    }
  }
  return nullptr;
}

QString Place(const QWidget* widget, const QRect& rect) {
  const QPoint corner = widget->mapToGlobal(rect.topLeft());
  return QString("%1 %2 %3 %4").arg(corner.x()).arg(corner.y()).arg(rect.width()).arg(rect.height());
}

QString TextOf(const QWidget* widget) {
  if (const auto* list = qobject_cast<const QAbstractItemView*>(widget)) {
    QStringList lines;
    for (int row = 0; row < list->model()->rowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < list->model()->columnCount(); ++column) {
        cells += list->model()->index(row, column).data().toString();
      }
      lines += cells.join(',');
    }
    return lines.join('|');
  }
  for (const char* property : {"plainText", "currentText", "text"}) {
    const QVariant text = widget->property(property);
    if (text.isValid()) {
      return text.toString().remove('\r').replace('\n', '|');
    }
  }
  return {};
}

QString Answer(const QStringList& words) {
  const QString& verb = words[0];
  if (verb == "window" || verb == "keyboard") {
    const QWidget* const window = WindowWithTheInput();
    return window != nullptr && (verb == "window" || window->isActiveWindow()) ? window->objectName() : "none";
  }
  if (verb == "inputs") {
    return QString::number(inputs->count);
  }
  if (verb == "paint") {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (OnScreen(window)) {
        window->repaint();
      }
    }
    QGuiApplication::sync();
    return "painted";
  }
  QWidget* const widget = Find(verb == "button" ? "text" : "objectName", words[1]);
  if (widget == nullptr) {
    return "none";
  }
  if (verb == "text") {
    return TextOf(widget);
  }
  if (verb == "item") {
    auto* const view = qobject_cast<QAbstractItemView*>(widget);
    const QModelIndex index =
        view != nullptr ? view->model()->index(words[2].toInt(), words[3].toInt()) : QModelIndex();
    if (!index.isValid()) {
      return "none";
    }
    view->scrollTo(index);
    return Place(view->viewport(), view->visualRect(index));
  }
  QRect rect = widget->rect();
  if (qobject_cast<QAbstractButton*>(widget) != nullptr) {
    // A click beside a radio button's text misses it.
    rect.setWidth(std::min(rect.width(), widget->sizeHint().width()));
  }
  return Place(widget, rect);
}

void Serve() {
  std::ifstream ask(std::getenv("MARLEVO_FINDER_ASK"));
  std::ofstream answer(std::getenv("MARLEVO_FINDER_ANSWER"), std::ios::binary);
  std::string question;
  while (std::getline(ask, question)) {
    std::string line = "none";
    if (QCoreApplication::instance() != nullptr) {
      QMetaObject::invokeMethod(
          QCoreApplication::instance(),
          [&] {
            if (inputs == nullptr) {
              inputs = new InputCounter;
              QCoreApplication::instance()->installEventFilter(inputs);
            }
            line = Answer(QString::fromStdString(question).split(' ')).toStdString();
          },
          Qt::BlockingQueuedConnection);
    }
    answer << line << std::endl;
  }
}

const bool serving = [] {
  if (std::getenv("MARLEVO_FINDER_ASK") != nullptr) {
    std::thread(Serve).detach();
  }
  return true;
}();

}  // namespace
