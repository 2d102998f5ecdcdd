// What the pager and the file layer under it throw: a file could not be read, written, synchronised, locked or
// repaired.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace marlevo::pager {

class PagerError : public std::runtime_error {
 public:
  // what() is "PATH: REASON" in UTF-8.
  PagerError(std::filesystem::path path, const std::string& reason);

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace marlevo::pager
