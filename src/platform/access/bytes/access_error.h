// The errors of an Access file: a damaged or foreign file, a feature that this engine cannot keep correct, a value that
// does not fit its column, a wrong password. Failures of the disk are PagerErrors, from the layer below.
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

  // The damaged page, if the error concerns a single page.
  std::optional<std::uint32_t> Page() const { return page_; }

 private:
  std::optional<std::uint32_t> page_;
};

// A value that does not fit its column, or that an index or a relationship of the table forbids. When this is thrown
// the file is unchanged, and a statement that is open may go on.
class ValueError : public AccessError {
  using AccessError::AccessError;
};

}  // namespace marlevo::access
