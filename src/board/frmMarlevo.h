// The main window: picks become tickets, the tickets are thinned out, checked, and handed to the windows that print and
// store them. It owns the current ticket list. Closing it ends the program.
#pragma once

#include <QPushButton>
#include <QWidget>
#include <functional>

#include "board/selection.h"
#include "tickets/tickets.h"
#include "tickets/totals.h"

class QGridLayout;
class QLabel;

namespace marlevo {

class ButtonBar;
class DigitPanel;
class KindRows;
class ResultPanel;

// The windows that the board opens, each shown modally over `parent`; the call returns when it has closed. A button
// whose window is not there is disabled.
struct BoardWindows {
  std::function<void(QWidget* parent)> customers;
  std::function<void(QWidget* parent)> draws;
  std::function<void(QWidget* parent)> print_note;
  std::function<void(QWidget* parent)> set_printer;
  std::function<void(QWidget* parent, const CurrentList& list)> save;
  std::function<void(QWidget* parent, const CurrentList& list)> print;
  // Loads the slip settings of the four-digit slip at the start.
  std::function<void()> load_slip_settings;
};

class frmMarlevo : public QWidget {
  Q_OBJECT

 public:
  explicit frmMarlevo(BoardWindows windows);

  // To be called once, right after the window is shown: the screen makes room for it while it is filled. What is loaded
  // then may fail, and the error report stands over a board that can be used.
  void Form_Load();

 Q_SIGNALS:
  // The window has been closed.
  void Unloaded();

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  using Expand = TicketCounts (*)(const Selection&, CurrentList&);
  using Filter = void (*)(CurrentList&);

  void InitBoard();
  // Makes what is not needed to show the board, the extra columns and the result stage: right after the first painting,
  // or when it is asked for earlier.
  void InitHiddenParts();
  void AddBar(ButtonBar* bar);
  ButtonBar* NewSelectionBar();
  ButtonBar* NewResultBar();
  ButtonBar* NewFilterBar();

  void cmdCombine_Click();
  void Command1_Click();
  void Command2_Click();
  void cmdClear_Click();
  void cmdDelete_Click();
  void cmdBack2_Click();
  void cmdCheck_Click();
  void cmdCheck2_Click();
  void cmdBack_Click();
  void cmdSave_Click();
  void cmdPrint_Click();

  // Validates the picks, expands them and turns to the result stage; or says what is missing.
  void ExpandPicks(Expand expand);
  void RunFilter(Filter filter);
  Selection ReadPicks();
  // Takes the kinds' ticks, amounts and multipliers over into the current list.
  const CurrentList& ReadList();
  // Shows one bar in place of the others.
  void ShowBar(ButtonBar* bar);

  BoardWindows windows_;
  CurrentList list_;

  QWidget* picMain_;
  QGridLayout* grid_;
  QWidget* picBox1_;
  ResultPanel* picBox2_ = nullptr;
  ButtonBar* picMenu1_ = nullptr;
  ButtonBar* picMenu2_ = nullptr;
  ButtonBar* picMenu3_ = nullptr;
  KindRows* kinds_;
  DigitPanel* digits_;
  QPushButton* cmdCheck_ = nullptr;
  QLabel* lblHint_;
};

}  // namespace marlevo
