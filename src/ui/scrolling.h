// How a window fits a screen that is smaller than its content.
#pragma once

class QScrollArea;
class QWidget;

namespace marlevo {

// Fills `window` with `page`, which is laid out already. The page scrolls where the window is smaller than the page,
// and always so far that the widget with the focus can be seen. Returns the scroll area.
QScrollArea* FillScrolling(QWidget* window, QWidget* page);

}  // namespace marlevo
