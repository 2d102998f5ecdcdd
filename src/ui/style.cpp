#include "ui/style.h"

#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStyleOption>
#include <QTabBar>

#include "ui/appearance.h"

namespace marlevo {

namespace {

constexpr double kRadius = 4;

// A rounded box with a sharp outline: a line of one pixel has to run through the centres of pixels, half a pixel inside
// the rectangle.
void DrawBox(QPainter& painter, const QRect& rect, const QColor& fill, const QColor& line, double thickness = 1) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(fill);
  painter.setPen(QPen(line, thickness));
  const double inset = thickness / 2;
  painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), kRadius, kRadius);
}

enum Edge { kLeft = 1, kTop = 2, kRight = 4, kBottom = 8, kAllEdges = 15 };

// Lines inside the edges of a rectangle. They are filled rectangles, because half of a drawn line is cut off at a
// widget's edge on a scaled screen.
void DrawEdges(QPainter& painter, const QRect& rect, int edges) {
  const QColor line(colours::kLine);
  const auto fill = [&](Edge edge, int left, int top, int width, int height) {
    if (edges & edge) {
      painter.fillRect(left, top, width, height, line);
    }
  };
  fill(kLeft, rect.left(), rect.top(), 1, rect.height());
  fill(kTop, rect.left(), rect.top(), rect.width(), 1);
  fill(kRight, rect.right(), rect.top(), 1, rect.height());
  fill(kBottom, rect.left(), rect.bottom(), rect.width(), 1);
}

void DrawButtonPanel(QPainter& painter, const QStyleOption& option) {
  const bool enabled = option.state & QStyle::State_Enabled;
  QColor fill = option.palette.color(QPalette::Button);
  const bool emphasized = fill.lightness() < 128;
  QColor line = emphasized ? QColor(colours::kAccentDark) : QColor(colours::kLine);
  if (!enabled) {
    line = line.lighter(108);
  } else if (option.state & (QStyle::State_Sunken | QStyle::State_On)) {
    fill = emphasized ? QColor(colours::kAccentDark) : QColor(colours::kAccentPale).darker(106);
  } else if (option.state & QStyle::State_MouseOver) {
    fill = emphasized ? fill.lighter(115) : QColor(colours::kAccentPale);
  }
  const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  const bool is_default = button != nullptr && button->features & QStyleOptionButton::DefaultButton;
  DrawBox(painter, option.rect, fill, is_default ? QColor(colours::kAccent) : line, is_default ? 2 : 1);
}

void DrawTickBox(QPainter& painter, const QStyleOption& option) {
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool on = option.state & QStyle::State_On;
  const QColor accent = enabled ? QColor(colours::kAccent) : QColor(colours::kLine);
  const bool outlined = on || (enabled && option.state & QStyle::State_MouseOver);
  DrawBox(painter, option.rect, on ? accent : QColor(colours::kPanel), outlined ? accent : QColor(colours::kFaintText),
          1.4);
  if (on) {
    DrawCheckMark(painter, option.rect, Qt::white, 2.4);
  }
}

void DrawTab(QPainter& painter, const QStyleOptionTab& tab) {
  const bool selected = tab.state & QStyle::State_Selected;
  const bool enabled = tab.state & QStyle::State_Enabled;
  const bool hovered = enabled && !selected && tab.state & QStyle::State_MouseOver;
  painter.fillRect(tab.rect, QColor(selected ? colours::kPanel : hovered ? colours::kAccentPale : colours::kGround));
  if (selected) {
    painter.fillRect(QRect(tab.rect.left(), tab.rect.top(), tab.rect.width(), 3), QColor(colours::kAccent));
    DrawEdges(painter, tab.rect, kLeft | kRight);
  }
}

void DrawHeaderSection(QPainter& painter, const QRect& rect) {
  painter.fillRect(rect, QColor(colours::kGround));
  DrawEdges(painter, rect, kBottom | kRight);
}

void DrawDropDown(QPainter& painter, const QStyleOptionComboBox& list, const QRect& arrow) {
  const bool enabled = list.state & QStyle::State_Enabled;
  const bool focus = list.state & QStyle::State_HasFocus;
  const bool hovered = enabled && list.state & QStyle::State_MouseOver;
  DrawBox(painter, list.rect,
          hovered && !list.editable ? QColor(colours::kAccentPale) : list.palette.color(QPalette::Base),
          focus ? QColor(colours::kAccent) : QColor(colours::kLine), focus ? 2 : 1);
  const QPointF centre = QRectF(arrow).center();
  QPainterPath chevron(centre + QPointF(-4.5, -2));
  chevron.lineTo(centre + QPointF(0, 2.5));
  chevron.lineTo(centre + QPointF(4.5, -2));
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(enabled ? colours::kText : colours::kLine), 1.8, Qt::SolidLine, Qt::RoundCap));
  painter.drawPath(chevron);
}

}  // namespace

void WindowStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
  painter->save();
  switch (element) {
    case PE_PanelButtonCommand:
      DrawButtonPanel(*painter, *option);
      break;
    case PE_IndicatorCheckBox:
      DrawTickBox(*painter, *option);
      break;
    case PE_FrameFocusRect:
      if (qobject_cast<const QPushButton*>(widget) != nullptr) {
        DrawBox(*painter, widget->rect(), Qt::transparent, QColor(colours::kAccentDark), 2);
      } else {
        DrawBox(*painter, option->rect, Qt::transparent, QColor(colours::kAccent));
      }
      break;
    case PE_Frame:
    case PE_FrameTabWidget:
      if (element == PE_FrameTabWidget) {
        painter->fillRect(option->rect, QColor(colours::kPanel));
      }
      DrawEdges(*painter, option->rect, kAllEdges);
      break;
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
  painter->restore();
}

void WindowStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
  painter->save();
  if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
      element == CE_TabBarTabShape && tab != nullptr) {
    DrawTab(*painter, *tab);
  } else if (element == CE_HeaderSection || element == CE_HeaderEmptyArea) {
    DrawHeaderSection(*painter, option->rect);
  } else {
    QProxyStyle::drawControl(element, option, painter, widget);
  }
  painter->restore();
}

void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                     const QWidget* widget) const {
  const auto* list = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (control == CC_ComboBox && list != nullptr) {
    painter->save();
    DrawDropDown(*painter, *list, subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget));
    painter->restore();
  } else {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
}

int WindowStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      return 20;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
      return 8;
    case PM_FocusFrameHMargin:  // the room on both sides of a cell's text
    case PM_HeaderMargin:
      return 6;
    case PM_TabBarTabHSpace: {
      // Tabs in document mode share the whole width of the board: they have room enough, except in the smallest window.
      const auto* const tabs = qobject_cast<const QTabBar*>(widget);
      return tabs != nullptr && tabs->documentMode() ? 6 : 20;
    }
    case PM_TabBarTabVSpace:
      return 14;
    case PM_TabBarTabShiftVertical:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
      return 0;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

QSize WindowStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                    const QWidget* widget) const {
  const QSize natural = QProxyStyle::sizeFromContents(type, option, size, widget);
  switch (type) {
    case CT_PushButton:
      return (natural + QSize(16, 0)).expandedTo(QSize(72, 38));
    case CT_ComboBox:
    case CT_LineEdit:
      return natural.expandedTo(QSize(0, 34));
    default:
      return natural;
  }
}

int WindowStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* returned) const {
  switch (hint) {
    case SH_MessageBox_TextInteractionFlags:
      // The operator can copy the words of an error report into a mail.
      return Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;
    case SH_UnderlineShortcut:
    case SH_DialogButtonBox_ButtonsHaveIcons:
      return 0;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returned);
  }
}

QPalette WindowPalette() {
  QPalette palette;
  const auto set = [&palette](QPalette::ColorRole role, QRgb colour, QRgb disabled) {
    palette.setColor(role, QColor(colour));
    palette.setColor(QPalette::Disabled, role, QColor(disabled));
  };
  constexpr QRgb kDisabledText = 0xff94a0ab;
  set(QPalette::Window, colours::kGround, colours::kGround);
  set(QPalette::WindowText, colours::kText, kDisabledText);
  set(QPalette::Base, colours::kPanel, 0xfff6f8fa);
  set(QPalette::AlternateBase, 0xfff5f8fa, 0xfff5f8fa);
  set(QPalette::Text, colours::kText, kDisabledText);
  set(QPalette::PlaceholderText, colours::kFaintText, kDisabledText);
  set(QPalette::Button, colours::kPanel, 0xfff3f5f7);
  set(QPalette::ButtonText, colours::kText, kDisabledText);
  set(QPalette::BrightText, 0xffffffff, 0xffffffff);
  set(QPalette::Highlight, colours::kAccent, colours::kLine);
  set(QPalette::HighlightedText, 0xffffffff, 0xffffffff);
  set(QPalette::ToolTipBase, 0xfffffbe6, 0xfffffbe6);
  set(QPalette::ToolTipText, colours::kText, colours::kText);
  set(QPalette::Light, 0xffffffff, 0xffffffff);
  set(QPalette::Midlight, colours::kAccentPale, colours::kAccentPale);
  set(QPalette::Mid, colours::kLine, colours::kLine);
  set(QPalette::Dark, 0xff8a97a3, 0xff8a97a3);
  set(QPalette::Shadow, 0xff5a6875, 0xff5a6875);
  set(QPalette::Link, colours::kAccent, kDisabledText);
  return palette;
}

QPalette ScrollBarPalette() {
  QPalette palette = WindowPalette();
  palette.setColor(QPalette::Button, QColor(colours::kLine));
  return palette;
}

QPalette MainButtonPalette() {
  QPalette palette = WindowPalette();
  palette.setColor(QPalette::Active, QPalette::Button, QColor(colours::kAccent));
  palette.setColor(QPalette::Inactive, QPalette::Button, QColor(colours::kAccent));
  palette.setColor(QPalette::Active, QPalette::ButtonText, Qt::white);
  palette.setColor(QPalette::Inactive, QPalette::ButtonText, Qt::white);
  return palette;
}

void DrawCheckMark(QPainter& painter, const QRectF& box, const QColor& colour, double thickness) {
  QPainterPath mark(QPointF(box.left() + box.width() * 0.22, box.top() + box.height() * 0.53));
  mark.lineTo(box.left() + box.width() * 0.42, box.top() + box.height() * 0.73);
  mark.lineTo(box.left() + box.width() * 0.79, box.top() + box.height() * 0.29);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(colour, thickness, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(mark);
}

}  // namespace marlevo
