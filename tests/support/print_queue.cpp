#include "support/print_queue.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace marlevo::test {

bool PrintQueue::Installed() {
  return QFileInfo::exists("/usr/sbin/cupsd");
}

PrintQueue::PrintQueue() {
  OutputOf(PRINT_QUEUE_SCRIPT, {"start", folder_.path(), "Letter"});
  qputenv("CUPS_SERVER", folder_.filePath("socket").toUtf8());
}

PrintQueue::~PrintQueue() {
  OutputOf(PRINT_QUEUE_SCRIPT, {"stop", folder_.path()});
}

std::vector<PrintedJob> PrintQueue::TakeJobs() {
  std::vector<PrintedJob> jobs;
  for (;;) {
    const QString number = QString("%1").arg(jobs_ + 1, 5, 10, QChar('0'));
    const QString document = folder_.filePath("spool/d" + number + "-001");
    if (!QFileInfo::exists(document)) {
      return jobs;
    }
    ++jobs_;
    // The server writes a job's attributes when it has answered.
    QFile attributes(folder_.filePath("spool/c" + number));
    EXPECT_TRUE(QTest::qWaitFor([&] { return attributes.open(QIODevice::ReadOnly); }));
    jobs.push_back({document.toStdString(), attributes.readAll().toStdString(), ReadPdf(document.toStdString())});
  }
}

void PrintQueue::Accept(bool accept) {
  OutputOf(accept ? "/usr/sbin/cupsaccept" : "/usr/sbin/cupsreject", {"-h", folder_.filePath("socket"), "slips"});
}

}  // namespace marlevo::test
