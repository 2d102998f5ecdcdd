#include "ui/grid.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QTableView>
#include <cmath>

namespace marlevo {

void SetUpGrid(QTableView& grid, GridSelection selection) {
  QHeaderView* const rows = grid.verticalHeader();
  rows->hide();
  rows->setSectionResizeMode(QHeaderView::Fixed);
  rows->setMinimumSectionSize(1);
  rows->setDefaultSectionSize(grid.fontMetrics().height() + 8);

  QHeaderView* const columns = grid.horizontalHeader();
  columns->setHighlightSections(false);
  columns->setSectionsClickable(false);

  grid.setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid.setSelectionBehavior(QAbstractItemView::SelectRows);
  grid.setSelectionMode(selection == GridSelection::kRow ? QAbstractItemView::SingleSelection
                                                         : QAbstractItemView::NoSelection);
  grid.setTabKeyNavigation(false);
  grid.setWordWrap(false);
  grid.setCornerButtonEnabled(false);
  grid.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
}

void SetColumnWidths(QTableView& grid, const std::vector<double>& widths) {
  const int unit = grid.fontMetrics().horizontalAdvance('W');
  for (std::size_t column = 0; column < widths.size(); ++column) {
    grid.setColumnWidth(static_cast<int>(column), static_cast<int>(std::lround(widths[column] * unit)));
  }
}

}  // namespace marlevo
