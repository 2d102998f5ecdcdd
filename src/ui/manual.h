// The operator's manual. F1 opens it in the browser, at the section of the window in front. It stands beside the
// program: 使用手冊.html, and in the folder 使用手冊 a small page for each section that leads to the section, because
// systems lose the place inside a file when they open it. packaging/manual makes them.
#pragma once

#include <QString>

class QWidget;

namespace marlevo {

// Names the section of a window: a heading of docs/使用手冊.md. Windows without a section share that of the window that
// opened them.
void SetManualSection(QWidget& window, const QString& section);
// The section of a window.
QString ManualSection(const QWidget& window);

// Opens the manual at the section of `window`, or says why that cannot be done.
void OpenManual(QWidget& window);

}  // namespace marlevo
