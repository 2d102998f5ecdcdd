// The files of the slip settings: "4Star.ini" and "3Star.ini" in the program's folder.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/errors/operation_error.h"
#include "printing/slip_settings.h"

namespace marlevo {

// Fills SlipSettings() with the defaults and then from the file of the slip name ("4Star" or "3Star"; empty stands for
// "4Star"). No such file: the defaults stand. A folder or a device in its place counts as no file. Only the first 64
// KiB are read, more than a hundred times what a save writes. Throws FileError when the file is there and cannot be
// opened.
void LoadSlipSettings(const std::filesystem::path& folder, std::string_view slip_name);

// Writes the file of the slip name, values as typed. Afterwards the file is the new one; a FileError, a crash or a
// power failure leaves the old one.
void SaveSlipSettings(const std::filesystem::path& folder, std::string_view slip_name,
                      const std::array<std::string, kSlipFields>& values);

}  // namespace marlevo
