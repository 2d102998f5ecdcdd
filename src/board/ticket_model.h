// A ticket grid as a table model over a TicketList. Row r is ticket r + 1, and one more row, always blank, stands at
// the end. Column 0 is the ticket's sequence number, which the heads of the rows show too; columns 1 to 3 or 1 to 4 are
// the digits.
#pragma once

#include <QAbstractTableModel>

#include "tickets/tickets.h"

namespace marlevo {

class TicketModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  // `tickets` belongs to the caller and outlives the model. `digit_columns`: 3 or 4.
  TicketModel(const TicketList& tickets, int digit_columns, QObject* parent);

  // To be called after every change of the list.
  void Refresh();
  // To be called when only the paint of tickets changed: rows and selection stay where they are.
  void RefreshPaint();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const TicketList& tickets_;
  int ticket_count_;  // at the last Refresh: the views know of no other tickets
  int digit_columns_;
};

}  // namespace marlevo
