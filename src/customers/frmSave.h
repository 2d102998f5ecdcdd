// Saves the current ticket list as one purchase record of a customer: a row per ticket of every ticked kind, all under
// one stamp. The list itself is only read.
#pragma once

#include <QDialog>
#include <string>

#include "platform/database/connection.h"
#include "tickets/tickets.h"

namespace marlevo {

class CustomerGrid;
class MessagePanel;

class frmSave : public QDialog {
  Q_OBJECT

 public:
  // Opens its own connection and keeps it as long as it lives, except for visits to customer maintenance. DatabaseError
  // when the customers cannot be read. `list` outlives the window.
  frmSave(QWidget* parent, const std::string& connection_string, const CurrentList& list);

 private:
  void SetUpWidgets();
  void LoadCustomers();

  void cmdPrint_Click();
  void cmdCustom_Click();

  std::string connection_string_;
  Connection connection_;
  const CurrentList& list_;
  CustomerGrid* mfgCustom_H_;
  MessagePanel* picMsg_;
};

}  // namespace marlevo
