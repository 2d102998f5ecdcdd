#include "ui/grid.h"

#include <QClipboard>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QRegularExpression>
#include <QShortcut>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QToolTip>
#include <algorithm>
#include <cmath>

namespace marlevo {

namespace {

// Shows a text from its beginning in one line, and the whole of a text that is cut off in its cell as a tooltip.
class CellDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QString displayText(const QVariant& value, const QLocale&) const override {
    return value.toString().replace("\r\n", " ").replace('\n', ' ').replace('\r', ' ');
  }

  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override {
    if (event->type() != QEvent::ToolTip) {
      return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    const bool cut = index.isValid() && sizeHint(option, index).width() > view->visualRect(index).width();
    QToolTip::showText(event->globalPos(), cut ? index.data().toString() : QString(), view);
    return true;
  }
};

void CopyRows(const QAbstractItemView& view) {
  QModelIndexList rows = view.selectionModel()->selectedRows();
  if (rows.isEmpty()) {
    return;  // what was copied before stays
  }
  std::sort(rows.begin(), rows.end());
  static const QRegularExpression separators("[\\t\\r\\n]+");
  QString text;
  for (const QModelIndex& row : rows) {
    QStringList cells;
    for (int column = 0; column < view.model()->columnCount(); ++column) {
      // A separator inside a text would put what follows into another cell.
      cells += row.siblingAtColumn(column).data().toString().replace(separators, " ");
    }
    text += cells.join('\t') + '\n';
  }
  QGuiApplication::clipboard()->setText(text);
}

}  // namespace

void SetUpGrid(QTableView& grid, GridSelection selection) {
  QHeaderView* const rows = grid.verticalHeader();
  rows->hide();
  rows->setSectionResizeMode(QHeaderView::Fixed);
  rows->setMinimumSectionSize(1);
  FitRows(grid);

  QHeaderView* const columns = grid.horizontalHeader();
  columns->setHighlightSections(false);
  columns->setSectionsClickable(false);

  grid.setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid.setSelectionBehavior(QAbstractItemView::SelectRows);
  grid.setSelectionMode(selection == GridSelection::kRow ? QAbstractItemView::SingleSelection
                                                         : QAbstractItemView::ExtendedSelection);
  grid.setTabKeyNavigation(false);
  grid.setWordWrap(false);
  grid.setCornerButtonEnabled(false);
  grid.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  grid.setItemDelegate(new CellDelegate(&grid));
  LetRowsBeCopied(grid);
}

void LetRowsBeCopied(QAbstractItemView& view) {
  auto* const shortcut = new QShortcut(QKeySequence::Copy, &view);
  shortcut->setContext(Qt::WidgetShortcut);
  shortcut->setAutoRepeat(false);
  QObject::connect(shortcut, &QShortcut::activated, &view, [&view] { CopyRows(view); });
}

void FitRows(QTableView& grid) {
  grid.verticalHeader()->setDefaultSectionSize(grid.fontMetrics().height() + 8);
}

void SetColumnWidth(QTableView& grid, int column, double width) {
  const double unit = QFontMetricsF(grid.font()).horizontalAdvance('W');
  grid.setColumnWidth(column, static_cast<int>(std::lround(width * unit)));
}

void SetColumnWidths(QTableView& grid, const std::vector<double>& widths) {
  int column = 0;
  for (const double width : widths) {
    SetColumnWidth(grid, column++, width);
  }
}

}  // namespace marlevo
