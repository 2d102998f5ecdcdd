// How a window fits a screen that is smaller than the window's content.
#pragma once

class QLayout;
class QScrollArea;
class QSize;
class QWidget;

namespace marlevo {

// Fills `window` with `page`, which is laid out already. The page scrolls where the window is smaller than the page,
// and always so far that the widget with the focus can be seen; `buttons` stand under the page and never scroll away.
// Returns the scroll area.
QScrollArea* FillScrolling(QWidget* window, QWidget* page, QLayout* buttons = nullptr);

// A part of a window that takes the room that `page` needs, and scrolls up and down when the window is too low for
// that, so that what stands beside the part, its window's buttons above all, never scrolls away.
QScrollArea* NewScrollingPart(QWidget* page);

// Gives the window this size, or as much of it as title bar and borders, task bar and panels leave of the screen.
void FitScreen(QWidget& window, const QSize& comfortable);

}  // namespace marlevo
