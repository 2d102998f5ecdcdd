// The result stage of the board: a page with a ticket grid for each kind, under it the area of the instant prize check,
// and beside them the totals text. The list that it shows belongs to the board.
#pragma once

#include <QListWidget>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTableView>
#include <QWidget>
#include <array>
#include <string>

#include "board/ticket_model.h"
#include "tickets/tickets.h"
#include "ui/widgets.h"

class QVBoxLayout;

namespace marlevo {

class ResultPanel : public QWidget {
  Q_OBJECT

 public:
  // `list` outlives the panel.
  ResultPanel(QWidget* parent, const CurrentList& list);

  // Makes the panel that many times as large; see board/growth.h. `side_width`: width of the totals text.
  void SetGrowth(double growth, int side_width);

  // Leaves this height under the totals text empty: a button bar of the board stands there. 0 when none does.
  void KeepFree(int height);

  // Shows what the lists hold now.
  void RefreshGrids();
  // Enables the pages of the ticked kinds, disables the others, and turns to the first enabled one.
  void ShowTickedPages();
  // Shows the colours of the tickets and brings the first winner of each kind into view.
  void RefreshPaint();

  void SetTotals(const std::string& text);

  // The grid that can be seen.
  QWidget* CurrentGrid() const { return SSTab1_->currentWidget(); }
  QWidget* CheckArea() const { return picCheck_; }
  QPushButton* CheckButton() const { return cmdCheck2_; }
  // The digits that the four lists of the instant prize check show.
  std::array<int, 4> DrawnDigits() const;
  void ShowCheckLines(const std::vector<std::string>& lines);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void AddGrid(int kind);
  // The columns of digits share the width that there is, between two limits.
  void FitColumns();
  QWidget* NewCheckArea();

  const CurrentList& list_;
  QTabWidget* SSTab1_;
  PerKind<QTableView*> mfgData_{};
  PerKind<TicketModel*> models_{};
  QVBoxLayout* side_;
  QPlainTextEdit* txtCombineMessage_;
  QWidget* picCheck_;
  std::array<DropDownList*, 4> cboCheck_{};
  QPushButton* cmdCheck2_ = nullptr;
  QListWidget* lstCheck_ = nullptr;
};

}  // namespace marlevo
