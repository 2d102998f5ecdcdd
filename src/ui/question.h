// Yes/no questions and plain notices as message boxes.
#pragma once

#include <QString>

class QWidget;

namespace marlevo {

// A box with a question icon and the buttons 是 and 否, which the keys Y and N press. True when the operator answers
// 是; Esc, the window's X and Enter on a fresh box count as 否, so that nothing is deleted by a key pressed too often.
bool Question(QWidget* parent, const QString& text, const QString& title = QStringLiteral("提示訊息"));

// A plain message box with one button and no icon.
void Notice(QWidget* parent, const QString& text, const QString& title = QStringLiteral("提示訊息"));

}  // namespace marlevo
