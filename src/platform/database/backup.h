// Copies the database and other files to a safe place while they are in use.
#pragma once

#include <filesystem>
#include <vector>

#include "platform/base/operation_error.h"

namespace marlevo {

struct FileCopy {
  std::filesystem::path from;
  std::filesystem::path to;
};

// Copies a database and small files that belong to it. Every copy is read back from the disk and compared with its
// original, and the database's copy is looked through for faults; only then do they get their names, and take the
// places of files that have these names. Until then they are called NAME-new. A failure is a FileError and leaves
// nothing of copies that have no name yet.
void BackUp(const FileCopy& database, const std::vector<FileCopy>& others);

}  // namespace marlevo
