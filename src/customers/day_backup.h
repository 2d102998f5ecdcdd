// Which files the backup of a day has, and what its copies are called.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database/backup.h"

namespace marlevo {

struct DayBackup {
  FileCopy database;
  std::vector<FileCopy> settings;  // of the slips, those that exist
};

// The database that the connection string names and the settings files beside it, to be copied into `folder` under the
// date of the stamp: 4star.mdb of 20261123203000 becomes 4star-2026-11-23.mdb.
DayBackup BackupOfDay(const std::string& connection_string, const std::filesystem::path& folder,
                      std::string_view stamp);

// Whether a copy of this backup would replace a file.
bool Replaces(const DayBackup& backup);

}  // namespace marlevo
