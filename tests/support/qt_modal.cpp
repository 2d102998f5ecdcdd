#include "support/qt_modal.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QPointer>
#include <QTextDocumentFragment>
#include <QTimer>
#include <algorithm>

namespace marlevo {

namespace {

constexpr int kPollInterval = 2;   // milliseconds
constexpr int kDeadline = 10'000;  // milliseconds without a new window

// The text of a message box or of a frmMessage, the title of another window.
QString Said(const QWidget& window) {
  const auto* const box = qobject_cast<const QMessageBox*>(&window);
  const auto* const label = window.findChild<QLabel*>("lblMsg");
  return box != nullptr ? box->text() : label != nullptr ? label->text() : window.windowTitle();
}

std::string Described(const QWidget& window) {
  return (window.windowTitle() + " [" + window.objectName() + "] " + Said(window)).toStdString();
}

class Walk : public QObject {
 public:
  explicit Walk(const std::vector<ModalStep>& steps) : steps_(steps) {
    since_.start();
    LookAgain();
  }

  std::size_t next = 0;

 private:
  // Steps run inside the event loops of the windows themselves, so the next look is always arranged before a step runs.
  void LookAgain() {
    QTimer::singleShot(kPollInterval, this, [this] {
      LookAgain();
      Look();
    });
  }

  void Look() {
    QWidget* const window = QApplication::activeModalWidget();
    if (window != nullptr && window->objectName() == "frmProgress") {
      since_.restart();  // comes when the machine is slow, asks for nothing, and goes by itself
      return;
    }
    if (window == nullptr || handled_.contains(window)) {
      if (window != nullptr && running_steps_ == 0) {
        Fail("left open: " + Described(*window), window);
      } else if (since_.elapsed() > kDeadline) {
        Fail("did not come for step " + std::to_string(next), window);
      }
      return;
    }
    if (next == steps_.size()) {
      Fail("unexpected: " + Described(*window), window);
      return;
    }
    const QPointer<QWidget> guarded(window);
    handled_.append(guarded);
    since_.restart();
    ++running_steps_;
    steps_[next++](*window);
    --running_steps_;
    since_.restart();
    if (guarded.isNull() || !guarded->isVisible()) {
      handled_.removeAll(guarded);
    }
  }

  void Fail(const std::string& what, QWidget* window) {
    ADD_FAILURE() << "modal window " << what;
    since_.restart();
    if (window != nullptr && !window->close()) {
      window->hide();
    }
  }

  const std::vector<ModalStep>& steps_;
  QList<QPointer<QWidget>> handled_;
  int running_steps_ = 0;
  QElapsedTimer since_;
};

void Press(QWidget& window, QAbstractButton* button) {
  if (button == nullptr) {
    ADD_FAILURE() << "without the button expected: " << Described(window);
    window.close();
  } else {
    button->click();
  }
}

}  // namespace

void WithModals(const std::function<void()>& action, const std::vector<ModalStep>& steps) {
  const Walk walk(steps);
  action();
  EXPECT_EQ(walk.next, steps.size()) << "windows that came";
}

ModalStep ExpectMessage(const QString& text) {
  return [text](QWidget& window) {
    EXPECT_EQ(Said(window).toStdString(), text.toStdString());
    window.close();
  };
}

ModalStep ExpectQuestion(const QString& text, QMessageBox::StandardButton answer) {
  return [text, answer](QWidget& window) {
    EXPECT_EQ(Said(window).toStdString(), text.toStdString());
    const auto* const box = qobject_cast<QMessageBox*>(&window);
    Press(window, box == nullptr ? nullptr : box->button(answer));
  };
}

ModalStep ExpectErrorReport(const QString& words, const QString& button) {
  return [words, button](QWidget& window) {
    EXPECT_EQ(window.objectName().toStdString(), "frmError");
    const auto* const box = qobject_cast<QMessageBox*>(&window);
    const QString details = box == nullptr ? "" : box->informativeText();
    const QString text = Said(window) + '\n' + QTextDocumentFragment::fromHtml(details).toPlainText();
    EXPECT_TRUE(text.contains(words)) << text.toStdString();
    const auto buttons = window.findChildren<QAbstractButton*>();
    const auto found = std::ranges::find(buttons, button, &QAbstractButton::text);
    Press(window, found == buttons.end() ? nullptr : *found);
  };
}

}  // namespace marlevo
