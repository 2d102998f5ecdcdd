// The pages of a table's definition. The definition of a table with many columns does not fit on one page, so it is
// spread over a chain of pages, each of which holds the number of the next.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/access/storage/storage.h"

namespace marlevo::access {

// The numbers of the pages in the chain that begins at `page`.
std::vector<std::uint32_t> DefinitionPages(const Storage& file, std::uint32_t page);

// The joined content of the chain, up to the end of its last page.
std::vector<std::byte> ReadDefinitionPages(const Storage& file, std::uint32_t page);

// Writes a new definition to `page` and takes as many more pages as it needs. Inside a statement.
void WriteDefinitionPages(Storage& file, std::uint32_t page, Bytes joined);

}  // namespace marlevo::access
