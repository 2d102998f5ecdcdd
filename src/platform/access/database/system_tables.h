// The tables that every Access file has, as a new file gets them, and how new tables are laid out in general.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access/bytes/table_definition.h"

namespace marlevo::access {

// A definition without pages and maps. Columns get their places in the order given.
TableDefinition LayOutTable(std::uint8_t table_type, const std::vector<ColumnDefinition>& columns);

// A column of a user's table; LayOutTable does the rest. Throws AccessError for a type or length that cannot be made.
ColumnDefinition NewColumn(const Format& format, const ColumnSchema& schema);

// To a table that LayOutTable has made. Throws AccessError when there can be no such index.
void AddIndex(TableDefinition& table, const IndexSchema& schema);

struct SystemTable {
  std::string name;
  TableDefinition definition;
};

// In the order of their pages, from kObjectsPage on.
std::vector<SystemTable> SystemTables(const Format& format);

// Who may do what with an object. A file's own users and groups are two bytes. Jet 4 combines them with a number that
// belongs to the file's creation date; which one is known for a few dates only, so that a new file takes one of those.
using Sid = std::array<std::byte, 2>;
inline constexpr Sid kEngineSid{std::byte{0x02}, std::byte{0x03}};
inline constexpr Sid kAdminSid{std::byte{0x03}, std::byte{0x01}};
inline constexpr Sid kUsersSid{std::byte{0x02}, std::byte{0x01}};
inline constexpr Sid kOwnerSid{std::byte{0x02}, std::byte{0x04}};
inline constexpr std::array kCreationDate{std::byte{0xBC}, std::byte{0x72}, std::byte{0x1F}, std::byte{0x7D},
                                          std::byte{0xF1}, std::byte{0x9F}, std::byte{0xE2}, std::byte{0x40}};
inline constexpr Sid kSidMask{std::byte{0xA5}, std::byte{0x32}};  // of that date
Sid StoredSid(const Format& format, Sid sid);

// Rows of MSysObjects.
inline constexpr std::size_t kPropertiesColumn = 14;  // "LvProp": see properties.h
inline constexpr std::uint32_t kRootId = 0x0F00'0000;
inline constexpr std::uint32_t kTablesId = 0x0F00'0001;

struct SystemObject {
  std::uint32_t id;
  std::uint32_t parent;
  std::string name;
  std::int16_t type;
  std::uint32_t flags;
  Sid owner;
};
std::vector<SystemObject> SystemObjects(const Format& format);

// Rows of MSysACEs.
struct Permission {
  std::uint32_t object;
  Sid who;
  std::uint32_t rights;
  bool inheritable;
};
std::vector<Permission> SystemPermissions();
std::vector<Permission> UserTablePermissions(std::uint32_t page);

}  // namespace marlevo::access
