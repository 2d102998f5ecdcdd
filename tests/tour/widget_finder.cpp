// Tells a driver outside the program where its widgets are. Preloaded into the real program (for Windows linked into
// it), which knows nothing of it: the driver asks by object name through one pipe, gets a line through another, and
// then clicks with the real mouse.
//
//   find NAME              -> "x y width height" of the widget on the screen, or "none" while it cannot be clicked
//   item NAME ROW COLUMN   -> the same for a cell of a grid or list (both from 0), after scrolling it into view
//   button CAPTION         -> the same for a button of the window that has the input, by what is written on it
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
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMetaObject>
#include <QWindow>
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
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

// The widget of that name in the window that has the input, otherwise in any window that is to be seen.
QWidget* Find(const QString& name) {
  QWidget* active = QApplication::activeModalWidget();
  QWidgetList windows = QApplication::topLevelWidgets();
  if (active != nullptr) {
    windows = {active};
  }
  for (QWidget* window : windows) {
    if (!OnScreen(window)) {
      continue;
    }
    const auto found = window->findChildren<QWidget*>(name);
    for (QWidget* widget : found) {
      if (widget->isVisible()) {
        return widget;
      }
    }
  }
  return nullptr;
}

std::string Place(const QWidget* widget, const QRect& rect) {
  const QPoint corner = widget->mapToGlobal(rect.topLeft());
  std::ostringstream line;
  line << corner.x() << ' ' << corner.y() << ' ' << rect.width() << ' ' << rect.height();
  return line.str();
}

QWidget* FindButton(const QString& caption) {
  const QWidget* const window = WindowWithTheInput();
  if (window == nullptr || !OnScreen(window)) {
    return nullptr;
  }
  for (auto* button : window->findChildren<QAbstractButton*>()) {
    if (button->isVisible() && button->text() == caption) {
      return button;
    }
  }
  return nullptr;
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
      return text.toString().replace(QStringLiteral("\r\n"), QStringLiteral("|")).replace('\n', '|');
    }
  }
  return {};
}

std::string Answer(const std::string& question) {
  std::istringstream words(question);
  std::string verb;
  std::string name;
  words >> verb >> name;
  if (verb == "window") {
    const QWidget* const window = WindowWithTheInput();
    return window != nullptr ? window->objectName().toStdString() : "none";
  }
  if (verb == "keyboard") {
    const QWidget* const window = WindowWithTheInput();
    return window != nullptr && window->isActiveWindow() ? window->objectName().toStdString() : "none";
  }
  if (verb == "inputs") {
    return std::to_string(inputs->count);
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
  QWidget* widget = verb == "button" ? FindButton(QString::fromStdString(name)) : Find(QString::fromStdString(name));
  if (widget == nullptr) {
    return "none";
  }
  if (verb == "text") {
    return TextOf(widget).toStdString();
  }
  if (verb == "item") {
    int row = 0;
    int column = 0;
    words >> row >> column;
    auto* view = qobject_cast<QAbstractItemView*>(widget);
    const QModelIndex index = view != nullptr ? view->model()->index(row, column) : QModelIndex();
    if (!index.isValid()) {
      return "none";
    }
    view->scrollTo(index);
    return Place(view->viewport(), view->visualRect(index));
  }
  QRect rect = widget->rect();
  if (qobject_cast<QAbstractButton*>(widget) != nullptr) {
    rect.setWidth(
        std::min(rect.width(), widget->sizeHint().width()));  // a click beside a radio button's text misses it
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
            line = Answer(question);
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
