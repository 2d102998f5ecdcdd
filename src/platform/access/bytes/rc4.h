// The cipher of the file header and of encoded pages.
#pragma once

#include <cstddef>
#include <span>

namespace marlevo::access {

// Encodes or decodes `data` in place: applied twice with the same key it restores the data. `key` is not empty.
void ApplyRc4(std::span<const std::byte> key, std::span<std::byte> data);

}  // namespace marlevo::access
