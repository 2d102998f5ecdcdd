// The grid mfgCustom_H: the customers, as every customer window shows them.
#pragma once

#include <QString>
#include <QTableView>
#include <string_view>
#include <vector>

#include "customers/customer_statements.h"
#include "ui/choosing_view.h"
#include "ui/text_model.h"

namespace marlevo {

// What of the customers is shown.
enum class CustomerColumns {
  kAll,            // all five fields, each column as wide as its texts need; only a press, Enter or Space chooses
  kNumberAndName,  // two columns of fifteen "W" each; moving chooses
};

class CustomerGrid : public ChoosingView<QTableView> {
  Q_OBJECT

 public:
  CustomerGrid(QWidget* parent, CustomerColumns columns);

  void Show(std::vector<Customer> customers);

  const Customer& At(int row) const { return customers_[row]; }
  // The row of a customer, found by its number, letter for letter; -1 when there is none.
  int Find(std::string_view number) const;

  // These keep the grid in step with the table. What is added or replaced is highlighted; after a removal nothing is.
  // Nothing happens when there is no such row.
  void Append(const Customer& customer);
  void Replace(const Customer& customer);
  void Remove(std::string_view number);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QStringList Texts(const Customer& customer) const;
  void SetWidths();

  CustomerColumns columns_;
  std::vector<Customer> customers_;
  TextModel* texts_;
};

}  // namespace marlevo
