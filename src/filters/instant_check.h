// The instant prize check of the current list against a drawn number.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tickets/tickets.h"

namespace marlevo {

// Per kind, 0 where the kind is not ticked.
struct InstantResult {
  std::array<double, kBetKinds> winners{};
  std::array<double, kBetKinds> prizes{};  // in yuan
  std::vector<std::string> lines;          // the result list, UTF-8
};

// `drawn`: the drawn digits from first to fourth as shown in their lists; three-digit kinds are compared with the first
// three. A ticket of any kind wins when every digit equals the drawn one in its place, as numbers, an empty cell
// reading as 0. Paints the winners yellow and all other tickets white in the lists of the ticked kinds; other lists
// keep their colours.
InstantResult CheckInstantly(CurrentList& list, const std::array<std::string, 4>& drawn);

}  // namespace marlevo
