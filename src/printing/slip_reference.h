// Known good settings for two printers, shown to the operator to copy from. Nothing is loaded from them.
#pragma once

#include <array>
#include <string_view>
#include <vector>

namespace marlevo {

struct SlipReferenceRow {
  std::string_view label;
  int three_digit;  // twips
  int four_digit;
};

struct SlipReferenceTable {
  std::string_view heading;
  std::string_view printer;
  std::vector<SlipReferenceRow> rows;
};

inline const std::array<SlipReferenceTable, 2> kSlipReference = {{
    {"3、4星彩雷射",
     "Epson AL-M1400",
     {{"紙張的上邊界", 1120, 1270},
      {"紙張的左邊界", 4300, 4300},
      {"黑點的寬度", 60, 60},
      {"黑點的高度", 60, 60},
      {"點與點的水平距離", 300, 300},
      {"點與點的垂直距離", 250, 240},
      {"選號與倍數的距離", 310, 530},
      {"紙張頃斜修正", 0, 0},
      {"每注之間的間隔", 1280, 1520},
      {"長期投注位置", 9050, 9050}}},
    {"3、4星彩噴墨",
     "Epson XP-102",
     {{"紙張的上邊界", 1180, 1330},
      {"紙張的左邊界", 530, 550},
      {"黑點的寬度", 60, 60},
      {"黑點的高度", 60, 60},
      {"點與點的水平距離", 300, 300},
      {"點與點的垂直距離", 250, 240},
      {"選號與倍數的距離", 250, 520},
      {"紙張頃斜修正", 0, 0},
      {"每注之間的間隔", 1280, 1520}}},
}};

}  // namespace marlevo
