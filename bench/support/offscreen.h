// Benches with windows run without a screen. Qt's platform for that (offscreen) warns about every window of a fixed
// size; the warning is left out of the output.
#pragma once

#include <QString>
#include <QtGlobal>
#include <cstdio>

namespace marlevo::bench {

// Called before the application is made.
inline void UseNoScreen() {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
    if (!text.startsWith("This plugin does not support ")) {
      std::fprintf(stderr, "%s\n", qPrintable(text));
    }
  });
}

}  // namespace marlevo::bench
