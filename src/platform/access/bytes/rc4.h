// The cipher of the file header and of encoded pages.
#pragma once

#include <cstddef>
#include <span>

namespace marlevo::access {

// Combines `data` with the key's stream from its start; applied twice it gives the data back. `key` is not empty.
void ApplyRc4(std::span<const std::byte> key, std::span<std::byte> data);

}  // namespace marlevo::access
