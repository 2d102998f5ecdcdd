#include "board/digit_box.h"

#include <QKeyEvent>
#include <QPainter>

#include "board/growth.h"
#include "ui/style.h"

namespace marlevo {

namespace {

// With all ten columns and all rows the board still fits into a window of 800 x 400.
constexpr QSize kSmallest(22, 19);
constexpr QSize kAction(34, 32);
constexpr QSize kComfortable(56, 40);
constexpr double kDigitSize = 1.5;  // times the size of the board's other texts
// In heights of those texts:
constexpr double kMarkSize = 0.6;
constexpr double kSmallMarkSize = 0.43;  // in narrow cells, where the other would cover the digit
constexpr double kNarrow = 1.8;

}  // namespace

DigitBox::DigitBox(QWidget* parent, const QString& name, const QString& caption, Kind kind)
    : QCheckBox(caption, parent), kind_(kind) {
  setObjectName(name);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAttribute(Qt::WA_Hover);
}

QSize DigitBox::sizeHint() const {
  return kind_ == Kind::kDigit ? kComfortable : kAction;
}

QSize DigitBox::minimumSizeHint() const {
  return kSmallest;
}

bool DigitBox::hitButton(const QPoint& position) const {
  return rect().contains(position);
}

void DigitBox::nextCheckState() {
  if (kind_ == Kind::kDigit) {
    QCheckBox::nextCheckState();
  }
}

void DigitBox::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space) {
    QCheckBox::keyPressEvent(event);
  } else {
    event->ignore();
  }
}

void DigitBox::focusInEvent(QFocusEvent* event) {
  QCheckBox::focusInEvent(event);
  Q_EMIT GotFocus();
}

void DigitBox::paintEvent(QPaintEvent*) {
  const bool on = isChecked();
  const bool pressed = isDown();
  const QColor paper(kind_ == Kind::kDigit ? colours::kPanel : colours::kGround);
  const QColor fill = on                        ? QColor(pressed ? colours::kAccentDark : colours::kAccent)
                      : pressed || underMouse() ? QColor(colours::kAccentPale)
                                                : paper;

  QPainter painter(this);
  // Boxes are square, as on the slip, and two filled rectangles each: rounded outlines would take a third of the time
  // in which the board is painted.
  painter.fillRect(rect(), QColor(on ? colours::kAccentDark : colours::kLine));
  painter.fillRect(rect().adjusted(1, 1, -1, -1), fill);
  if (hasFocus()) {
    DrawFocusRing(painter, rect(), on);
  }
  if (kind_ == Kind::kDigit) {
    QFont large = Grown(font(), kDigitSize);
    large.setWeight(on ? QFont::Bold : QFont::Normal);
    painter.setFont(large);
  }
  if (on) {
    const double text = fontMetrics().height();
    const double size = text * (width() < kNarrow * text ? kSmallMarkSize : kMarkSize);
    DrawCheckMark(painter, QRectF(width() - size - 2, 2, size, size), Qt::white, 2);
  }
  painter.setPen(on ? QColor(Qt::white) : QColor(kind_ == Kind::kDigit ? colours::kText : colours::kFaintText));
  painter.drawText(rect(), Qt::AlignCenter, text());
}

}  // namespace marlevo
