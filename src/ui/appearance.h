// Fonts, colours and style of all windows, set once at the start.
#pragma once

#include <QColor>
#include <QFont>

namespace marlevo {

// The font of the windows: the first Traditional Chinese family that the system has.
QFont WindowFont();

// The same for what has to be read from a distance: digits, kinds, main actions. There is one large size only, and
// nothing is bold before it is ticked: each size and weight of a Chinese font costs two milliseconds at the start.
QFont LargeFont(QFont::Weight weight = QFont::Normal);

// A font in which a full-width character is exactly as wide as two half-width ones, for boxes whose lines are columns.
QFont AlignedFont();

// Colours that widgets painted by hand share with the rest.
namespace colours {
inline constexpr QRgb kAccent = 0xff1f5f8b;      // main actions, ticked digits
inline constexpr QRgb kAccentDark = 0xff174a6d;  // the same, pressed or outlined
inline constexpr QRgb kAccentPale = 0xffe3eef6;  // hovered
inline constexpr QRgb kLine = 0xffb9c4ce;        // outlines
inline constexpr QRgb kText = 0xff1b2733;
inline constexpr QRgb kFaintText = 0xff5a6875;
inline constexpr QRgb kGround = 0xffeef2f5;  // behind panels
inline constexpr QRgb kPanel = 0xffffffff;   // panels, lists, boxes
}  // namespace colours

// Sets them for the whole program.
void SetUpAppearance();

}  // namespace marlevo
