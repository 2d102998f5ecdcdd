// The four system tables of a new file with their rows, and the layout of new tables in general:
//
//   MSysObjects         the catalog: a row for each object
//   MSysACEs            the rights: who may do what with an object
//   MSysQueries         the parts of saved queries; empty in a new file
//   MSysRelationships   the relationships between tables; empty in a new file
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access/bytes/table_definition.h"

namespace marlevo::access {

// Layout of tables.

// A definition without pages and maps. The columns get their places in the order given.
TableDefinition LayOutTable(std::uint8_t table_type, const std::vector<ColumnDefinition>& columns);

// A column of a user's table, to be given to LayOutTable, which sets its place. Throws AccessError for a type or length
// that is not possible.
ColumnDefinition NewColumn(const Format& format, const ColumnSchema& schema);

// Adds an index to a table that LayOutTable has made. Throws AccessError when such an index is not possible.
void AddIndex(TableDefinition& table, const IndexSchema& schema);

// The system tables themselves.

struct SystemTable {
  std::string name;
  TableDefinition definition;
};

// In the order of their pages, from kObjectsPage on.
std::vector<SystemTable> SystemTables(const Format& format);

// Users and groups.

// A Sid stands for a user or a group that every file has. Jet 4 stores the two bytes combined by XOR with a mask that
// belongs to the file's creation date. How the mask follows from the date is not known, so every new file gets the same
// date, for which the mask is known. Example: the administrator is 03 01 in Jet 3, and A6 33 in a new Jet 4 file.
using Sid = std::array<std::byte, 2>;
inline constexpr Sid kEngineSid{std::byte{0x02}, std::byte{0x03}};
inline constexpr Sid kAdminSid{std::byte{0x03}, std::byte{0x01}};
inline constexpr Sid kUsersSid{std::byte{0x02}, std::byte{0x01}};
inline constexpr Sid kOwnerSid{std::byte{0x02}, std::byte{0x04}};
inline constexpr std::array kCreationDate{std::byte{0xBC}, std::byte{0x72}, std::byte{0x1F}, std::byte{0x7D},
                                          std::byte{0xF1}, std::byte{0x9F}, std::byte{0xE2}, std::byte{0x40}};
inline constexpr Sid kSidMask{std::byte{0xA5}, std::byte{0x32}};  // the mask that belongs to kCreationDate
Sid StoredSid(const Format& format, Sid sid);

// Rows of MSysObjects.
inline constexpr std::size_t kPropertiesColumn = 14;  // "LvProp": see properties.h
// Objects without a page have these numbers; a table's number is the page of its definition.
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
  std::uint32_t object;  // SystemObject::id
  Sid who;
  std::uint32_t rights;  // bits, named in system_tables.cpp
  bool inheritable;      // objects made below this one get the same rights
};
std::vector<Permission> SystemPermissions();
std::vector<Permission> UserTablePermissions(std::uint32_t page);

}  // namespace marlevo::access
