#include "customers/day_backup.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "platform/database/connection_string.h"
#include "printing/slip_type.h"

namespace marlevo {

DayBackup BackupOfDay(const std::string& connection_string, const std::filesystem::path& folder,
                      std::string_view stamp) {
  const std::string file = ParseConnectionString(connection_string).file;
  const std::filesystem::path database(std::u8string(file.begin(), file.end()));
  const std::string day =
      std::string(stamp.substr(0, 4)).append("-").append(stamp.substr(4, 2)).append("-").append(stamp.substr(6, 2));
  const auto copy_of = [&](const std::filesystem::path& original) {
    std::filesystem::path name = original.stem();
    name += "-" + day;
    name += original.extension();
    return FileCopy{original, folder / name};
  };
  DayBackup backup{copy_of(database), {}};
  for (const SlipType type : {SlipType::kFourDigit, SlipType::kThreeDigit}) {
    const std::filesystem::path settings = database.parent_path() / SlipFileName(type);
    if (std::error_code none; std::filesystem::is_regular_file(settings, none)) {
      backup.settings.push_back(copy_of(settings));
    }
  }
  return backup;
}

bool Replaces(const DayBackup& backup) {
  const auto exists = [](const FileCopy& copy) {
    std::error_code none;
    return std::filesystem::exists(copy.to, none);
  };
  return exists(backup.database) || std::ranges::any_of(backup.settings, exists);
}

}  // namespace marlevo
