// Failures of files, the database and the printer. Windows do not catch them: they are shown once, by the error report
// at the top of the program, so each carries everything that the operator has to know.
#pragma once

#include <string>
#include <utility>

#include "platform/base/fault.h"

namespace marlevo {

class OperationError : public FaultError {
 public:
  // `attempted`: what was being done, in the operator's language ("讀取列印設定"); `subject`: the file or printer;
  // `reason`: technical words, given by what(); `outcome`: what became of the operator's data, a sentence in the
  // operator's language, empty when the data is as before. All UTF-8.
  OperationError(std::string attempted, std::string subject, const std::string& reason, Fault kind = Fault::kOther,
                 std::string outcome = {})
      : FaultError(kind, reason),
        attempted_(std::move(attempted)),
        subject_(std::move(subject)),
        outcome_(std::move(outcome)) {}

  const std::string& Attempted() const { return attempted_; }
  const std::string& Subject() const { return subject_; }
  const std::string& Outcome() const { return outcome_; }

 private:
  std::string attempted_;
  std::string subject_;
  std::string outcome_;
};

class FileError : public OperationError {
  using OperationError::OperationError;
};

class DatabaseError : public OperationError {
  using OperationError::OperationError;
};

class PrinterError : public OperationError {
  using OperationError::OperationError;
};

}  // namespace marlevo
