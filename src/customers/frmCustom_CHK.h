// The customers' prize check: compares stored tickets with a drawn number that the operator sets by hand and lists
// every winning ticket with its customer, prize class and prize.
#pragma once

#include <QDialog>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "customers/customer_store.h"
#include "ui/choosing_view.h"

class QLineEdit;
class QListView;
class QRadioButton;
class QStringListModel;

namespace marlevo {

class CustomerGrid;
class DigitList;
class RecordList;

class frmCustom_CHK : public QDialog {
  Q_OBJECT

 public:
  // Opens its own connection and keeps it as long as it lives. DatabaseError when the customers cannot be read.
  frmCustom_CHK(QWidget* parent, const std::string& connection_string);

  void done(int result) override;

 private:
  void Form_Load();
  void Form_Unload();
  void SetUpWidgets();

  void mfgCustom_H_Click(int row);
  void lstCheck_Click(int row);
  void cmdCheck2_Click();
  void cmdExit_Click();

  // Shows the number and the records of a customer.
  void ShowCustomer(const std::string& number);
  // Which tickets the operator wants checked. Nothing when a customer or a record has to be chosen first; a notice has
  // then said so.
  std::optional<CheckScope> ChosenScope();

  CustomerStore store_;
  CustomerGrid* mfgCustom_H_;
  QLineEdit* txtCustom_No_;
  RecordList* lstRecord_;
  std::array<DigitList*, 4> cboCheck_{};
  std::array<QRadioButton*, 3> Option1_{};
  ChoosingView<QListView>* lstCheck_;
  std::vector<Winner> winners_;
  QStringListModel* lines_;  // of the winners
};

}  // namespace marlevo
