// The calibration window: where the marks of each slip type lie, tried out on the screen and on paper, then saved.
#pragma once

#include <QDialog>
#include <array>
#include <filesystem>

#include "printing/slip_marks.h"
#include "printing/slip_settings.h"

class QCheckBox;
class QLabel;
class QLayout;
class QLineEdit;
class QRadioButton;

namespace marlevo {

class SlipPreview;

class frmSetPrinter : public QDialog {
  Q_OBJECT

 public:
  // Opens with the four-digit slip. `settings_folder`: where the files of the slip settings lie. Prints on the default
  // printer. Edits go into SlipSettings() at once, into the file only by saving.
  frmSetPrinter(QWidget* parent, std::filesystem::path settings_folder);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Form_Load();
  void opPlay3_Click();
  void opPlay4_Click();
  // Enter and Down lead from one box to the next, Up to the one before. True when the key is used up.
  bool txtInput_KeyDown(int key);
  void txtInput_KeyUp(int index);
  void txtInput_GotFocus(int index);
  void chkZoom_Click();
  void cmdPreview_Click();
  void cmdPrint_Click();
  void cmdSave_Click();
  void cmdCancel_Click();

  QLayout* NewBoxes();
  QLayout* NewReference();
  QLayout* NewButtons();
  // Loads the settings of a slip type and shows them, also when it is already chosen: that takes unsaved edits back.
  // The type chosen before stays chosen when its file cannot be read.
  void ChooseType(SlipType type);
  QRadioButton* OptionOf(SlipType type) const;
  // Says what the value of a box measures, in words, and in colour on the preview.
  void Explain(int index);
  // Draws the preview again, once it has been asked for.
  void RefreshPreview();

  std::filesystem::path settings_folder_;
  SlipType type_ = SlipType::kFourDigit;
  bool previewed_ = false;
  int explained_ = -1;
  QRadioButton* opPlay4_;
  QRadioButton* opPlay3_;
  std::array<QLineEdit*, kSlipFields> txtInput_;
  SlipPreview* picPreview_;
  QCheckBox* chkZoom_;
  QLabel* lblField_;
};

}  // namespace marlevo
