// The look of all windows: Fusion with flat buttons, tabs, lists and grids. The look is drawn by code, because Qt would
// match the rules of a style sheet against each of the board's two hundred widgets at the start.
#pragma once

#include <QPalette>
#include <QProxyStyle>

namespace marlevo {

class WindowStyle : public QProxyStyle {
  Q_OBJECT

 public:
  WindowStyle() : QProxyStyle("Fusion") {}

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
};

// Light in every system theme: slips and grids are read beside white paper.
QPalette WindowPalette();
// The palette of a button that is the main action of its bar.
QPalette MainButtonPalette();

// The ring of the focus inside the edges of `rect`; `dark`: inside it lies a dark fill, from which a white line keeps
// the ring apart.
void DrawFocusRing(QPainter& painter, const QRect& rect, bool dark);

// A check mark inside `box`, as tick boxes of every kind draw it.
void DrawCheckMark(QPainter& painter, const QRectF& box, const QColor& colour, double thickness);

}  // namespace marlevo
