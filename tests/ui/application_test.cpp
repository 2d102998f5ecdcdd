#include "ui/application.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QPushButton>
#include <QTimer>
#include <stdexcept>

#include "platform/base/operation_error.h"
#include "support/window_driver.h"

namespace marlevo {
namespace {

void Fail() {
  throw DatabaseError("讀取客戶資料", "4star.mdb", "page 7 is damaged");
}

TEST(ErrorGuardTest, AnErrorOfASlotIsReportedAndTheProgramGoesOn) {
  QPushButton button;
  QObject::connect(&button, &QPushButton::clicked, &Fail);
  for (const char* const words : {"讀取客戶資料", "4star.mdb", "page 7 is damaged"}) {
    WithModals([&] { RunInEvent([&] { button.click(); }); }, {ExpectErrorReport(words, "繼續")});
  }
  // An error of another kind, thrown in an event that is no slot.
  WithModals([] { RunInEvent([] { throw std::length_error("too long"); }); }, {ExpectErrorReport("too long", "繼續")});
}

TEST(ErrorGuardTest, ASecondErrorWaitsForTheFirstReport) {
  bool first_is_over = false;
  const ModalStep first = [&](QWidget& window) {
    RunInEvent([] { throw PrinterError("列印", "HP LaserJet", "no paper"); });
    ExpectErrorReport("4star.mdb", "繼續")(window);
    first_is_over = true;
  };
  const ModalStep second = [&](QWidget& window) {
    EXPECT_TRUE(first_is_over);
    ExpectErrorReport("HP LaserJet", "繼續")(window);
  };
  WithModals([] { RunInEvent(&Fail); }, {first, second});
}

// Stands last, because no window can be shown after the application has ended.
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
