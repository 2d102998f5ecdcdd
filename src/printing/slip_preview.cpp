#include "printing/slip_preview.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "printing/slip_sample.h"
#include "ui/appearance.h"

namespace marlevo {

namespace {

constexpr int kRuler = 30;  // pixels, for the ticks and the numbers of millimetres
constexpr int kSpace = 6;
constexpr QRgb kHighlight = 0xffd9480f;
constexpr QRgb kOutline = 0xff8fa3b5;

std::vector<QRectF> Rects(const std::vector<Mark>& marks) {
  std::vector<QRectF> rects;
  for (const Mark& mark : marks) {
    if (!FitsAnyPaper(mark)) {
      continue;
    }
    rects.push_back(QRectF(mark.x, mark.y, mark.width, mark.height).normalized());
  }
  return rects;
}

void DrawRects(QPainter& painter, const std::vector<QRectF>& rects) {
  painter.drawRects(rects.data(), static_cast<int>(rects.size()));
}

// Draws the ruler along the upper or the left edge of `page`, the part of the paper that is shown; `first_mm` is where
// this part begins on the paper.
void DrawRuler(QPainter& painter, const QRectF& page, double first_mm, double pixels_per_mm,
               Qt::Orientation orientation) {
  constexpr double kClosest = 3;  // pixels between two ticks
  const bool horizontal = orientation == Qt::Horizontal;
  const double length = horizontal ? page.width() : page.height();
  const double edge = (horizontal ? page.top() : page.left()) - 2;
  const int step = pixels_per_mm < kClosest ? 5 : 1;
  const int numbers = pixels_per_mm < kClosest ? 20 : 10;
  QFont font = painter.font();
  font.setPixelSize(11);
  painter.setFont(font);
  painter.setPen(QPen(QColor::fromRgb(colours::kFaintText), 0));
  for (int mm = static_cast<int>(std::ceil(first_mm / step)) * step; (mm - first_mm) * pixels_per_mm <= length;
       mm += step) {
    const double along = (mm - first_mm) * pixels_per_mm;
    const double at = (horizontal ? page.left() : page.top()) + along;
    const int tick = mm % 10 == 0 ? 9 : mm % 5 == 0 ? 6 : 3;
    painter.drawLine(horizontal ? QLineF(at, edge - tick, at, edge) : QLineF(edge - tick, at, edge, at));
    if (mm % numbers == 0 && along + 8 <= length) {
      const QRectF number = horizontal ? QRectF(at - 20, edge - 26, 40, 16) : QRectF(edge - 36, at - 8, 25, 16);
      painter.drawText(number, horizontal ? Qt::AlignCenter : Qt::AlignRight | Qt::AlignVCenter, QString::number(mm));
    }
  }
}

}  // namespace

SlipPreview::SlipPreview(QWidget* parent) : QWidget(parent) {
  setObjectName("picPreview");
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setMinimumSize(180, 240);
}

void SlipPreview::ShowSlip(SlipType type, const SlipPrinterSettings& settings, PaperSize paper) {
  slip_ = Slip{type, settings, paper};
  update();
}

void SlipPreview::Highlight(int field) {
  field_ = field;
  update();
}

QSize SlipPreview::sizeHint() const {
  return {470, 620};
}

void SlipPreview::Zoom(bool zoomed) {
  zoomed_ = zoomed;
  update();
}

QRectF SlipPreview::View() const {
  const QRectF paper(0, 0, slip_->paper.width, slip_->paper.height);
  if (!zoomed_) {
    return paper;
  }
  constexpr double kAround = 10 * kTwipsPerMillimetre;
  QRectF boxes;
  for (const QRectF& box : Rects(SlipBoxes(slip_->type, slip_->settings))) {
    boxes |= box;
  }
  const QRectF view = boxes.adjusted(-kAround, -kAround, kAround, kAround) & paper;
  return view.isEmpty() ? paper : view;
}

void SlipPreview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), QColor::fromRgb(colours::kGround));
  if (!slip_) {
    painter.setPen(QColor::fromRgb(colours::kFaintText));
    painter.drawText(rect(), Qt::AlignCenter, "按「預  覽」看黑點的位置");
    return;
  }
  const QRectF view = View();
  const double pixels_per_twip =
      std::min((width() - kRuler - kSpace) / view.width(), (height() - kRuler - kSpace) / view.height());
  const QSizeF size = view.size() * pixels_per_twip;
  const QRectF page(QPointF(kRuler + (width() - kRuler - kSpace - size.width()) / 2, kRuler), size);
  painter.fillRect(page, Qt::white);
  painter.setPen(QPen(QColor::fromRgb(colours::kLine), 0));
  painter.drawRect(page);
  DrawRuler(painter, page, view.left() / kTwipsPerMillimetre, kTwipsPerMillimetre * pixels_per_twip, Qt::Horizontal);
  DrawRuler(painter, page, view.top() / kTwipsPerMillimetre, kTwipsPerMillimetre * pixels_per_twip, Qt::Vertical);

  painter.setClipRect(page);
  painter.translate(page.topLeft() - view.topLeft() * pixels_per_twip);
  painter.scale(pixels_per_twip, pixels_per_twip);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor highlight = QColor::fromRgb(kHighlight);
  painter.setPen(QPen(highlight, 0));
  highlight.setAlphaF(0.25F);
  painter.setBrush(highlight);
  DrawRects(painter, Rects(FieldAreas(field_, slip_->type, slip_->settings)));

  painter.setPen(QPen(QColor::fromRgb(kOutline), 0));
  painter.setBrush(Qt::NoBrush);
  DrawRects(painter, Rects(SlipBoxes(slip_->type, slip_->settings)));
  DrawPage(painter, SampleSlip(slip_->type, slip_->settings));
}

}  // namespace marlevo
