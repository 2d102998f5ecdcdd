// The window that prints blank memo sheets for package bets, four to a page.
#pragma once

#include <QDialog>

class QComboBox;

namespace marlevo {

class frmPrintNote : public QDialog {
  Q_OBJECT

 public:
  // Prints on the default printer.
  explicit frmPrintNote(QWidget* parent);

 private:
  void Form_Load();
  void SetUpWidgets();
  void cmdPrint_Click();
  void cmdCancel_Click();

  QComboBox* cboPage_;
};

}  // namespace marlevo
