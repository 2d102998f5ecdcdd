#include "printing/slip_settings.h"

#include <algorithm>
#include <istream>

#include "platform/base/text.h"

namespace marlevo {

namespace {

constexpr std::string_view kHeading = "[PRINTER SET]";

std::string_view WithoutBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace

SlipPrinterSettings& SlipSettings() {
  static SlipPrinterSettings settings;
  return settings;
}

SlipPrinterSettings ReadSlipSettings(std::istream& file) {
  SlipPrinterSettings settings;
  bool in_section = false;
  for (std::string text; std::getline(file, text);) {
    for (std::string_view rest = text; !rest.empty();) {
      const std::string_view line = rest.substr(0, rest.find('\r'));
      rest.remove_prefix(std::min(line.size() + 1, rest.size()));
      in_section = in_section || line.find(kHeading) != std::string_view::npos;
      const std::size_t equals = line.find('=');
      if (!in_section || equals == std::string_view::npos || line.find('=', equals + 1) != std::string_view::npos) {
        continue;
      }
      const std::string_view key = WithoutBlanks(line.substr(0, equals));
      const auto field = std::ranges::find(kSlipFieldTable, key, &SlipField::key);
      if (field != kSlipFieldTable.end()) {
        settings.*field->value = LenientNumber(line.substr(equals + 1));
      }
    }
  }
  return settings;
}

std::string SlipSettingsText(const std::array<std::string, kSlipFields>& values) {
  std::string text = std::string(kHeading) + "\r\n";
  for (std::size_t i = 0; i < values.size(); ++i) {
    const SlipField& field = kSlipFieldTable[i];
    text.append(field.key).append(field.equals).append(values[i]).append("\r\n");
  }
  return text;
}

}  // namespace marlevo
