// Customer maintenance: adds, changes and deletes customers, lists what a customer bought, shows and deletes single
// purchase records. The customer grid is read from the table only when the window opens and kept in step afterwards.
#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <optional>
#include <string>

#include "customers/customer_store.h"

class QLabel;
class QLineEdit;

namespace marlevo {

class CustomerGrid;
class MessagePanel;
class RecordList;
class RecordTabs;

// Makes a list the current one, unless the operator, asked over `asker`, wants to keep the one that is there. Returns
// whether the list was taken.
using ListTaker = std::function<bool(QWidget* asker, CurrentList list)>;

class frmCustom : public QDialog {
  Q_OBJECT

 public:
  // Opens its own connection and keeps it as long as it lives. DatabaseError when the customers cannot be read.
  // `take_list` gets a purchase record that the operator wants back as the current list; without it the window has no
  // button for that.
  frmCustom(QWidget* parent, const std::string& connection_string, ListTaker take_list = {});

  // The number of the customer that was added last, if one was.
  const std::optional<std::string>& AddedLast() const { return added_last_; }

  void done(int result) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Change { kAdded = 1, kChanged = 2, kDeleted = 3 };

  void Form_Load();
  void Form_Unload();
  void SetUpWidgets();
  // Every text box takes no more than the file has room for.
  void LimitBoxes();
  // Shows in the grid what has just been done in the table with the customer in the text boxes.
  void UpdateCustomerGrid(Change change);
  void ForgetRecords();
  // Shows the tickets of a record and what they come to.
  void ShowRecord(PurchaseRecord record);

  void mfgCustom_H_Click(int row);
  void lstRecord_MouseDown();
  void txtCustom_No_KeyPress();
  void cmdAdd_Click();
  void cmdEdit_Click();
  void cmdDel_Click();
  void cmdClear_Click();
  void cmdDelRecord_Click();
  void cmdLoadRecord_Click();
  void cmdBackup_Click();
  void Command1_Click();
  void cmdExit_Click();

  // True when the box of the customer number is filled; otherwise a message asks for the number.
  bool HasNumber();
  std::string Number() const;
  std::array<QLineEdit*, kCustomerFields> Boxes() const;
  // The customer whom the five text boxes describe.
  Customer Entered() const;

  std::string connection_string_;
  ListTaker take_list_;
  CustomerStore store_;
  std::optional<std::string> added_last_;
  CustomerGrid* mfgCustom_H_;
  QLineEdit* txtCustom_No_;
  QLineEdit* txtCustom_Name_;
  QLineEdit* txtTEL1_;
  QLineEdit* txtTEL2_;
  QLineEdit* txtMemo1_;
  RecordList* lstRecord_;
  QLabel* lblSum_;
  RecordTabs* SSTab1_;
  MessagePanel* picMsg_;
};

}  // namespace marlevo
