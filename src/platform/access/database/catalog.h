// The catalog of a file: the table MSysObjects, which has a row for every object (table, query, form ...) of the file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access/storage/storage.h"

namespace marlevo::access {

struct CatalogEntry {
  std::string name;
  std::int16_t type;
  std::uint32_t flags;
  std::uint32_t page;  // first page of a local table's definition
};

// CatalogEntry::type.
inline constexpr std::int16_t kLocalTable = 1;
inline constexpr std::int16_t kWholeFile = 2;
inline constexpr std::int16_t kContainer = 3;  // "Tables", "Databases" ...: the parent of objects
inline constexpr std::int16_t kLinkedOdbcTable = 4;
inline constexpr std::int16_t kQuery = 5;
inline constexpr std::int16_t kLinkedTable = 6;

inline constexpr std::uint32_t kSystemObject = 0x8000'0000;  // a bit of CatalogEntry::flags

std::vector<CatalogEntry> ReadCatalog(const std::shared_ptr<Storage>& file);

// Whether the entry is a local table that a user made, not one of the system's.
bool IsUserTable(const CatalogEntry& entry);

// Throws AccessError when there is no local table of that name.
CatalogEntry FindTable(const std::shared_ptr<Storage>& file, std::string_view name);

// The properties of a local table, which the catalog keeps outside the definition (see properties.h); often empty.
std::vector<std::byte> StoredProperties(const std::shared_ptr<Storage>& file, const CatalogEntry& table);

}  // namespace marlevo::access
