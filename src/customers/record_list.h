// The list lstRecord: the purchase records of one customer, a line each.
#pragma once

#include <QListWidget>
#include <functional>
#include <string>
#include <vector>

#include "customers/purchase_record.h"
#include "ui/choosing_view.h"

namespace marlevo {

class RecordList : public ChoosingView<QListWidget> {
  Q_OBJECT

 public:
  explicit RecordList(QWidget* parent);

  // `pressed` is called when a record is chosen and at a left press beside the lines.
  void OnPressed(const std::function<void()>& pressed);

  // Empties the list and remembers the customer number that it is for.
  void Begin(const std::string& number);
  void Show(const std::vector<RecordSummary>& records);
  // Empties the list and forgets the customer number.
  void Clear() { Begin({}); }

  // The customer number that Begin was called with last.
  const std::string& Number() const { return number_; }
  // The text of the selected line; empty when no line is selected.
  QString SelectedLine() const;
  // How many tickets the selected record has; 0 when no line is selected.
  int SelectedTickets() const;
  // Afterwards no line is selected.
  void RemoveSelectedLine();

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  std::string number_;
  std::function<void()> pressed_ = [] {};
};

}  // namespace marlevo
