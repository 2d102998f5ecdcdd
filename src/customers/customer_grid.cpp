#include "customers/customer_grid.h"

#include <QPainter>
#include <algorithm>
#include <utility>

#include "ui/appearance.h"
#include "ui/grid.h"

namespace marlevo {

CustomerGrid::CustomerGrid(QWidget* parent, CustomerColumns columns)
    : ChoosingView(parent, columns == CustomerColumns::kAll ? Moving::kOnly : Moving::kChooses), columns_(columns) {
  setObjectName("mfgCustom_H");
  setAccessibleName("客戶");
  QStringList headings = {"客戶編號", "客戶姓名", "電話一", "電話二", "備註"};
  if (columns == CustomerColumns::kNumberAndName) {
    headings.resize(2);
  }
  texts_ = new TextModel(headings, Qt::AlignLeft, this);
  SetUpGrid(*this, GridSelection::kRow);
  setModel(texts_);
  SetWidths();
}

void CustomerGrid::Show(std::vector<Customer> customers) {
  customers_ = std::move(customers);
  found_ = -1;
  TextModel::Rows rows;
  std::ranges::transform(customers_, std::back_inserter(rows), [this](const Customer& of) { return Texts(of); });
  texts_->SetTexts(std::move(rows));
  SetWidths();
}

int CustomerGrid::Find(std::string_view number) const {
  const auto found = std::ranges::find(customers_, number, &Customer::number);
  return found == customers_.end() ? -1 : static_cast<int>(found - customers_.begin());
}

void CustomerGrid::ShowFound(int row) {
  found_ = row;
  if (row != -1) {
    MoveTo(row);
  }
  viewport()->update();
}

void CustomerGrid::Append(const Customer& customer) {
  found_ = -1;
  customers_.push_back(customer);
  texts_->Insert(texts_->rowCount(), Texts(customer));
  SetWidths();
  Highlight(texts_->rowCount() - 1);
}

void CustomerGrid::Replace(const Customer& customer) {
  if (const int row = Find(customer.number); row != -1) {
    found_ = -1;
    customers_[row] = customer;
    texts_->Replace(row, Texts(customer));
    SetWidths();
    Highlight(row);
  }
}

void CustomerGrid::Remove(std::string_view number) {
  if (const int row = Find(number); row != -1) {
    Highlight(-1);  // or else the neighbour would become the current row, which Enter chooses
    found_ = -1;
    customers_.erase(customers_.begin() + row);
    texts_->Remove(row);
  }
}

void CustomerGrid::paintEvent(QPaintEvent* event) {
  ChoosingView::paintEvent(event);
  if (found_ != -1) {
    constexpr int kThickness = 2;
    QPainter painter(viewport());
    painter.setPen(QPen(QColor(colours::kAccent), kThickness, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    const int top = rowViewportPosition(found_);
    painter.drawRect(QRect(0, top, viewport()->width(), rowHeight(found_)).adjusted(1, 1, -1, -1));
  }
}

void CustomerGrid::resizeEvent(QResizeEvent* event) {
  ChoosingView::resizeEvent(event);
  SetWidths();
}

QStringList CustomerGrid::Texts(const Customer& customer) const {
  QStringList texts;
  for (const std::string* text : {&customer.number, &customer.name, &customer.tel1, &customer.tel2, &customer.memo}) {
    if (texts.size() < model()->columnCount()) {
      texts += QString::fromStdString(*text);
    }
  }
  return texts;
}

void CustomerGrid::SetWidths() {
  if (columns_ == CustomerColumns::kAll) {
    FitColumns(*this, *texts_, {6, 7, 8, 8, 8});
  } else {
    SetColumnWidths(*this, {15, 15});
  }
}

}  // namespace marlevo
