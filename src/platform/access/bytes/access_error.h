// What goes wrong in an Access file: a damaged or foreign file, a feature that this engine does not keep right, a value
// that does not fit its column, a wrong password. What the disk refuses is a PagerError of the layer below.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/base/fault.h"

namespace marlevo::access {

class AccessError : public FaultError {
 public:
  // what() is `reason`, preceded by the page when there is one: "page 17: expected a data page, found type 4".
  explicit AccessError(const std::string& reason, Fault kind = Fault::kOther) : FaultError(kind, reason) {}
  AccessError(std::uint32_t page, const std::string& reason)
      : FaultError(Fault::kDamaged, "page " + std::to_string(page) + ": " + reason), page_(page) {}

  // The page that is not as it should be, if the fault lies in one.
  std::optional<std::uint32_t> Page() const { return page_; }

 private:
  std::optional<std::uint32_t> page_;
};

// A value that does not fit its column, or that an index or a relationship of the table forbids. Nothing was changed.
class ValueError : public AccessError {
  using AccessError::AccessError;
};

}  // namespace marlevo::access
