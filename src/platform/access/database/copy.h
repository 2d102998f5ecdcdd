// Writes a new file with what can be read of another one: the way out for a file that this engine reads but does not
// write, because of an index or a rule that only Access can keep.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/pager/disk_file.h"

namespace marlevo::access {

struct CopyReport {
  std::size_t tables = 0;
  std::size_t rows = 0;
  std::size_t values = 0;
  std::vector<std::string> left_out;  // what the old file has and the new one has not, and why
};

// The new file has the old one's format, code page, encoding and password, its own tables with all rows in their order,
// the columns' properties, and the indexes that this engine can keep right for every text. Texts are ordered as
// "General". Values go over as they are stored. The new file is read back from the disk and compared with the old one
// value by value before it gets its name; the old file is never written to. A failure leaves no new file; an existing
// one is an error. AccessError, PagerError.
CopyReport CopyFile(const std::filesystem::path& from, const std::filesystem::path& to,
                    pager::FileSystem& files = pager::NativeFiles());

}  // namespace marlevo::access
