// A table's definition as the file holds it: columns with their places in a row, indexes, maps.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/data_page.h"
#include "platform/access/bytes/format.h"
#include "platform/access/bytes/schema.h"
#include "platform/access/bytes/text_codec.h"

namespace marlevo::access {

struct ColumnDefinition {
  Column shown;                      // what callers see; the name too
  std::uint16_t number = 0;          // bit in the null mask; how indexes name the column; never changes
  std::uint16_t ordinal = 0;         // place in which Access shows it
  bool fixed = false;                // in the fixed area, otherwise variable; decided by its flag, whatever the type
  std::uint16_t fixed_offset = 0;    // from the start of the fixed area
  std::uint16_t variable_index = 0;  // a fixed column stores the number of variable columns before it
  std::uint16_t stored_length = 0;   // bytes
  std::uint8_t flags = 0;
  bool compressed = false;     // Jet 4 texts may take the shorter form
  std::uint8_t precision = 0;  // Numeric
  std::uint8_t scale = 0;
  std::uint16_t language = 0;
  std::uint16_t code_page = 0;    // Jet 3
  std::uint8_t sort_version = 0;  // Jet 4
};

// Column flags.
inline constexpr std::uint8_t kColumnFixed = 0x01;
inline constexpr std::uint8_t kColumnNullable = 0x02;
inline constexpr std::uint8_t kColumnAutonumber = 0x04;
inline constexpr std::uint8_t kColumnSystem = 0x10;
inline constexpr std::uint8_t kColumnSid = 0x20;
inline constexpr std::uint8_t kColumnAutonumberGuid = 0x40;

// Index flags.
inline constexpr std::uint8_t kIndexUnique = 0x01;
inline constexpr std::uint8_t kIndexIgnoreNulls = 0x02;
inline constexpr std::uint8_t kIndexRequired = 0x08;
inline constexpr std::uint8_t kIndexJet4 = 0x80;  // always there in Jet 4; BuildDefinition adds it

inline constexpr std::uint8_t kSystemTable = 0x53;
inline constexpr std::uint8_t kUserTable = 0x4E;

struct IndexColumn {
  std::uint16_t number;  // ColumnDefinition::number
  bool ascending;
};

// A tree of keys.
struct RealIndex {
  std::vector<IndexColumn> columns;
  RowPointer owned_map;
  std::uint32_t root = 0;
  std::uint8_t flags = 0;
  std::uint32_t keys = 0;  // different ones, as the file counts them
};

// A name for a real index; several may share one. Relationships are logical indexes too.
enum class IndexKind : std::uint8_t { kNormal = 0, kPrimaryKey = 1, kForeignKey = 2 };

struct LogicalIndex {
  std::string name;
  std::uint32_t number = 0;
  std::uint32_t real_index = 0;
  std::uint8_t related_type = 0;
  std::int32_t related_index = -1;
  std::uint32_t related_table = 0;   // its definition page
  std::uint8_t cascade_updates = 4;  // 4 means that it is not a foreign key
  std::uint8_t cascade_deletes = 4;
  IndexKind kind = IndexKind::kNormal;
};

// Pages of a Memo or Ole column's values.
struct LongValueMaps {
  std::uint16_t column = 0;  // ColumnDefinition::number
  RowPointer owned;
  RowPointer free;
};

struct TableDefinition {
  std::uint8_t type = kUserTable;
  std::uint32_t rows = 0;
  std::uint32_t last_autonumber = 0;
  std::uint16_t max_columns = 0;       // columns that ever were: the width of a new row's null mask
  std::uint16_t variable_columns = 0;  // variable ones that ever were
  RowPointer owned_map;
  RowPointer free_map;
  std::vector<ColumnDefinition> columns;  // in shown order
  std::vector<RealIndex> real_indexes;
  std::vector<LogicalIndex> logical_indexes;
  std::vector<LongValueMaps> long_value_maps;

  const ColumnDefinition* FindColumn(std::uint16_t number) const;  // null when there is none
};

// Reads the joined pages of a definition. `page` is the first one, for errors.
TableDefinition ParseDefinition(const Format& format, const TextCodec& text, std::uint32_t page, Bytes joined);

// The joined bytes of a new definition, its own header included; the length is the vector's.
std::vector<std::byte> BuildDefinition(const Format& format, const TextCodec& text, const TableDefinition& table);

}  // namespace marlevo::access
