// Walk-throughs of modal windows: what the operator would do with each window that an action opens, in the order in
// which they open. The windows really run; nothing is replaced.
#pragma once

#include <QMessageBox>
#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

namespace marlevo {

// What to do with one modal window. It may press a button that opens the next one.
using ModalStep = std::function<void(QWidget& window)>;

// Runs `action` and gives each modal window that it opens, except progress windows, to the next step. Fails the test,
// and closes what is open, when a window does not come within ten seconds, when one more comes than there are steps, or
// when a step leaves its window open without opening another.
void WithModals(const std::function<void()>& action, const std::vector<ModalStep>& steps);

// Steps that are asked for often.

// Checks the text of a frmMessage or of a message box and closes it.
ModalStep ExpectMessage(const QString& text);
// Checks the text of a question and answers it.
ModalStep ExpectQuestion(const QString& text, QMessageBox::StandardButton answer);
// Checks that the error report contains `words` and presses the button with this caption ("結束" or "繼續").
ModalStep ExpectErrorReport(const QString& words, const QString& button);

}  // namespace marlevo
