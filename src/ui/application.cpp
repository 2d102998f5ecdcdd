#include "ui/application.h"

#include <QGridLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>

#include "platform/base/operation_error.h"
#include "ui/appearance.h"
#include "ui/fault_text.h"
#include "ui/manual.h"

namespace marlevo {

namespace {

constexpr int kReportWidth = 560;

// F1, when it reaches a window before any widget of the window. An open list or menu keeps its keys to itself.
bool AsksForHelp(const QObject& receiver, const QEvent& event) {
  if (event.type() != QEvent::KeyPress || !receiver.isWindowType() || QApplication::activeWindow() == nullptr ||
      QApplication::activePopupWidget() != nullptr) {
    return false;
  }
  const auto& key = static_cast<const QKeyEvent&>(event);
  return key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier;
}

}  // namespace

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
  // Qt's own words in Chinese: menus of text boxes, standard buttons.
  if (words_.load(":/words/qtbase_zh_TW.qm")) {
    installTranslator(&words_);
  }
  setApplicationVersion(MARLEVO_VERSION);
  setDesktopFileName("org.marlevo.Marlevo");  // by this name a Linux desktop finds what belongs to the program
  setWindowIcon(QIcon(":/icon/marlevo.png"));
  SetUpAppearance();
}

bool Application::notify(QObject* receiver, QEvent* event) {
  if (gestures_.Refuses(*receiver, *event)) {
    return true;
  }
  try {
    if (AsksForHelp(*receiver, *event)) {
      OpenManual(*activeWindow());
      return true;
    }
    return QApplication::notify(receiver, event);
  } catch (const std::exception& error) {
    ReportError(error);
  }
  return true;
}

int Application::Run(const std::function<void()>& start) {
  try {
    start();
  } catch (const std::exception& error) {
    ReportError(error);
  }
  // An exit that was asked for in `start` has no effect on an event loop that begins later.
  const int status = ended_ ? 1 : exec();
  return ended_ ? 1 : status;
}

void Application::ReportError(const std::exception& error) {
  Report latest{"程式執行", {}, FaultText(Fault::kOther), QString::fromUtf8(error.what())};
  if (const auto* operation = dynamic_cast<const OperationError*>(&error)) {
    latest.attempted = QString::fromStdString(operation->Attempted());
    latest.subject = QString::fromStdString(operation->Subject());
    latest.sentence = FaultText(operation->Kind());
    if (latest.sentence.isEmpty()) {
      latest.sentence.swap(latest.words);
    }
    if (!operation->Outcome().empty()) {
      latest.sentence += "\n" + QString::fromStdString(operation->Outcome());
    }
  }
  waiting_.push_back(latest);
  if (reporting_) {
    return;
  }
  reporting_ = true;
  while (!waiting_.empty() && !ended_) {
    const Report report = waiting_.front();
    waiting_.pop_front();
    ended_ = Show(report);
  }
  reporting_ = false;
  if (ended_) {
    // Ends every nested event loop too, those of modal windows included.
    exit(1);
  }
}

bool Application::Show(const Report& report) {
  QMessageBox box(QMessageBox::Critical, "錯誤報告", report.attempted + "時發生錯誤。", QMessageBox::NoButton,
                  activeWindow());
  box.setObjectName("frmError");
  SetManualSection(box, "問題排除");
  box.setTextFormat(Qt::PlainText);
  box.setInformativeText("<p>" + report.sentence.toHtmlEscaped().replace("\n", "<br>") + "</p><p>" +
                         report.subject.toHtmlEscaped() + "</p><p><small>" + report.words.toHtmlEscaped() +
                         "<br>版本 " + applicationVersion() + "</small></p>");
  QPushButton* const end = box.addButton("結束", QMessageBox::DestructiveRole);
  QPushButton* const proceed = box.addButton("繼續", QMessageBox::RejectRole);
  box.setDefaultButton(end);
  // QMessageBox makes itself as narrow as its first line; paths and technical words need more room.
  if (auto* const grid = qobject_cast<QGridLayout*>(box.layout())) {
    grid->addItem(new QSpacerItem(kReportWidth, 0), grid->rowCount(), 0, 1, grid->columnCount());
  }
  box.setEscapeButton(proceed);
  box.exec();
  return box.clickedButton() == end;
}

}  // namespace marlevo
