#include "platform/pager/pager_error.h"

#include <utility>

namespace marlevo::pager {

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

PagerError::PagerError(std::filesystem::path path, const std::string& reason, Fault kind)
    : FaultError(kind, Utf8(path) + ": " + reason), path_(std::move(path)) {}

}  // namespace marlevo::pager
