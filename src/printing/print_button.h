// The button that prints. Paper that went out cannot be taken back, so whoever presses it again while it prints prints
// nothing more.
#pragma once

#include <QPushButton>
#include <functional>

namespace marlevo {

// The button is named cmdPrint and looks like the main action of its window. `print` runs at every press. While it
// runs, the program looks at no event: presses and keys that arrive meanwhile come afterwards, when the button is still
// disabled, and do nothing.
QPushButton* NewPrintButton(QWidget* parent, const QString& caption, std::function<void()> print);

}  // namespace marlevo
