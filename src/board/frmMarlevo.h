// The main window, called the board: turns picks into tickets, filters and checks the tickets, and hands them to the
// windows that print and store them. It owns the current ticket list. Closing it ends the program.
#pragma once

#include <QPushButton>
#include <QWidget>
#include <functional>

#include "board/selection.h"
#include "tickets/tickets.h"
#include "tickets/totals.h"

class QGridLayout;
class QLabel;
class QScrollArea;
class QVBoxLayout;

namespace marlevo {

class ButtonBar;
class DigitPanel;
class KindRows;
class ResultPanel;

// Makes a list that was stored the board's current list; see frmMarlevo::ShowStoredList.
using StoredListShower = std::function<bool(QWidget* asker, CurrentList list)>;

// The windows that the board opens. Each function shows its window modally over `parent` and returns when the window
// has closed. The button of an empty function is disabled.
struct BoardWindows {
  std::function<void(QWidget* parent, const StoredListShower& show_stored_list)> customers;
  std::function<void(QWidget* parent)> draws;
  std::function<void(QWidget* parent)> print_note;
  std::function<void(QWidget* parent)> set_printer;
  std::function<void(QWidget* parent, const CurrentList& list)> save;
  std::function<void(QWidget* parent, const CurrentList& list)> print;
  // What is wrong with the database, and what to do about it; empty when it can be opened.
  std::function<QString()> database_problem;
  // Loads the slip settings of the four-digit slip at the start.
  std::function<void()> load_slip_settings;
};

class frmMarlevo : public QWidget {
  Q_OBJECT

 public:
  static constexpr QSize kComfortable{1304, 800};  // of the window, on a screen with room for it

  explicit frmMarlevo(BoardWindows windows);

  // Makes the whole board, looks whether there is a database, and then loads the slip settings. To be called once,
  // before the window is shown. Throws when the settings cannot be loaded; the board is complete then and can be used.
  void Form_Load();

  // Makes `list` the current list and turns to the result stage, with the totals as after a filter. Kinds that are not
  // ticked in `list` keep their amounts; the picked digits stay. When there is a list already, asks over `asker` first
  // and returns false, nothing changed, unless the operator wants to replace it. The amounts are among kAmounts; the
  // multipliers follow them, because a stored list has none.
  bool ShowStoredList(QWidget* asker, CurrentList list);

 Q_SIGNALS:
  // The window has been closed.
  void Unloaded();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  using Expand = TicketCounts (*)(const Selection&, CurrentList&);
  using Filter = void (*)(CurrentList&);

  void Form_Paint();
  void Form_Unload();
  void cmdCombine_Click();
  void Command1_Click();
  void Command2_Click();
  void cmdClear_Click();
  void cmdCustom_Click();
  void cmdInput_Click();
  void cmdSetPrinter_Click();
  void cmdPrintNote_Click();
  void cmdExit_Click();
  void cmdList_Click();
  void cmdPrint_Click();
  void cmdDelete_Click();
  void cmdSave_Click();
  void cmdCheck_Click();
  void cmdCheck2_Click();
  void cmdBack_Click();
  void cmdDel1_Click();
  void cmdDel2_Click();
  void cmdDel3_Click();
  void cmdDel4_Click();
  void cmdDel5_Click();
  void cmdDel6_Click();
  void cmdBack2_Click();

  void InitBoard();
  // Makes the board that many times as large; see board/growth.h.
  void SetGrowth(double growth);
  ButtonBar* NewSelectionBar();
  ButtonBar* NewListBar();
  ButtonBar* NewResultBar();
  ButtonBar* NewFilterBar();

  // Validates the picks, expands them and turns to the result stage; or says what is missing.
  void ExpandPicks(Expand expand);
  void ShowResultStage();
  // Turns to the result stage with the current list as it is.
  void ShowList();
  void ClearTicketGrids();
  void WriteTotals(const TicketCounts& counts);
  void RunFilter(Filter filter);
  Selection ReadPicks();
  // Writes which kinds are ticked, their amounts and their multipliers into the current list.
  const CurrentList& ReadList();
  void CheckDatabase();
  void WriteHint();
  // Shows one bar in place of the others; the way back to the list comes and goes with the bar of the selection stage.
  void ShowBar(ButtonBar* bar);

  BoardWindows windows_;
  CurrentList list_;
  QString problem_;  // of the database, as it was last looked at

  double growth_ = 1;
  QScrollArea* scroll_ = nullptr;
  QWidget* picMain_ = nullptr;
  QWidget* picBox1_ = nullptr;
  ResultPanel* picBox2_ = nullptr;
  ButtonBar* picMenu1_ = nullptr;
  ButtonBar* picMenu2_ = nullptr;
  ButtonBar* picMenu3_ = nullptr;
  ButtonBar* picMenu4_ = nullptr;
  KindRows* kinds_ = nullptr;
  QScrollArea* kinds_part_ = nullptr;
  DigitPanel* digits_ = nullptr;
  QPushButton* cmdCheck_ = nullptr;
  QVBoxLayout* side_ = nullptr;  // of kinds_; its lowest part is left to the bar
  QGridLayout* title_ = nullptr;
  ButtonBar* bar_ = nullptr;  // the one that is shown
  QLabel* lblCaption_ = nullptr;
  QLabel* lblHint_ = nullptr;
};

}  // namespace marlevo
