// How every grid of the system looks: rows of one fixed height that comes from the font, column widths in widths of the
// text "W", whole rows selected, nothing edited in place. A text wider than its cell ends in "…"; a tooltip shows it
// whole.
#pragma once

#include <vector>

class QTableView;

namespace marlevo {

enum class GridSelection { kNone, kRow };

// Call once, before the model is set. No row is ever measured, so a grid of 10,000 rows costs what its visible rows
// cost.
void SetUpGrid(QTableView& grid, GridSelection selection);

// Column j becomes widths[j] times as wide as the text "W" in the grid's font. Call after the model is set.
void SetColumnWidths(QTableView& grid, const std::vector<double>& widths);

}  // namespace marlevo
