#include "customers/record_list.h"

#include "customers/customer_statements.h"
#include "ui/appearance.h"

namespace marlevo {

RecordList::RecordList(QWidget* parent) : OperatorChoice(parent) {
  setObjectName("lstRecord");
  setFont(AlignedFont());
  setUniformItemSizes(true);
  // A count of five digits fits beside the scroll bar.
  setMinimumWidth(fontMetrics().horizontalAdvance("0000/00/00-00:00:00 00000張") + fontMetrics().height() * 2);
}

void RecordList::Fill(Connection& connection, const std::string& number) {
  QStringList lines;
  for (Recordset records = connection.Open(SelectRecords(number)); !records.AtEnd(); records.MoveNext()) {
    if (const std::string stamp = records.Text("SAL_DATE"); !stamp.empty()) {
      lines += QString::fromStdString(RecordLine(stamp, records.Text("SAL_NUM")));
    }
  }
  clear();
  addItems(lines);
  number_ = number;
}

void RecordList::Clear() {
  clear();
  number_.clear();
}

QString RecordList::SelectedLine() const {
  const int row = SelectedRow();
  return row == -1 ? QString() : item(row)->text();
}

void RecordList::RemoveSelectedLine() {
  delete takeItem(SelectedRow());
  setCurrentRow(-1);
  clearSelection();
}

}  // namespace marlevo
