#include "ui/text_model.h"

#include <QFontMetrics>
#include <QTableView>
#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace marlevo {

TextModel::TextModel(QStringList headings, Qt::Alignment alignment, QObject* parent)
    : QAbstractTableModel(parent), headings_(std::move(headings)), alignment_(alignment | Qt::AlignVCenter) {}

void TextModel::SetTexts(Rows rows) {
  beginResetModel();
  rows_ = std::move(rows);
  endResetModel();
}

void TextModel::Insert(int row, const QStringList& texts) {
  beginInsertRows({}, row, row);
  rows_.insert(rows_.begin() + row, texts);
  endInsertRows();
}

void TextModel::Replace(int row, const QStringList& texts) {
  rows_[row] = texts;
  Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

void TextModel::Remove(int row) {
  beginRemoveRows({}, row, row);
  rows_.erase(rows_.begin() + row);
  endRemoveRows();
}

int TextModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int TextModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(headings_.size());
}

QVariant TextModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};
  }
  if (role == Qt::DisplayRole) {
    return rows_[index.row()][index.column()];
  }
  return role == Qt::TextAlignmentRole ? QVariant::fromValue(alignment_) : QVariant();
}

QVariant TextModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= headings_.size()) {
    return {};
  }
  if (role == Qt::DisplayRole) {
    return headings_[section];
  }
  return role == Qt::TextAlignmentRole ? QVariant::fromValue(alignment_) : QVariant();
}

void FitColumns(QTableView& grid, const TextModel& model, const std::vector<double>& least) {
  const QFontMetrics metrics = grid.fontMetrics();
  // A text is at most as wide as its characters together. Every character outside ASCII counts as a full-width one.
  std::array<int, 128> narrow{};
  for (std::size_t character = 0; character < narrow.size(); ++character) {
    narrow[character] = metrics.horizontalAdvance(QLatin1Char(static_cast<char>(character)));
  }
  const int wide = metrics.horizontalAdvance(QChar(u'國'));
  const auto width = [&](const QString& text) {
    int sum = 0;
    for (const QChar character : text) {
      sum += character.unicode() < narrow.size() ? narrow[character.unicode()] : wide;
    }
    return sum;
  };
  const int unit = metrics.horizontalAdvance(QLatin1Char('W'));
  const int columns = model.columnCount();
  std::vector<int> floors;
  std::vector<int> wishes;  // above the floors
  for (int column = 0; column < columns; ++column) {
    int widest = width(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    for (const QStringList& row : model.Texts()) {
      widest = std::max(widest, width(row[column]));
    }
    const int floor = floors.emplace_back(static_cast<int>(least[column] * unit));
    wishes.push_back(std::clamp(widest + unit + unit / 2 - floor, 0, floor));
  }
  std::vector<int> order(floors.size());
  std::iota(order.begin(), order.end(), 0);
  std::ranges::sort(order, {}, [&wishes](int column) { return wishes[column]; });
  int room = std::max(grid.viewport()->width() - std::accumulate(floors.begin(), floors.end(), 0), 0);
  int left = static_cast<int>(order.size());
  for (const int column : order) {
    const int extra = std::min(wishes[column], room / left--);
    room -= extra;
    grid.setColumnWidth(column, floors[column] + extra);
  }
  grid.setColumnWidth(columns - 1, grid.columnWidth(columns - 1) + room);
}

}  // namespace marlevo
