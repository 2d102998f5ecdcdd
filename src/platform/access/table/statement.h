// One statement on an Access file.
#pragma once

#include <memory>

#include "platform/access/storage/storage.h"

namespace marlevo::access {

// Makes several inserts and deletes one statement: all or nothing for whoever reads the file afterwards. Without one,
// each insert and delete is a statement of its own. At most one is open on a file. The destructor undoes what was not
// committed. After an error inside a statement (other than a refused value) the only thing to do is to let it go.
// Database::Begin makes one.
class Statement {
 public:
  explicit Statement(std::shared_ptr<Storage> file);
  ~Statement();
  Statement(Statement&&) noexcept = default;
  void Commit();

 private:
  std::shared_ptr<Storage> file_;  // none once committed
};

}  // namespace marlevo::access
