// How a window fits a screen that is smaller than its content.
#pragma once

class QScrollArea;
class QWidget;

namespace marlevo {

// Fills `window` with `page`, which is laid out already. The page scrolls where the window is smaller than the page,
// and always so far that the widget with the focus can be seen. Returns the scroll area.
QScrollArea* FillScrolling(QWidget* window, QWidget* page);

// A part of a window that takes the room that `page` needs, and scrolls up and down when the window is too low for
// that, so that what stands beside the part, its window's buttons above all, never scrolls away.
QScrollArea* NewScrollingPart(QWidget* page);

}  // namespace marlevo
