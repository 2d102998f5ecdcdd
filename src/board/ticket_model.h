// A ticket grid as a table model over a TicketList. The heading row is the model's horizontal header; model row r is
// ticket r + 1; column 0 is the sequence number (the heads of
// the rows say the same), columns 1 to 3 or 1 to 4 are the digits; the last row is always blank.
#pragma once

#include <QAbstractTableModel>

#include "tickets/tickets.h"

namespace marlevo {

class TicketModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  // `tickets` belongs to the caller and outlives the model. `digit_columns`: 3 or 4.
  TicketModel(const TicketList& tickets, int digit_columns, QObject* parent);

  // To be called after every change of the list: one reset, whatever changed.
  void Refresh();
  // To be called when only the paint of tickets changed: rows and selection stay where they are.
  void RefreshPaint();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const TicketList& tickets_;
  int ticket_count_;  // as the views know it
  int digit_columns_;
};

}  // namespace marlevo
