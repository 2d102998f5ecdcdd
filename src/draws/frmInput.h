// The register of drawn numbers: one row per draw. Every change is written at once and mirrored in the grid, which is
// read from the table only when the window opens.
#pragma once

#include <QDialog>
#include <array>
#include <string>

#include "draws/draw_statements.h"
#include "platform/database/connection.h"

class QKeyEvent;
class QLineEdit;
class QTableView;

namespace marlevo {

class DigitList;
class TextModel;
template <typename View>
class OperatorChoice;

class frmInput : public QDialog {
  Q_OBJECT

 public:
  // Opens its own connection and keeps it as long as it lives. DatabaseError when the register cannot be read.
  frmInput(QWidget* parent, const std::string& connection_string);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Change { kAdded = 1, kChanged = 2, kDeleted = 3 };

  void SetUpWidgets();
  void SetupDrawGrid();
  void LoadDrawResults();
  void UpdateDrawGrid(Change change);

  void cmdAdd_Click();
  void cmdEdit_Click();
  void cmdDel_Click();
  void mfgNumeric_RowChosen(int row);
  // True when the key is to be discarded.
  static bool txtVou_No_KeyPress(const QKeyEvent& event);

  // True when a draw number is entered; otherwise it is asked for.
  bool HasNumber();
  bool DrawExists();
  std::string Number() const;
  DrawnDigits Digits() const;

  Connection connection_;
  QLineEdit* txtVou_No_;
  std::array<DigitList*, 4> cboCheck_{};
  OperatorChoice<QTableView>* mfgNumeric_;
  TextModel* draws_;
};

}  // namespace marlevo
