// What the pager and the file layer under it throw: a file could not be read, written, synchronised, locked or
// repaired.
#pragma once

#include <filesystem>
#include <string>

#include "platform/base/fault.h"

namespace marlevo::pager {

// A path as UTF-8, for messages that the operator reads.
std::string Utf8(const std::filesystem::path& path);

class PagerError : public FaultError {
 public:
  // what() is "PATH: REASON" in UTF-8.
  PagerError(std::filesystem::path path, const std::string& reason, Fault kind = Fault::kOther);

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace marlevo::pager
