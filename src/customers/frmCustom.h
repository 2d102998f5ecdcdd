// Customer maintenance: adds, changes and deletes customers, lists what a customer bought, shows and deletes single
// purchase records. The customer grid is read from the table only when the window opens and kept in step afterwards.
#pragma once

#include <QDialog>
#include <string>

#include "customers/customer_statements.h"
#include "platform/database/connection.h"

class QLineEdit;

namespace marlevo {

class CustomerGrid;
class MessagePanel;
class RecordList;
class RecordTabs;

class frmCustom : public QDialog {
  Q_OBJECT

 public:
  // Opens its own connection and keeps it as long as it lives. DatabaseError when the customers cannot be read.
  frmCustom(QWidget* parent, const std::string& connection_string);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void SetUpWidgets();

  void mfgCustom_H_Click(int row);
  void lstRecord_MouseDown();
  void txtCustom_No_KeyPress();
  void cmdAdd_Click();
  void cmdEdit_Click();
  void cmdDel_Click();
  void cmdDelRecord_Click();
  void Command1_Click();

  // True when a customer number is entered; otherwise it is asked for.
  bool HasNumber();
  bool CustomerExists();
  // The five text boxes.
  Customer Entered() const;
  QStringList EnteredTexts() const;

  std::string connection_string_;
  Connection connection_;
  CustomerGrid* mfgCustom_H_;
  QLineEdit* txtCustom_No_;
  QLineEdit* txtCustom_Name_;
  QLineEdit* txtTEL1_;
  QLineEdit* txtTEL2_;
  QLineEdit* txtMemo1_;
  RecordList* lstRecord_;
  RecordTabs* SSTab1_;
  MessagePanel* picMsg_;
};

}  // namespace marlevo
