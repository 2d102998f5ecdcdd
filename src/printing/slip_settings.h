// The settings of one slip type, which say where its marks lie, and the text of their file.
#pragma once

#include <array>
#include <iosfwd>
#include <string>
#include <string_view>

namespace marlevo {

// Lengths in twips. A value may be any number, fractions and negative ones included.
struct SlipPrinterSettings {
  double top = 2220;
  double left = 320;
  double dot_w = 180;
  double dot_h = 180;
  double dot2dot_w = 125;
  double dot2dot_h = 130;
  double play2dot = 420;
  double dot2amt = 420;
  double fix = 15;
  double play = 1800;  // stored and edited, but no mark depends on this value
  double md = 1900;
  double p_height = 2130;

  bool operator==(const SlipPrinterSettings&) const = default;
};

// The settings in use, one record for the whole program: loading a file fills the record, the calibration window edits
// it, printing reads it.
SlipPrinterSettings& SlipSettings();

struct SlipField {
  std::string_view key;     // in the file
  std::string_view equals;  // written between key and value; the blanks around "=" differ between keys
  std::string_view label;   // beside the field's box
  double SlipPrinterSettings::*value;
};

// The fields in the order of the file and of the boxes of the calibration window.
inline constexpr int kSlipFields = 12;
inline constexpr std::array<SlipField, kSlipFields> kSlipFieldTable = {{
    {"TOP", " = ", "紙張的上邊界", &SlipPrinterSettings::top},
    {"LEFT", " = ", "紙張的左邊界", &SlipPrinterSettings::left},
    {"DOT_W", " = ", "黑點的寬度", &SlipPrinterSettings::dot_w},
    {"DOT_H", " = ", "黑點的高度", &SlipPrinterSettings::dot_h},
    {"DOT2DOT_W", " = ", "點與點的水平距離", &SlipPrinterSettings::dot2dot_w},
    {"DOT2DOT_H", " = ", "點與點的垂直距離", &SlipPrinterSettings::dot2dot_h},
    {"PLAY2DOT", " = ", "玩法與選號的距離", &SlipPrinterSettings::play2dot},
    {"DOT2AMT", " = ", "選號與倍數的距離", &SlipPrinterSettings::dot2amt},
    {"FIX", " = ", "紙張頃斜修正", &SlipPrinterSettings::fix},
    {"PLAY", " = ", "玩法位置", &SlipPrinterSettings::play},
    {"MD", "=", "長期投注位置", &SlipPrinterSettings::md},
    {"P_HEIGHT", "=", "每注之間的間隔", &SlipPrinterSettings::p_height},
}};

// The settings that a file stands for: the defaults, overwritten by every line "KEY=number" after the first line that
// contains "[PRINTER SET]". Other lines are skipped; a value that is no number reads as 0. The file is read to its end,
// however large it is; a line ends with CR LF, LF or CR.
SlipPrinterSettings ReadSlipSettings(std::istream& file);

// The file's text: the heading and a line for each field, each ended by CR LF, with the values as they were typed.
std::string SlipSettingsText(const std::array<std::string, kSlipFields>& values);

}  // namespace marlevo
