// The calibration window: the operator edits where the marks of a slip type lie, tries the values out on the screen and
// on paper, and saves them.
#pragma once

#include <QDialog>
#include <array>
#include <filesystem>

#include "printing/slip_settings.h"
#include "printing/slip_type.h"

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
  // Opens with the four-digit slip; throws FileError when its settings cannot be loaded. `settings_folder` holds the
  // files of the slip settings. Edits go into SlipSettings() at once and into the file only by saving. The window
  // prints on the default printer.
  frmSetPrinter(QWidget* parent, std::filesystem::path settings_folder);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Form_Load();
  void SetUpWidgets();
  void opPlay3_Click();
  void opPlay4_Click();
  // Enter and Down move the focus to the next box, Up to the one before. True when the key moved the focus.
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
  // Draws the preview again if the operator has asked for it before.
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
