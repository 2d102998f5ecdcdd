// Windows on screens that are smaller than what they show.
#pragma once

class QScrollArea;
class QWidget;

namespace marlevo {

// Fills `window` with `page`, which is laid out already. The page can be scrolled where the window is smaller; the
// widget that has the focus is always brought into sight. Returns what scrolls.
QScrollArea* FillScrolling(QWidget* window, QWidget* page);

}  // namespace marlevo
