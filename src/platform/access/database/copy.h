// Copies the tables of a file to a new file without whatever keeps this engine from writing: indexes in an order that
// is not known and validation rules, which only Access can check. This helps with a file that can be read but not
// written.
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
  std::vector<std::string> left_out;  // objects of the old file that the new one lacks, with the reason
};

// The new file has the format, code page, encoding and password of the old one, its local tables with all rows in their
// order, the columns' properties, and the indexes that this engine can keep correct for every text. Texts are ordered
// as "General". Values are copied as they are stored. Before the new file gets its name it is read back from the disk
// and compared with the old one value by value. The old file is never written to. A failure leaves no new file. Throws
// AccessError or PagerError, also when `to` exists already.
CopyReport CopyFile(const std::filesystem::path& from, const std::filesystem::path& to,
                    pager::FileSystem& files = pager::NativeFiles());

}  // namespace marlevo::access
