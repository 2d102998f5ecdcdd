// The grid mfgCustom_H: the customers, as every customer window shows them.
#pragma once

#include <QStringList>
#include <QTableView>
#include <vector>

#include "platform/database/connection.h"
#include "ui/operator_choice.h"
#include "ui/text_model.h"

namespace marlevo {

class CustomerGrid : public OperatorChoice<QTableView> {
  Q_OBJECT

 public:
  // Shows the first `least_widths.size()` of number, name, two telephones and remark, each column at least so many
  // times as wide as "W" and wide enough for every text.
  CustomerGrid(QWidget* parent, std::vector<double> least_widths);

  // Reads all customers in the order of their numbers.
  void Fill(Connection& connection);

  const QStringList& Row(int row) const { return customers_->Texts()[static_cast<std::size_t>(row)]; }

  // These keep the grid in step with the table. The row is found by its number, letter for letter; nothing happens when
  // it is not there.
  void Append(const QStringList& customer);
  void Replace(const QStringList& customer);
  void Remove(const QString& number);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  // -1 when there is none.
  int Find(const QString& number) const;

  std::vector<double> least_widths_;
  TextModel* customers_;
};

}  // namespace marlevo
