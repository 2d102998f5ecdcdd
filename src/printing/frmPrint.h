// The print dialog: which tickets of the current list go onto slips.
#pragma once

#include <QDialog>
#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <vector>

#include "printing/print_choices.h"
#include "printing/slip_marks.h"
#include "tickets/tickets.h"

class QCheckBox;
class QFrame;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace marlevo {

class DropDownList;

class frmPrint : public QDialog {
  Q_OBJECT

 public:
  // `list` belongs to the caller and must not change while the window is open. `settings_folder` holds the files of the
  // slip settings. The window prints on the default printer.
  frmPrint(QWidget* parent, const CurrentList& list, std::filesystem::path settings_folder);

 private:
  // Slips of each type.
  using SlipCounts = std::map<SlipType, int, std::greater<>>;  // the four-digit slip comes first, as its kinds do

  struct KindRow {
    int kind;
    const KindList* list;
    QFrame* fraPlay;
    QCheckBox* chkPlay;
    QLineEdit* txtStart;
    QLineEdit* txtEnd;
    QLabel* lblMax;
    DropDownList* cboMD;
  };

  void Form_Load();
  void SetUpWidgets();
  void Option1_Click();
  void cmdPrint_Click();
  void cmdCancel_Click();
  // One job for each ticked kind, with the settings that its file holds when the job begins.
  void PrintSlips();
  // Says when how many slips of each type went to the printer.
  void ShowSent(const SlipCounts& slips);

  QWidget* NewHeading();
  KindRow NewKindRow(QWidget* parent, int kind);
  QLayout* NewButtons();

  std::array<KindChoice, kBetKinds> Choices() const;
  SlipOrder OrderOf(const KindRow& row) const;
  // Slips that the kind's job takes; 0 when the kind is not to be printed.
  int SlipsOf(const KindRow& row) const;
  // Tells the operator how many slips to have ready, or what is missing before anything is printed.
  void ShowSlipCount();

  const CurrentList& list_;
  std::filesystem::path settings_folder_;
  std::array<KindRow, kBetKinds> rows_;
  std::array<QRadioButton*, 2> Option1_;
  QCheckBox* chkPage_;
  QLabel* lblSlips_;
  QLabel* lblPrinter_;
  QLabel* lblSent_;
};

}  // namespace marlevo
