// Saves the current ticket list as one purchase record of a customer: a row per ticket of every ticked kind, all under
// one stamp. The list itself is only read.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "customers/customer_store.h"
#include "tickets/tickets.h"

class QLabel;

namespace marlevo {

class CustomerGrid;
class MessagePanel;

class frmSave : public QDialog {
  Q_OBJECT

 public:
  // Opens its own connection and keeps it as long as it lives, except for visits to customer maintenance. DatabaseError
  // when the customers cannot be read. `list` outlives the window.
  frmSave(QWidget* parent, const std::string& connection_string, const CurrentList& list);

  void done(int result) override;

 private:
  void Form_Load();
  void Form_Unload();
  void SetUpWidgets();
  // Reads the customers. The current one becomes the first number of `wanted` that a customer has, or, when none of
  // them is found, the first customer.
  void LoadCustomers(const std::vector<std::string>& wanted);

  // Writes a line as wide as the window; a longer one ends in "…", and its tooltip has it whole.
  void Say(QLabel& line, const QString& text);

  void mfgCustom_H_Click();
  void cmdPrint_Click();
  void cmdCustom_Click();
  void cmdCancel_Click();

  // The number of the current customer, under which a save is stored. Without any customer the heading row counts as
  // current, and its text "客戶編號" is the number.
  std::string CurrentNumber() const;
  // The current customer as the operator reads it: number and name.
  QString CurrentCustomer() const;

  std::string connection_string_;
  CustomerStore store_;
  const CurrentList& list_;
  CustomerGrid* mfgCustom_H_;
  QLabel* lblCustom_;
  QLabel* lblSaved_;
  MessagePanel* picMsg_;
};

}  // namespace marlevo
