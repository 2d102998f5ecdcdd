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

// Which fields of the customers the grid shows.
enum class CustomerColumns {
  kAll,            // all five fields, each column as wide as its texts need; only a press, Enter or Space chooses
  kNumberAndName,  // two columns of fifteen "W" each; moving chooses
};

class CustomerGrid : public ChoosingView<QTableView> {
  Q_OBJECT

 public:
  CustomerGrid(QWidget* parent, CustomerColumns columns);

  void Show(std::vector<Customer> customers);

  const std::vector<Customer>& Customers() const { return customers_; }
  const Customer& At(int row) const { return customers_[row]; }
  // The row of a customer, found by its number, letter for letter; -1 when there is none.
  int Find(std::string_view number) const;

  // Frames the row that a search has found, makes it the current line and brings it into view, but chooses nothing; -1
  // frames none. The frame goes with the next change of the rows.
  void ShowFound(int row);
  // The framed row; -1 when there is none.
  int FoundRow() const { return found_; }

  // Append, Replace and Remove keep the grid in step with the table. A row that is added or replaced is highlighted
  // afterwards; after a removal no row is. Replace and Remove do nothing when no row has this number.
  void Append(const Customer& customer);
  void Replace(const Customer& customer);
  void Remove(std::string_view number);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QStringList Texts(const Customer& customer) const;
  void SetWidths();

  CustomerColumns columns_;
  std::vector<Customer> customers_;
  TextModel* texts_;
  int found_ = -1;
};

}  // namespace marlevo
