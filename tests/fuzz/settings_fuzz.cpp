// Reads the text of a slip settings file; what was read and written again reads the same.
#include "fuzz/fuzz_input.h"
#include "platform/text/text.h"
#include "printing/slip_settings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace marlevo;
  static constexpr std::string_view kWords[] = {
      "[PRINTER SET]\r\n", "\r\n",     "TOP=", "LEFT = ", "DOT_W=", "DOT2DOT_H = ", "FIX=", "MD=",
      "P_HEIGHT=",         "99999999", "é",    "邊",      "\xff",   "\xE9",         "-0.5", "1e5"};
  const SlipPrinterSettings settings = ParseSlipSettings(FuzzInput(data, size).Text(kWords));
  std::array<std::string, kSlipFields> values;
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = NumberText(settings.*kSlipFieldTable[i].value);
  }
  Require(ParseSlipSettings(SlipSettingsText(values)) == settings);
  return 0;
}
