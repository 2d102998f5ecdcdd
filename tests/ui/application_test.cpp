#include "ui/application.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <stdexcept>

#include "platform/errors/operation_error.h"
#include "support/qt_modal.h"

namespace marlevo {
namespace {

void Fail() {
  throw DatabaseError("讀取客戶資料", "4star.mdb", "page 7 is damaged");
}

// From the event loop, as the slot of a timer.
void Later(const std::function<void()>& action) {
  QTimer::singleShot(0, action);
  QTest::qWait(20);
}

TEST(ErrorGuardTest, AnErrorOfASlotIsReportedAndTheProgramGoesOn) {
  QPushButton button;
  QObject::connect(&button, &QPushButton::clicked, &Fail);
  for (const char* const words : {"讀取客戶資料", "4star.mdb", "page 7 is damaged"}) {
    WithModals([&] { Later([&] { button.click(); }); }, {ExpectErrorReport(words, "繼續")});
  }
  // Not only errors of files and printers, and not only in slots.
  WithModals([] { Later([] { throw std::length_error("too long"); }); }, {ExpectErrorReport("too long", "繼續")});
}

TEST(ErrorGuardTest, ASecondErrorWaitsForTheFirstReport) {
  WithModals([] { Later(&Fail); }, {[](QWidget& first) {
                                      Later([] { throw PrinterError("列印", "HP LaserJet", "no paper"); });
                                      EXPECT_EQ(QApplication::activeModalWidget(), &first);
                                      ExpectErrorReport("4star.mdb", "繼續")(first);
                                    },
                                    ExpectErrorReport("HP LaserJet", "繼續")});
}

// The last one: the application is over afterwards.
TEST(ErrorGuardTest, EndLeavesEveryNestedLoopWithStatusOne) {
  auto& application = *static_cast<Application*>(QCoreApplication::instance());
  int status = 0;
  bool returned = false;
  WithModals(
      [&] {
        status = application.Run([&returned] {
          QTimer::singleShot(0, [&returned] {
            QDialog window;
            QMetaObject::invokeMethod(&window, &Fail, Qt::QueuedConnection);
            window.exec();
            returned = true;
          });
        });
      },
      {ExpectErrorReport("page 7", "結束")});
  EXPECT_TRUE(returned);
  EXPECT_EQ(status, 1);
}

}  // namespace
}  // namespace marlevo
