// How every grid of the system looks: all rows have one height, which comes from the font; columns are measured in
// widths of the text "W"; rows are selected whole; nothing is edited in place. A text wider than its cell ends in "…",
// and a tooltip shows it whole. Ctrl+C copies the selected rows, in grids and in lists.
#pragma once

#include <vector>

class QAbstractItemView;
class QTableView;

namespace marlevo {

enum class GridSelection {
  kRow,   // one row: what the operator works on
  kRows,  // any rows: the grid only shows something, and rows are selected to be copied
};

// Call once, before the model is set. No row is ever measured, so a grid of 10,000 rows costs what its visible rows
// cost.
void SetUpGrid(QTableView& grid, GridSelection selection);

// Gives the rows the height that belongs to the grid's font. Call after the font is changed.
void FitRows(QTableView& grid);

// Lets Ctrl+C copy the selected rows of a view as text: a line each, the cells separated by tabs, those of hidden
// columns too. SetUpGrid does it for a grid.
void LetRowsBeCopied(QAbstractItemView& view);

// Makes a column `width` times as wide as the text "W" in the grid's font. Call after the model is set.
void SetColumnWidth(QTableView& grid, int column, double width);
// The same for the columns from 0 on.
void SetColumnWidths(QTableView& grid, const std::vector<double>& widths);

}  // namespace marlevo
