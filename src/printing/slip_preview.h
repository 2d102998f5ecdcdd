// The picture of a slip in the calibration window: the paper to scale between two millimetre rulers, the boxes of the
// slip as outlines, the marks of the sample slip filled, and in colour what the value of one field measures.
#pragma once

#include <QWidget>
#include <optional>

#include "platform/printer/printer.h"
#include "printing/slip_settings.h"
#include "printing/slip_type.h"

namespace marlevo {

class SlipPreview : public QWidget {
  Q_OBJECT

 public:
  // Named picPreview. Shows a hint until ShowSlip is called.
  explicit SlipPreview(QWidget* parent);

  void ShowSlip(SlipType type, const SlipPrinterSettings& settings, PaperSize paper);
  // Colours what the value of the field (0 to 11) measures; -1 colours nothing.
  void Highlight(int field);
  // Shows only the part of the paper that has the boxes, enlarged, or the whole paper.
  void Zoom(bool zoomed);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Slip {
    SlipType type;
    SlipPrinterSettings settings;
    PaperSize paper;
  };

  // The part of the paper that is shown, in twips.
  QRectF View() const;

  std::optional<Slip> slip_;
  int field_ = -1;
  bool zoomed_ = false;
};

}  // namespace marlevo
