#include "ui/frmMessage2.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QVBoxLayout>

#include "ui/appearance.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {

constexpr int kPaintDeadline = 100;  // milliseconds

}

frmMessage2::frmMessage2(QWidget* parent, const QString& text)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
  setObjectName("frmMessage2");
  setWindowTitle("提示訊息");
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(distances::kWide, distances::kWide, distances::kWide, distances::kWide);
  QLabel* const label = NewLabel(this, "lblMsg", text);
  label->setTextFormat(Qt::PlainText);
  column->addWidget(label);
}

void frmMessage2::ShowPainted() {
  show();
  // A new window is painted only after the window system has reported it as exposed, which is an event of its own.
  QElapsedTimer clock;
  clock.start();
  do {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  } while (!painted_ && clock.elapsed() < kPaintDeadline);
}

void frmMessage2::paintEvent(QPaintEvent* event) {
  QDialog::paintEvent(event);
  painted_ = true;
}

}  // namespace marlevo
