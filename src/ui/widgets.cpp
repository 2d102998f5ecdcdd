#include "ui/widgets.h"

#include <QKeyEvent>
#include <QShortcut>
#include <QWheelEvent>

#include "ui/style.h"

namespace marlevo {

namespace {

// Qt leaves it to the desktop whether Enter presses a button that is not the default one of its dialog.
class EnterButton : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
      click();
    } else {
      QPushButton::keyPressEvent(event);
    }
  }
};

}  // namespace

QString ElementName(const QString& array, int index) {
  return array + '(' + QString::number(index) + ')';
}

QPushButton* NewButton(QWidget* parent, const QString& name, const QString& caption, Emphasis emphasis) {
  auto* const button = Named(new EnterButton(caption, parent), name);
  button->setAutoDefault(false);
  if (emphasis == Emphasis::kMain) {
    button->setPalette(MainButtonPalette());
  }
  return button;
}

void PressByKey(QAbstractButton& button, const QKeySequence& key, QWidget& window) {
  auto* const shortcut = new QShortcut(key, &window);
  shortcut->setAutoRepeat(false);
  QObject::connect(shortcut, &QShortcut::activated, &button, &QAbstractButton::click);
  button.setToolTip((button.toolTip() + "\n按鍵 " + key.toString(QKeySequence::NativeText)).trimmed());
}

QLabel* NewLabel(QWidget* parent, const QString& name, const QString& text) {
  return Named(new QLabel(text, parent), name);
}

void SetUpPanel(QFrame& frame) {
  frame.setFrameStyle(QFrame::StyledPanel);
  frame.setBackgroundRole(QPalette::Base);  // the frame itself fills its inside with it, up to the round corners
}

DropDownList::DropDownList(QWidget* parent, const QString& name) : QComboBox(parent) {
  setObjectName(name);
  setFocusPolicy(Qt::StrongFocus);
}

void DropDownList::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

}  // namespace marlevo
