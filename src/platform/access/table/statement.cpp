#include "platform/access/table/statement.h"

namespace marlevo::access {

Statement::Statement(std::shared_ptr<Storage> file) : file_(std::move(file)) {
  file_->Begin();
}

Statement::~Statement() {
  if (file_ != nullptr) {
    file_->Rollback();
  }
}

void Statement::Commit() {
  file_->Commit();
  file_.reset();
}

}  // namespace marlevo::access
