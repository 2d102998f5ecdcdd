// What is done about a journal that a crash, or another file, has left beside a file.
#pragma once

#include <filesystem>
#include <string>

#include "platform/pager/disk_file.h"

namespace marlevo::pager {

// Whether `file`, whose name is `path`, was left in the middle of a change that the journal beside it can undo.
bool IsHalfChanged(FileSystem& files, const std::filesystem::path& path, DiskFile& file);

// Undoes such a change and removes the journal. A journal that belongs to other content is renamed to
// JOURNAL.foreign, JOURNAL.foreign2 and so on; a file that is not a journal is left alone. Returns an empty text, or
// why the file is damaged: another program has changed it after the crash, so that the journal cannot undo the change
// any more. Then both files stay as they are.
std::string RecoverFile(FileSystem& files, const std::filesystem::path& path, DiskFile& file);

}  // namespace marlevo::pager
