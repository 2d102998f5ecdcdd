// main of every test program with windows: the program's own Application, no screen, and no Qt warning goes unseen.
#include <gtest/gtest.h>

#include <QFontInfo>
#include <QTest>
#include <cstdio>

#include "ui/appearance.h"
#include "ui/application.h"

namespace {

// How the platform without a screen begins what it says about windows of a fixed size and lists that open.
constexpr const char* kHarmless = "This plugin does not support ";

// Turns each Qt warning into a failure of the test that runs.
void FailOnWarnings(QtMsgType type, const QMessageLogContext&, const QString& text) {
  const bool failure = type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg;
  if (text.startsWith(kHarmless)) {
    return;
  }
  if (failure) {
    ADD_FAILURE() << "Qt: " << text.toStdString();
  } else {
    std::fprintf(stderr, "%s\n", qPrintable(text));
  }
}

}  // namespace

// Qt's widgets are built without clean-up for exceptions: when a slot throws, the weak pointer that a button holds to
// itself while the slot runs is lost, and so is the copy of the mouse event that Qt delivers. Known to the leak checker
// of sanitized builds, unused in others.
extern "C" const char* __lsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier): its name for us
const char* __lsan_default_suppressions() {            // NOLINT(bugprone-reserved-identifier)
  return "leak:QtSharedPointer::ExternalRefCountData::getAndRef\nleak:QSinglePointEvent::QSinglePointEvent\n";
}

// Qt is built without frame pointers: only the slow way of walking the stack sees the frame of the mouse event.
extern "C" const char* __asan_default_options();  // NOLINT(bugprone-reserved-identifier): its name for us
const char* __asan_default_options() {            // NOLINT(bugprone-reserved-identifier)
  return "fast_unwind_on_malloc=0:malloc_context_size=8";
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  marlevo::Application application(argc, argv);
  for (const QFont& font : {marlevo::WindowFont(), marlevo::AlignedFont()}) {
    if (!QFontInfo(font).family().contains("CJK") && !font.families().contains(QFontInfo(font).family())) {
      std::fprintf(stderr, "no Traditional Chinese font is installed (package fonts-noto-cjk)\n");
      return 1;
    }
  }
  qInstallMessageHandler(FailOnWarnings);
  return RUN_ALL_TESTS();
}
