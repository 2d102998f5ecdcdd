// The list lstRecord: the purchase records of one customer, a line each.
#pragma once

#include <QListWidget>
#include <QString>
#include <string>

#include "platform/database/connection.h"
#include "ui/operator_choice.h"

namespace marlevo {

class RecordList : public OperatorChoice<QListWidget> {
  Q_OBJECT

 public:
  explicit RecordList(QWidget* parent);

  // Reads the records of a customer, in the order in which the database gives them, and remembers the customer number.
  // Records without a stamp are not listed.
  void Fill(Connection& connection, const std::string& number);
  // Forgets the customer number too.
  void Clear();

  // The customer number that the list was filled for.
  const std::string& Number() const { return number_; }
  // Empty when no line is selected.
  QString SelectedLine() const;
  // No line is selected afterwards.
  void RemoveSelectedLine();

 private:
  std::string number_;
};

}  // namespace marlevo
