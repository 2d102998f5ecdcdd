#include "printing/print_progress.h"

#include "ui/frmMessage.h"

namespace marlevo {

namespace {
constexpr int kShowAfter = 1000;  // milliseconds
constexpr int kUpdateEvery = 50;  // milliseconds; updating for every page would take longer than printing
}  // namespace

PrintProgress::PrintProgress(QWidget* parent, int pages)
    : window_("列印中,請稍後 ...", "取  消", 0, pages, parent, Qt::Dialog | Qt::WindowTitleHint) {
  window_.setObjectName("frmProgress");
  window_.setWindowTitle("列  印");
  window_.setWindowModality(Qt::WindowModal);
  window_.setMinimumDuration(kShowAfter);
  window_.setMinimumWidth(window_.fontMetrics().height() * 20);
  window_.setAutoReset(false);
  window_.setValue(0);
  since_update_.start();
}

bool PrintProgress::NextPage() {
  if (since_update_.hasExpired(kUpdateEvery)) {
    window_.setLabelText(QString("列印中,請稍後 ...   %1 / %2 頁").arg(pages_).arg(window_.maximum()));
    window_.setValue(pages_);
    since_update_.restart();
  }
  if (Cancelled()) {
    return false;
  }
  ++pages_;
  return true;
}

void PrintProgress::Finish() {
  if (Cancelled()) {
    ShowMessage(window_.parentWidget(), QString("列印已取消,共印出 %1 頁 !").arg(pages_));
  }
}

}  // namespace marlevo
