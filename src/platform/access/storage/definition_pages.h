// A table's definition is longer than a page in wide tables: it is spread over a chain of pages.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/access/storage/storage.h"

namespace marlevo::access {

// The pages of a definition in turn.
std::vector<std::uint32_t> DefinitionPages(const Storage& file, std::uint32_t page);

// The joined bytes; what follows the definition on its last page is there, too.
std::vector<std::byte> ReadDefinitionPages(const Storage& file, std::uint32_t page);

// Writes a new definition to `page` and as many more as it needs, inside a statement.
void WriteDefinitionPages(Storage& file, std::uint32_t page, Bytes joined);

}  // namespace marlevo::access
