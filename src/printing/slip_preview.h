// The picture of a slip in the calibration window: the paper to scale between two millimetre rulers, all boxes of the
// slip as outlines, the sample marks filled, and what one value measures in colour.
#pragma once

#include <QWidget>
#include <optional>

#include "platform/printer/printer.h"
#include "printing/slip_marks.h"
#include "printing/slip_settings.h"

namespace marlevo {

class SlipPreview : public QWidget {
  Q_OBJECT

 public:
  // Named picPreview; empty at first.
  explicit SlipPreview(QWidget* parent);

  void ShowSlip(SlipType type, const SlipPrinterSettings& settings, PaperSize paper);
  // Field 0 to 11, or -1 for none.
  void Highlight(int field);
  // Shows the part of the paper with the boxes as large as it goes, or the whole paper.
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

  // The part of the paper to show, in twips.
  QRectF View() const;

  std::optional<Slip> slip_;
  int field_ = -1;
  bool zoomed_ = false;
};

}  // namespace marlevo
