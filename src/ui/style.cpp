#include "ui/style.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStyleOption>
#include <QTabBar>

#include "ui/appearance.h"

namespace marlevo {

namespace {

constexpr double kRadius = 4;
constexpr int kFrame = 2;  // as thick as the ring of the focus, which takes the place of the outline

constexpr int kBoxInset = distances::kNear - kFrame - 2;  // beside the text of a box, besides what Qt leaves there
constexpr int kArrowRoom = 20;                            // at the right of a drop-down list

bool IsDark(const QColor& fill) {
  return fill.lightness() < 128;
}

// A rounded box with a sharp outline: a line of one pixel has to run through the centres of pixels, half a pixel inside
// the rectangle.
void DrawBox(QPainter& painter, const QRect& rect, const QColor& fill, const QColor& line, double thickness = 1) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(fill);
  painter.setPen(QPen(line, thickness));
  const double inset = thickness / 2;
  painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), kRadius, kRadius);
}

// The outline of a box that text or rows stand in.
void DrawOutline(QPainter& painter, const QStyleOption& option, const QColor& fill) {
  if (option.state & QStyle::State_HasFocus) {
    DrawBox(painter, option.rect, fill, QColor(colours::kFocus), kFrame);
  } else {
    DrawBox(painter, option.rect, fill,
            QColor(option.state & QStyle::State_Enabled ? colours::kLine : colours::kFaintLine));
  }
}

enum Edge { kLeft = 1, kRight = 4, kBottom = 8 };

// Lines inside the edges of a rectangle. They are filled rectangles, because half of a drawn line is cut off at a
// widget's edge on a scaled screen.
void DrawEdges(QPainter& painter, const QRect& rect, int edges, const QColor& line) {
  const auto fill = [&](Edge edge, int left, int top, int width, int height) {
    if (edges & edge) {
      painter.fillRect(left, top, width, height, line);
    }
  };
  fill(kLeft, rect.left(), rect.top(), 1, rect.height());
  fill(kRight, rect.right(), rect.top(), 1, rect.height());
  fill(kBottom, rect.left(), rect.bottom(), rect.width(), 1);
}

void DrawButtonPanel(QPainter& painter, const QStyleOption& option) {
  const bool enabled = option.state & QStyle::State_Enabled;
  QColor fill = option.palette.color(QPalette::Button);
  const bool emphasized = IsDark(fill);
  QColor line = emphasized ? QColor(colours::kAccentDark) : QColor(colours::kLine);
  if (!enabled) {
    line = QColor(colours::kFaintLine);
  } else if (option.state & (QStyle::State_Sunken | QStyle::State_On)) {
    fill = emphasized ? QColor(colours::kAccentDark) : QColor(colours::kAccentPale).darker(106);
  } else if (option.state & QStyle::State_MouseOver) {
    fill = emphasized ? fill.lighter(115) : QColor(colours::kAccentPale);
  }
  const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  const bool is_default = button != nullptr && button->features & QStyleOptionButton::DefaultButton;
  DrawBox(painter, option.rect, fill, is_default ? QColor(colours::kAccent) : line);
  if (option.state & QStyle::State_HasFocus) {
    DrawFocusRing(painter, option.rect, IsDark(fill));
  }
}

void DrawTickBox(QPainter& painter, const QStyleOption& option) {
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool on = option.state & QStyle::State_On;
  const QColor accent = enabled ? QColor(colours::kAccent) : QColor(colours::kLine);
  const bool outlined = on || (enabled && option.state & QStyle::State_MouseOver);
  DrawBox(painter, option.rect, on ? accent : QColor(colours::kPanel), outlined ? accent : QColor(colours::kLine), 1.4);
  if (on) {
    DrawCheckMark(painter, option.rect, Qt::white, 2.4);
  }
}

void DrawOption(QPainter& painter, const QStyleOption& option) {
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool on = option.state & QStyle::State_On;
  const QColor accent = enabled ? QColor(colours::kAccent) : QColor(colours::kLine);
  const bool outlined = on || (enabled && option.state & QStyle::State_MouseOver);
  const QRectF circle = QRectF(option.rect).adjusted(1, 1, -1, -1);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(outlined ? accent : QColor(colours::kLine), 1.4));
  painter.setBrush(QColor(colours::kPanel));
  painter.drawEllipse(circle);
  if (on) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(accent);
    painter.drawEllipse(circle.center(), circle.width() / 4, circle.height() / 4);
  }
}

void DrawTab(QPainter& painter, const QStyleOptionTab& tab) {
  const bool selected = tab.state & QStyle::State_Selected;
  const bool enabled = tab.state & QStyle::State_Enabled;
  const bool hovered = enabled && !selected && tab.state & QStyle::State_MouseOver;
  painter.fillRect(tab.rect, QColor(selected ? colours::kPanel : hovered ? colours::kAccentPale : colours::kGround));
  if (selected) {
    painter.fillRect(QRect(tab.rect.left(), tab.rect.top(), tab.rect.width(), 3), QColor(colours::kAccent));
    DrawEdges(painter, tab.rect, kLeft | kRight, QColor(colours::kLine));
  } else {
    DrawEdges(painter, tab.rect, kBottom, QColor(colours::kLine));
  }
  if (tab.state & QStyle::State_HasFocus) {
    DrawFocusRing(painter, tab.rect.adjusted(kFrame, kFrame, -kFrame, -kFrame), false);
  }
}

void DrawHeaderSection(QPainter& painter, const QRect& rect) {
  painter.fillRect(rect, QColor(colours::kGround));
  DrawEdges(painter, rect, kBottom | kRight, QColor(colours::kFaintLine));
}

// An arrow without a shaft; it points down and is turned clockwise by `degrees`.
void DrawChevron(QPainter& painter, const QRect& rect, int degrees, const QColor& colour) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(rect).center());
  painter.rotate(degrees);
  QPainterPath chevron(QPointF(-4.5, -2));
  chevron.lineTo(0, 2.5);
  chevron.lineTo(4.5, -2);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(colour, 1.8, Qt::SolidLine, Qt::RoundCap));
  painter.drawPath(chevron);
  painter.restore();
}

void DrawDropDown(QPainter& painter, const QStyleOptionComboBox& list, const QRect& arrow) {
  const bool enabled = list.state & QStyle::State_Enabled;
  const bool hovered = enabled && list.state & QStyle::State_MouseOver;
  DrawOutline(painter, list,
              hovered && !list.editable ? QColor(colours::kAccentPale) : list.palette.color(QPalette::Base));
  DrawChevron(painter, arrow, 0, QColor(enabled ? colours::kText : colours::kLine));
}

void DrawScrollBar(QPainter& painter, const QStyleOptionSlider& bar, const QRect& slider, const QRect& back,
                   const QRect& forth) {
  const bool across = bar.orientation == Qt::Horizontal;
  const bool held = bar.activeSubControls == QStyle::SC_ScrollBarSlider &&
                    bar.state & (QStyle::State_MouseOver | QStyle::State_Sunken);
  const QColor colour(held ? colours::kFaintText : colours::kLine);
  painter.fillRect(bar.rect, QColor(colours::kGround));
  DrawBox(painter, across ? slider.adjusted(0, 3, 0, -3) : slider.adjusted(3, 0, -3, 0), colour, colour);
  DrawChevron(painter, back, across ? 90 : 180, colour);
  DrawChevron(painter, forth, across ? -90 : 0, colour);
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
    case PE_IndicatorRadioButton:
      DrawOption(*painter, *option);
      break;
    case PE_FrameFocusRect: {
      // On the dark row that is selected in a list the ring is white.
      const auto* const focus = qstyleoption_cast<const QStyleOptionFocusRect*>(option);
      const bool dark = focus != nullptr && focus->backgroundColor.isValid() && IsDark(focus->backgroundColor);
      DrawBox(*painter, option->rect, Qt::transparent, dark ? QColor(Qt::white) : QColor(colours::kFocus), kFrame);
      break;
    }
    case PE_PanelLineEdit: {
      // A box inside another widget, such as a list, has no outline of its own.
      const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
      if (frame != nullptr && frame->lineWidth > 0) {
        DrawOutline(*painter, *option, option->palette.color(QPalette::Base));
      }
      break;
    }
    case PE_Frame:
      DrawOutline(*painter, *option,
                  qobject_cast<const QAbstractScrollArea*>(widget) != nullptr ? option->palette.color(QPalette::Base)
                  : widget != nullptr ? option->palette.color(widget->backgroundRole())
                                      : Qt::transparent);
      break;
    case PE_FrameGroupBox:  // below the title
      DrawBox(*painter, option->rect.adjusted(0, option->fontMetrics.height() + distances::kHair, 0, 0),
              Qt::transparent, QColor(colours::kLine));
      break;
    case PE_FrameTabWidget:
      DrawBox(*painter, option->rect, QColor(colours::kPanel), QColor(colours::kLine));
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
  } else if (element == CE_TabBarTabLabel && tab != nullptr) {
    QStyleOptionTab label(*tab);
    label.state &= ~State_HasFocus;  // the shape shows it
    QProxyStyle::drawControl(element, &label, painter, widget);
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
  } else if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
             control == CC_ScrollBar && bar != nullptr) {
    const auto part = [&](SubControl place) { return subControlRect(CC_ScrollBar, option, place, widget); };
    painter->save();
    DrawScrollBar(*painter, *bar, part(SC_ScrollBarSlider), part(SC_ScrollBarSubLine), part(SC_ScrollBarAddLine));
    painter->restore();
  } else {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
}

QRect WindowStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
  const QRect rect = QProxyStyle::subElementRect(element, option, widget);
  const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
  if (element == SE_LineEditContents && frame != nullptr && frame->lineWidth > 0) {
    return rect.adjusted(kBoxInset, 0, -kBoxInset, 0);
  }
  return rect;
}

QRect WindowStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                  const QWidget* widget) const {
  if (const auto* list = qstyleoption_cast<const QStyleOptionComboBox*>(option);
      control == CC_ComboBox && part == SC_ComboBoxEditField && list != nullptr) {
    // Qt leaves two pixels beside the text of a list that is typed into, and one beside that of another.
    return list->rect.adjusted(distances::kNear - (list->editable ? 2 : 1), kFrame, -kArrowRoom, -kFrame);
  }
  return QProxyStyle::subControlRect(control, option, part, widget);
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
    case PM_DefaultFrameWidth:
      return kFrame;
    case PM_FocusFrameHMargin:  // the room on both sides of a cell's text, to which Qt adds a pixel
      return distances::kNear - 1;
    case PM_HeaderMargin:
      return distances::kNear;
    case PM_LayoutLeftMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin:
      return distances::kApart;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
      return distances::kNear;
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
      return (natural + QSize(2 * kBoxInset, 0)).expandedTo(QSize(0, 34));
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
  set(QPalette::Window, colours::kGround, colours::kGround);
  set(QPalette::WindowText, colours::kText, colours::kDisabledText);
  set(QPalette::Base, colours::kPanel, 0xfff6f8fa);
  set(QPalette::AlternateBase, 0xfff5f8fa, 0xfff5f8fa);
  set(QPalette::Text, colours::kText, colours::kDisabledText);
  set(QPalette::PlaceholderText, colours::kFaintText, colours::kDisabledText);
  set(QPalette::Button, colours::kPanel, 0xfff3f5f7);
  set(QPalette::ButtonText, colours::kText, colours::kDisabledText);
  set(QPalette::BrightText, 0xffffffff, 0xffffffff);
  set(QPalette::Highlight, colours::kAccent, colours::kDisabledText);
  set(QPalette::HighlightedText, 0xffffffff, 0xffffffff);
  set(QPalette::ToolTipBase, 0xfffffbe6, 0xfffffbe6);
  set(QPalette::ToolTipText, colours::kText, colours::kText);
  set(QPalette::Light, 0xffffffff, 0xffffffff);
  set(QPalette::Midlight, colours::kAccentPale, colours::kAccentPale);
  set(QPalette::Mid, colours::kLine, colours::kLine);
  set(QPalette::Dark, colours::kLine, colours::kLine);
  set(QPalette::Shadow, colours::kFaintText, colours::kFaintText);
  set(QPalette::Link, colours::kAccent, colours::kDisabledText);
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

void DrawFocusRing(QPainter& painter, const QRect& rect, bool dark) {
  DrawBox(painter, rect, Qt::transparent, QColor(colours::kFocus), kFrame);
  if (dark) {
    DrawBox(painter, rect.adjusted(kFrame, kFrame, -kFrame, -kFrame), Qt::transparent, Qt::white, kFrame);
  }
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
