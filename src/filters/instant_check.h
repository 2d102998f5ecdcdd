// The instant prize check of the current list against a drawn number.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tickets/tickets.h"

namespace marlevo {

struct InstantResult {
  PerKind<int> winners{};          // 0 where the kind is not ticked
  PerKind<std::int64_t> prizes{};  // in yuan
  std::vector<std::string> lines;  // the result list, UTF-8
};

// `drawn`: the drawn digits, 0 to 9, from first to fourth; three-digit kinds are compared with the first three. A
// ticket of any kind wins when every digit equals the drawn one in the same position; an empty cell reads as 0. In the
// lists of the ticked kinds the winners become yellow and all other tickets white; other lists keep their colours.
InstantResult CheckInstantly(CurrentList& list, const std::array<int, 4>& drawn);

}  // namespace marlevo
