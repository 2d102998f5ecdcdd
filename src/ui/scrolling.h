// Windows on screens that are smaller than what they show.
#pragma once

class QWidget;

namespace marlevo {

// Fills `window` with `page`, which is laid out already. The page is centred where the window is larger and can be
// scrolled where the window is smaller; the widget that has the focus is always brought into sight.
void FillScrolling(QWidget* window, QWidget* page);

}  // namespace marlevo
