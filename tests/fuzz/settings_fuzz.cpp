// Reads the text of a slip settings file; what was read and written again reads the same.
#include <sstream>

#include "fuzz/fuzz_input.h"
#include "platform/base/text.h"
#include "printing/slip_settings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace marlevo;
  static constexpr std::string_view kWords[] = {
      "[PRINTER SET]\r\n", "\r\n",     "TOP=", "LEFT = ", "DOT_W=", "DOT2DOT_H = ", "FIX=", "MD=",
      "P_HEIGHT=",         "99999999", "é",    "邊",      "\xff",   "\xE9",         "-0.5", "1e5"};
  std::istringstream file(FuzzInput(data, size).Text(kWords));
  const SlipPrinterSettings settings = ReadSlipSettings(file);
  std::array<std::string, kSlipFields> values;
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = NumberText(settings.*kSlipFieldTable[i].value);
  }
  std::istringstream again(SlipSettingsText(values));
  Require(ReadSlipSettings(again) == settings);
  return 0;
}
