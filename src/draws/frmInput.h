// The register of drawn numbers: one row per draw. Every change is written at once and mirrored in the grid, which is
// read from the table only when the window opens.
#pragma once

#include <QDialog>
#include <array>
#include <string>

#include "draws/draw_store.h"

class QKeyEvent;
class QLineEdit;
class QTableView;

namespace marlevo {

class DigitList;
class TextModel;
template <typename View>
class ChoosingView;

class frmInput : public QDialog {
  Q_OBJECT

 public:
  // Opens its own connection and keeps it as long as it lives. DatabaseError when the register cannot be read.
  frmInput(QWidget* parent, const std::string& connection_string);

  void done(int result) override;

 protected:
  // Brings the newest draw into view, now that the grid has its size.
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Change { kAdded = 1, kChanged = 2, kDeleted = 3 };

  void Form_Load();
  void Form_Unload();
  void SetUpWidgets();
  void SetupDrawGrid();
  void LoadDrawResults();
  void UpdateDrawGrid(Change change);

  void cmdAdd_Click();
  void cmdEdit_Click();
  void cmdDel_Click();
  void cmdExit_Click();
  void mfgNumeric_RowChosen(int row);
  void txtVou_No_GotFocus();
  // True when the key is to be discarded.
  static bool txtVou_No_KeyPress(const QKeyEvent& event);

  // True when the box of the draw number is filled; otherwise a message asks for the number.
  bool HasNumber();
  // The draw that the number box and the four digit lists describe.
  Draw Entered() const;

  DrawStore store_;
  QLineEdit* txtVou_No_;
  std::array<DigitList*, 4> cboCheck_{};
  ChoosingView<QTableView>* mfgNumeric_;
  TextModel* draws_;
};

}  // namespace marlevo
