#include "customers/customer_grid.h"

#include <algorithm>
#include <array>
#include <utility>

#include "customers/customer_statements.h"
#include "ui/grid.h"

namespace marlevo {

namespace {

constexpr std::array<const char*, 5> kFields = {"CUSTOM_NO", "CUSTOM_NAME", "TEL1", "TEL2", "MEMO1"};
constexpr std::array<const char*, 5> kHeadings = {"客戶編號", "客戶姓名", "電話一", "電話二", "備註"};

}  // namespace

CustomerGrid::CustomerGrid(QWidget* parent, std::vector<double> least_widths)
    : OperatorChoice(parent), least_widths_(std::move(least_widths)) {
  setObjectName("mfgCustom_H");
  QStringList headings;
  for (std::size_t column = 0; column < least_widths_.size(); ++column) {
    headings += QString(kHeadings[column]);
  }
  customers_ = new TextModel(headings, Qt::AlignLeft, this);
  SetUpGrid(*this, GridSelection::kRow);
  setModel(customers_);
}

void CustomerGrid::Fill(Connection& connection) {
  TextModel::Rows rows;
  for (Recordset customers = connection.Open(kSelectCustomers); !customers.AtEnd(); customers.MoveNext()) {
    QStringList& row = rows.emplace_back();
    for (std::size_t column = 0; column < least_widths_.size(); ++column) {
      row += QString::fromStdString(customers.Text(kFields[column]));
    }
  }
  customers_->SetTexts(std::move(rows));
  FitColumns(*this, *customers_, least_widths_);
}

void CustomerGrid::Append(const QStringList& customer) {
  customers_->Insert(customers_->rowCount(), customer);
  FitColumns(*this, *customers_, least_widths_);
  scrollToBottom();
}

void CustomerGrid::Replace(const QStringList& customer) {
  if (const int row = Find(customer[0]); row != -1) {
    customers_->Replace(row, customer);
    FitColumns(*this, *customers_, least_widths_);
  }
}

void CustomerGrid::Remove(const QString& number) {
  if (const int row = Find(number); row != -1) {
    customers_->Remove(row);
  }
}

void CustomerGrid::resizeEvent(QResizeEvent* event) {
  OperatorChoice::resizeEvent(event);
  FitColumns(*this, *customers_, least_widths_);
}

int CustomerGrid::Find(const QString& number) const {
  const TextModel::Rows& rows = customers_->Texts();
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const QStringList& row) { return row[0] == number; });
  return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

}  // namespace marlevo
