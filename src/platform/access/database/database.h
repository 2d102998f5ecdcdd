// One Access file (.mdb): opening and creating it, its tables, its statements. Several Databases of one process may
// have the same file open: they share its pages and see each other's completed statements. A Database is used by one
// thread.
//
// Errors: AccessError (access_error.h) when the content of the file or of a value is at fault, PagerError
// (pager/pager.h) when the disk or a lock is. After either error the file holds what it held before the statement.
// After an error of Fault::kChanged the Database is of no use any more and the file must be opened anew.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/schema.h"
#include "platform/access/table/statement.h"
#include "platform/access/table/table.h"
#include "platform/pager/disk_file.h"

namespace marlevo::access {

class Database {
 public:
  static Database Open(const std::filesystem::path& path, const OpenOptions& options,
                       pager::FileSystem& files = pager::NativeFiles());

  // Makes a new file with empty tables. It is on the disk when this returns. Throws PagerError when the file exists
  // already. A failure leaves no file, or the complete file when only the last step failed.
  static Database Create(const std::filesystem::path& path, std::string_view password,
                         const std::vector<TableSchema>& tables, pager::FileSystem& files = pager::NativeFiles(),
                         NewFile kind = {});

  // The names of the local tables that users made, in the order of the catalog.
  std::vector<std::string> Tables() const;

  // Opens any local table, the system's included. `name` does not tell upper from lower ASCII letters. Throws
  // AccessError for a linked or unknown table.
  Table OpenTable(std::string_view name) const;

  // Writes every completed statement to the disk.
  void Flush();
  // Undoes the completed statements that have not been flushed. `reason` is what others that lose statements by this
  // are told.
  void Discard(Fault reason) noexcept;

  // Reads every page and returns the structural faults of the file, one line each; none when it is sound. Finds wrong
  // maps and counts, pages with two owners or none, rows that cannot be read, indexes that do not list their rows.
  std::vector<std::string> FindFaults() const;

  // Writes the file as it is now to the new file `copy`, byte for byte, reads the copy back from the disk, compares it
  // with the file and looks for faults in it. Nobody changes the file meanwhile. When this throws, `copy` is of no use.
  void CopyTo(const std::filesystem::path& copy, pager::FileSystem& files = pager::NativeFiles()) const;

  // Begins a statement, which lasts until it is committed or destroyed.
  Statement Begin() const { return Statement(file_); }

 private:
  explicit Database(std::shared_ptr<Storage> file);

  std::shared_ptr<Storage> file_;
};

}  // namespace marlevo::access
