#include "ui/application.h"

#include <QGridLayout>
#include <QMessageBox>
#include <QPushButton>

#include "platform/errors/operation_error.h"
#include "ui/appearance.h"

namespace marlevo {

namespace {
constexpr int kReportWidth = 560;
}

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
  // The words that Qt itself puts on the screen: menus of text boxes, standard buttons.
  if (words_.load(":/words/qtbase_zh_TW.qm")) {
    installTranslator(&words_);
  }
  setDesktopFileName("org.marlevo.Marlevo");  // by which a Linux desktop finds the icon of the windows
  SetUpAppearance();
}

bool Application::notify(QObject* receiver, QEvent* event) {
  try {
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
  // The event loop forgets an exit that came before it began.
  const int status = ended_ ? 1 : exec();
  return ended_ ? 1 : status;
}

void Application::ReportError(const std::exception& error) {
  const QString reason = QString::fromUtf8(error.what());
  if (const auto* operation = dynamic_cast<const OperationError*>(&error)) {
    waiting_.push_back(
        {QString::fromStdString(operation->Attempted()), QString::fromStdString(operation->Subject()), reason});
  } else {
    waiting_.push_back({"程式執行", {}, reason});
  }
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
    // Leaves every nested event loop too, those of modal windows included.
    exit(1);
  }
}

bool Application::Show(const Report& report) {
  QMessageBox box(QMessageBox::Critical, "錯誤報告", report.attempted + "時發生錯誤。", QMessageBox::NoButton,
                  activeWindow());
  box.setObjectName("frmError");
  QString details = report.reason;
  if (!report.subject.isEmpty()) {
    details.prepend(report.subject + "\n\n");
  }
  box.setTextFormat(Qt::PlainText);
  box.setInformativeText(details);
  QPushButton* const end = box.addButton("結束", QMessageBox::DestructiveRole);
  QPushButton* const proceed = box.addButton("繼續", QMessageBox::RejectRole);
  box.setDefaultButton(end);
  // Paths and the words of an engine are long; left alone, the box is as narrow as its first line.
  if (auto* const grid = qobject_cast<QGridLayout*>(box.layout())) {
    grid->addItem(new QSpacerItem(kReportWidth, 0), grid->rowCount(), 0, 1, grid->columnCount());
  }
  box.setEscapeButton(proceed);
  box.exec();
  return box.clickedButton() == end;
}

}  // namespace marlevo
