// Loading and saving the settings files of the slips. `folder` is the program's.
#pragma once

#include <array>
#include <filesystem>
#include <string>

#include "platform/base/operation_error.h"
#include "printing/slip_settings.h"
#include "printing/slip_type.h"

namespace marlevo {

// Fills SlipSettings() with the defaults and then with the values of the slip's file. Where there is no such file, or a
// folder or a device in its place, the defaults stand. Throws FileError, and leaves SlipSettings() as it was, when the
// file is there and cannot be read.
void LoadSlipSettings(const std::filesystem::path& folder, SlipType type);

// Writes the slip's file, values as typed. A new file takes the place of the old one, so that a FileError, a crash or a
// power failure leaves the old one whole. Where the folder takes no new file the old one is overwritten instead.
void SaveSlipSettings(const std::filesystem::path& folder, SlipType type,
                      const std::array<std::string, kSlipFields>& values);

}  // namespace marlevo
