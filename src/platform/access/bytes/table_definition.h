// A table's definition as the file holds it: columns with their places in a row, indexes, maps. The bytes of a
// definition are, part by part:
//
//   header              counts of rows, columns and indexes, the last AutoNumber, the table's usage maps
//   index counters      for each real index, how many different keys it has
//   columns             one descriptor of fixed size for each column
//   column names        in the same order
//   real indexes        for each tree of keys: its columns, its usage map, its root page, its flags
//   logical indexes     for each name or relationship: the real index that it uses
//   index names         of the logical indexes, in the same order
//   long-value maps     for each Memo or Ole column: its two usage maps; then an end mark
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
  Column shown;                      // what callers see of the column, its name included
  std::uint16_t number = 0;          // identifies the column for ever: its bit in the null mask, its name in indexes
  std::uint16_t ordinal = 0;         // its place in the order in which Access shows the columns
  bool fixed = false;                // kept in the fixed area of a row; the flag kColumnFixed decides, not the type
  std::size_t fixed_offset = 0;      // of a fixed column, from the start of the fixed area
  std::uint16_t variable_index = 0;  // its place among the variable values; in a fixed column, how many come before it
  std::size_t stored_length = 0;     // bytes
  std::uint8_t flags = 0;
  bool compressed = false;     // Jet 4 texts may have the short form
  std::uint8_t precision = 0;  // digits of a Numeric
  std::uint8_t scale = 0;      // of these, digits after the decimal point
  std::uint16_t language = 0;
  int code_page = 0;              // Jet 3
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
inline constexpr std::uint8_t kIndexJet4 = 0x80;  // every Jet 4 index has this flag; BuildDefinition adds it

// TableDefinition::type.
inline constexpr std::uint8_t kSystemTable = 0x53;
inline constexpr std::uint8_t kUserTable = 0x4E;

struct IndexColumn {
  std::uint16_t number;  // ColumnDefinition::number
  bool ascending;
};

// One tree of keys in the file.
struct RealIndex {
  std::vector<IndexColumn> columns;
  RowPointer owned_map;
  std::uint32_t root = 0;
  std::uint8_t flags = 0;
  std::uint32_t keys = 0;  // how many different keys the tree has, according to the stored count
};

// A name for a real index, or one side of a relationship. Several logical indexes may use the same real index.
enum class IndexKind : std::uint8_t { kNormal = 0, kPrimaryKey = 1, kForeignKey = 2 };

struct LogicalIndex {
  std::string name;
  std::size_t number = 0;
  std::size_t real_index = 0;
  std::uint8_t related_type = 0;
  std::uint32_t related_index = 0xFFFF'FFFF;  // LogicalIndex::number there; this value for none
  std::uint32_t related_table = 0;            // its definition page
  std::uint8_t cascade_updates = 4;           // 4 means that it is not a foreign key
  std::uint8_t cascade_deletes = 4;
  IndexKind kind = IndexKind::kNormal;
};

// The usage maps of the pages that hold the values of a Memo or Ole column.
struct LongValueMaps {
  std::uint16_t column = 0;  // ColumnDefinition::number
  RowPointer owned;
  RowPointer free;
};

struct TableDefinition {
  std::uint8_t type = kUserTable;
  std::uint32_t rows = 0;
  std::int32_t last_autonumber = 0;
  std::uint16_t max_columns = 0;       // columns, deleted ones included: the bits of a new row's null mask
  std::uint16_t variable_columns = 0;  // variable columns, deleted ones included
  RowPointer owned_map;
  RowPointer free_map;
  std::vector<ColumnDefinition> columns;  // in the order in which Access shows them
  std::vector<RealIndex> real_indexes;
  std::vector<LogicalIndex> logical_indexes;
  std::vector<LongValueMaps> long_value_maps;

  const ColumnDefinition* FindColumn(std::uint16_t number) const;  // null when there is none
};

// Reads a definition from the joined content of its pages. `page` is the first of them, named in errors.
TableDefinition ParseDefinition(const Format& format, const TextCodec& text, std::uint32_t page, Bytes joined);

// The bytes of a new definition, to be spread over pages. The length that the header states is the vector's size.
std::vector<std::byte> BuildDefinition(const Format& format, const TextCodec& text, const TableDefinition& table);

}  // namespace marlevo::access
