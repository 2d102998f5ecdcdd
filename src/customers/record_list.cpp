#include "customers/record_list.h"

#include <utility>

#include "ui/appearance.h"

namespace marlevo {

RecordList::RecordList(QWidget* parent) : ChoosingView(parent, Moving::kOnly) {
  setObjectName("lstRecord");
  setFont(AlignedFont());
  setUniformItemSizes(true);
  // A count of five digits fits beside the scroll bar.
  setMinimumWidth(fontMetrics().horizontalAdvance("0000/00/00-00:00:00 00000張") + fontMetrics().height() * 2);
}

void RecordList::OnPressed(const std::function<void()>& pressed) {
  pressed_ = pressed;
  OnChosen([pressed](int) { pressed(); });
}

void RecordList::Begin(const std::string& number) {
  clear();
  records_.clear();
  number_ = number;
}

void RecordList::Show(std::vector<RecordSummary> records) {
  records_ = std::move(records);
  QStringList lines;
  for (const RecordSummary& record : records_) {
    lines += QString::fromStdString(RecordLine(record));
  }
  addItems(lines);
}

QString RecordList::SelectedLine() const {
  const int row = ChosenRow();
  return row == -1 ? QString() : item(row)->text();
}

int RecordList::SelectedTickets() const {
  const int row = ChosenRow();
  return row == -1 ? 0 : records_[row].tickets;
}

void RecordList::RemoveSelectedLine() {
  const int row = ChosenRow();
  Highlight(-1);  // or else the list would select the neighbour of the line that it loses
  delete takeItem(row);
  records_.erase(records_.begin() + row);
  Highlight(-1);
}

void RecordList::mousePressEvent(QMouseEvent* event) {
  ChoosingView::mousePressEvent(event);
  if (event->button() == Qt::LeftButton && !indexAt(event->pos()).isValid()) {
    pressed_();
  }
}

}  // namespace marlevo
