#include "printing/slip_settings.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>

#include "platform/base/text.h"

namespace marlevo {
namespace {

using namespace std::string_literals;

SlipPrinterSettings Read(const std::string& text) {
  std::istringstream file(text);
  return ReadSlipSettings(file);
}

// What differs from the defaults, as "KEY=value KEY=value".
std::string Changes(const SlipPrinterSettings& settings) {
  std::string text;
  for (const SlipField& field : kSlipFieldTable) {
    const double value = settings.*field.value;
    if (value != SlipPrinterSettings{}.*field.value) {
      text.append(text.empty() ? "" : " ").append(field.key).append("=").append(NumberText(value));
    }
  }
  return text;
}

TEST(ReadSlipSettings, TakesKeyLinesAndSkipsTheRest) {
  const std::string head = "[PRINTER SET]\r\n";
  const std::pair<std::string, const char*> cases[] = {
      {"", ""},
      {"TOP = 1\r\nLEFT = 2", ""},                    // no heading
      {"TOP = 1\r\n" + head + "LEFT = 2", "LEFT=2"},  // lines above the heading do not count
      {head + "TOP=1270\nLEFT = 530\rMD=9050", "TOP=1270 LEFT=530 MD=9050"},
      {"; old [PRINTER SET] x\nTOP=1\n[OTHER]\nMD=2", "TOP=1 MD=2"},  // anywhere in a line; never ended
      {"[printer set]\nTOP=1", ""},
      {head + "top=1\nTop=1\nTOPS=1\nTOP =1=\nTOP==1\n=1\n=\nTOP", ""},
      {head + "[PRINTER SET] = 5\n  FIX   =  -2.5 mm", "FIX=-2.5"},
      {head + "\tTOP = 1\nLEFT\t= 2\nPLAY = \t3", "PLAY=3"},  // keys lose blanks, not tabs
      {head + "DOT_W = abc\nDOT_H =\nPLAY=1e3", "DOT_W=0 DOT_H=0 PLAY=1"},
      {head + "P_HEIGHT = 1\nP_HEIGHT = 1280", "P_HEIGHT=1280"},
      {head + "TOP\0 = 7\nLEFT = 7\0"s + "8\xFF\xFE\n\xA4\xA4=1", "LEFT=7"},
  };
  for (const auto& [text, changes] : cases) {
    EXPECT_EQ(Changes(Read(text)), changes) << text;
  }
}

TEST(SlipSettingsText, KeepsTheBlanksOfEachKeyAndReadsBack) {
  const std::string text =
      SlipSettingsText({"1270", "4300", "60", "60", "300", "240", " 420", "530", "-0.5", "", "9050", "1520x"});
  EXPECT_EQ(text,
            "[PRINTER SET]\r\nTOP = 1270\r\nLEFT = 4300\r\nDOT_W = 60\r\nDOT_H = 60\r\nDOT2DOT_W = 300\r\n"
            "DOT2DOT_H = 240\r\nPLAY2DOT =  420\r\nDOT2AMT = 530\r\nFIX = -0.5\r\nPLAY = \r\nMD=9050\r\n"
            "P_HEIGHT=1520x\r\n");
  EXPECT_EQ(Read(text), (SlipPrinterSettings{1270, 4300, 60, 60, 300, 240, 420, 530, -0.5, 0, 9050, 1520}));
}

}  // namespace
}  // namespace marlevo
