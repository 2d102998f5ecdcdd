// Fonts, colours, distances and style of all windows, set once at the start.
#pragma once

#include <QColor>
#include <QFont>

namespace marlevo {

// How many times as large as this program's own text the system's text is; at least 1. All fonts below follow it.
double TextScale();
// The same for distances that belong to a text: `pixels` as they fit this program's own text.
int TextPixels(double pixels);

// The font of the windows: the first Traditional Chinese family that the system has.
QFont WindowFont();

// The same family for what has to be read from a distance: digits, kinds, main actions. The program has this one large
// size only, and shows nothing bold before it is ticked, because loading one size and weight of a Chinese font takes
// two milliseconds of the start.
QFont LargeFont(QFont::Weight weight = QFont::Normal);

// A font in which a full-width character is exactly as wide as two half-width ones, for texts whose lines are laid out
// in columns with blanks.
QFont AlignedFont();

// Colours that widgets painted by hand share with the rest. Against the ground and the panels, texts have a contrast of
// at least 4.5 to 1, also where they are disabled; outlines and the ring of the focus have at least 3 to 1.
namespace colours {
inline constexpr QRgb kAccent = 0xff1f5f8b;      // main actions, ticked digits
inline constexpr QRgb kAccentDark = 0xff174a6d;  // main actions and ticked digits while pressed, and their outlines
inline constexpr QRgb kAccentPale = 0xffe3eef6;  // what lies under the mouse
inline constexpr QRgb kFocus = 0xffb85c00;       // the ring around what has the focus, and nothing else
inline constexpr QRgb kLine = 0xff6f7d8a;        // outlines
inline constexpr QRgb kFaintLine = 0xffb9c4ce;   // between cells, and around what cannot be used
inline constexpr QRgb kText = 0xff1b2733;
inline constexpr QRgb kFaintText = 0xff5a6875;
inline constexpr QRgb kDisabledText = 0xff606d79;
inline constexpr QRgb kGround = 0xffeef2f5;       // behind panels
inline constexpr QRgb kPanel = 0xffffffff;        // panels, lists, boxes
inline constexpr QRgb kWarning = 0xff8a4500;      // texts that warn
inline constexpr QRgb kWarningPale = 0xfffff0c8;  // behind what they warn of
}  // namespace colours

// Distances in windows, in pixels. Layouts that are told nothing else keep kApart from the edge of their window and
// kNear between their widgets.
namespace distances {
inline constexpr int kHair = 3;    // between the cells of one panel
inline constexpr int kNear = 8;    // between widgets of one group; from the edge of a box to its text
inline constexpr int kApart = 12;  // between groups; from the edge of a window or a panel to what is in it
inline constexpr int kWide = 24;   // between what could be taken for one thing; around a notice
}  // namespace distances

// Sets fonts, colours and style for the whole program.
void SetUpAppearance();

}  // namespace marlevo
