#include "customers/record_list.h"

#include "ui/appearance.h"
#include "ui/grid.h"

namespace marlevo {

RecordList::RecordList(QWidget* parent) : ChoosingView(parent, Moving::kOnly) {
  setObjectName("lstRecord");
  setAccessibleName("購買記錄");
  setFont(AlignedFont());
  setUniformItemSizes(true);
  LetRowsBeCopied(*this);
  Clear();
  // A count of five digits fits beside the scroll bar.
  setMinimumWidth(fontMetrics().horizontalAdvance("0000/00/00-00:00:00 00000張") + fontMetrics().height() * 2);
}

void RecordList::OnPressed(const std::function<void()>& pressed) {
  pressed_ = pressed;
  OnChosen([pressed](int) { pressed(); });
}

void RecordList::Begin(const std::string& number) {
  clear();
  number_ = number;
  SetPlaceholder(number.empty() ? "請先選擇客戶" : "");
}

void RecordList::Show(const std::vector<RecordSummary>& records) {
  SetPlaceholder("這位客戶還沒有購買記錄");
  for (const RecordSummary& record : records) {
    auto* const line = new QListWidgetItem(QString::fromStdString(RecordLine(record)), this);
    line->setData(Qt::UserRole, record.tickets);
  }
  if (count() > 0) {
    MoveTo(count() - 1);  // the newest one is what an operator mostly wants
  }
}

QString RecordList::SelectedLine() const {
  const int row = ChosenRow();
  return row == -1 ? QString() : item(row)->text();
}

int RecordList::SelectedTickets() const {
  const int row = ChosenRow();
  return row == -1 ? 0 : item(row)->data(Qt::UserRole).toInt();
}

void RecordList::RemoveSelectedLine() {
  const int row = ChosenRow();
  Highlight(-1);  // or else the neighbour would become the current line, which Enter chooses
  delete takeItem(row);
}

void RecordList::mousePressEvent(QMouseEvent* event) {
  ChoosingView::mousePressEvent(event);
  if (event->button() == Qt::LeftButton && !indexAt(event->pos()).isValid()) {
    pressed_();
  }
}

}  // namespace marlevo
