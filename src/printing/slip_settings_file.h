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
// "4Star"). Where there is no such file, or a folder or a device in its place, the defaults stand. Throws FileError,
// and leaves SlipSettings() as it was, when the file is there and cannot be read.
void LoadSlipSettings(const std::filesystem::path& folder, std::string_view slip_name);

// Writes the file of the slip name, values as typed: a new file takes the place of the old one, which a FileError, a
// crash or a power failure therefore leaves whole. Only where the folder takes no new file the old one is overwritten.
void SaveSlipSettings(const std::filesystem::path& folder, std::string_view slip_name,
                      const std::array<std::string, kSlipFields>& values);

}  // namespace marlevo
