#include "board/ticket_model.h"

#include <QColor>
#include <algorithm>
#include <iterator>

#include "ui/appearance.h"

namespace marlevo {

TicketModel::TicketModel(const TicketList& tickets, int digit_columns, QObject* parent)
    : QAbstractTableModel(parent),
      tickets_(tickets),
      ticket_count_(static_cast<int>(tickets.size())),
      digit_columns_(digit_columns) {}

void TicketModel::Refresh() {
  beginResetModel();
  ticket_count_ = static_cast<int>(tickets_.size());
  endResetModel();
}

void TicketModel::RefreshPaint() {
  Q_EMIT dataChanged(index(0, 1), index(ticket_count_, digit_columns_), {Qt::BackgroundRole});
}

int TicketModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ticket_count_ + 1;
}

int TicketModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : digit_columns_ + 1;
}

// A view may ask for a row or a head that the list has just lost; the index of such a one is not valid.
QVariant TicketModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};
  }
  if (role == Qt::TextAlignmentRole) {
    return QVariant::fromValue(Qt::AlignCenter);
  }
  if (role == Qt::BackgroundRole && index.column() == 0) {
    return QColor(colours::kGround);
  }
  // The list may have grown or shrunk since the last Refresh.
  if (index.row() >= std::min<std::ptrdiff_t>(ticket_count_, std::ssize(tickets_))) {
    return {};
  }
  if (index.column() == 0) {
    return role == Qt::DisplayRole ? QVariant(QString::number(index.row() + 1)) : QVariant();
  }
  const Ticket& ticket = tickets_[index.row()];
  switch (role) {
    case Qt::DisplayRole: {
      const char cell = ticket.cells[index.column() - 1];
      return cell == 0 ? QVariant() : QVariant(QString(QLatin1Char(cell)));
    }
    case Qt::BackgroundRole:
      return ticket.paint == Paint::kNone ? QVariant()
                                          : QColor(ticket.paint == Paint::kYellow ? 0xffffff00 : 0xffffffff);
    default:
      return {};
  }
}

QVariant TicketModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical && role == Qt::DisplayRole) {
    return data(index(section, 0), role);
  }
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section > digit_columns_) {
    return {};
  }
  return section == 0 ? QString() : QString::fromUtf8(kPositionNames[section - 1]);
}

}  // namespace marlevo
