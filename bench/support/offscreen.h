// For benches with windows: no screen, and no remark of Qt's platform for that on each window of a fixed size.
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
