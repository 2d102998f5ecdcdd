// The result stage of the board: one page per kind with its ticket grid, and the area of the instant prize check under
// it; the totals text beside them. Shows a list that belongs to the board. The numbers of the tickets, column 0, are
// the fixed heads of the grid's rows.
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
  // `list` outlives the panel. `side_width`: of the totals.
  ResultPanel(QWidget* parent, const CurrentList& list, int side_width);

  // Keeps this height free under the totals, for a button bar; 0 for none.
  void KeepFree(int height);

  // Shows what the lists hold now.
  void RefreshGrids();
  // Makes the pages of the ticked kinds available, of the others not, and turns to the first ticked one.
  void ShowTickedPages();
  // Shows the colours of the tickets and brings the first winner of each kind into view.
  void RefreshPaint();

  void SetTotals(const std::string& text);

  // The grid of the page that shows.
  QWidget* CurrentGrid() const { return SSTab1_->currentWidget(); }
  QWidget* CheckArea() const { return picCheck_; }
  QPushButton* CheckButton() const { return cmdCheck2_; }
  std::array<std::string, 4> DrawnDigits() const;
  void ShowCheckLines(const std::vector<std::string>& lines);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void AddGrid(int kind);
  QWidget* NewCheckArea();

  const CurrentList& list_;
  QTabWidget* SSTab1_;
  std::array<QTableView*, kBetKinds> mfgData_{};
  std::array<TicketModel*, kBetKinds> models_{};
  QVBoxLayout* side_;
  QPlainTextEdit* txtCombineMessage_;
  QWidget* picCheck_;
  std::array<DropDownList*, 4> cboCheck_{};
  QPushButton* cmdCheck2_ = nullptr;
  QListWidget* lstCheck_ = nullptr;
};

}  // namespace marlevo
