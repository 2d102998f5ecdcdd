// A statement on an Access file, as a scope.
#pragma once

#include <memory>

#include "platform/access/storage/storage.h"

namespace marlevo::access {

// Makes several inserts and deletes one statement: whoever reads the file later sees all of them or none. Inserts and
// deletes outside a Statement are statements of their own. At most one Statement is open on a file. The destructor
// undoes the changes unless Commit was called. After an error inside a statement, other than a ValueError, the
// Statement must be destroyed without a Commit. Database::Begin makes a Statement.
class Statement {
 public:
  explicit Statement(std::shared_ptr<Storage> file);
  ~Statement();
  Statement(Statement&&) noexcept = default;
  void Commit();

 private:
  std::shared_ptr<Storage> file_;  // null after Commit
};

}  // namespace marlevo::access
