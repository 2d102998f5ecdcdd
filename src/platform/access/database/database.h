// One Access file (.mdb): who may open it, its tables, its statements. Several Databases of one process may have the
// same file open: they share its pages and see each other's completed statements. Not for use by several threads.
//
// Errors: AccessError (access_error.h) for what the file says, PagerError (pager/pager.h) for what the disk or the lock
// says. After either the file holds what it held before the statement. After an error of Fault::kChanged the Database
// can only be opened anew.
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

  // Makes a new file with empty tables, on the disk when this returns. Never over an existing file; a failure leaves no
  // file, or a whole one when only the last step failed.
  static Database Create(const std::filesystem::path& path, std::string_view password,
                         const std::vector<TableSchema>& tables, pager::FileSystem& files = pager::NativeFiles(),
                         NewFile kind = {});

  // Names of the user's own local tables, in catalog order.
  std::vector<std::string> Tables() const;

  // `name` regardless of ASCII case; any local table, also the system's. A linked or unknown table is an error.
  Table OpenTable(std::string_view name) const;

  bool ReadOnly() const;

  // Every completed statement is on the disk when this returns.
  void Flush();
  // Undoes the completed statements that are not on the disk, for this reason.
  void Discard(Fault reason) noexcept;

  // Structural faults of the whole file, one line each, none when it is sound: maps, counts, pages owned twice or by
  // nobody known, rows that do not parse. Reads every page.
  std::vector<std::string> FindFaults() const;

  // Makes the inserts and deletes that follow one statement, until the Statement is committed or goes.
  Statement Begin() const { return Statement(file_); }

 private:
  explicit Database(std::shared_ptr<Storage> file);

  std::shared_ptr<Storage> file_;
};

}  // namespace marlevo::access
