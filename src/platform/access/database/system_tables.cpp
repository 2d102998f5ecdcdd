#include "platform/access/database/system_tables.h"

#include <algorithm>
#include <utility>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/cell.h"
#include "platform/access/database/catalog.h"
#include "platform/access/database/database.h"
#include "platform/access/index/index_key.h"

namespace marlevo::access {

namespace {

constexpr std::size_t kMaxTextLength = 255;
constexpr std::size_t kMaxBinaryLength = 255;
constexpr std::size_t kMaxIndexes = 32;

// Bytes of a text column.
std::uint16_t TextSize(const Format& format, std::size_t characters) {
  return static_cast<std::uint16_t>(format.version == 3 ? characters : 2 * characters);
}

ColumnDefinition SystemColumn(const Format& format, const std::string& name, ColumnType type,
                              std::uint8_t more_flags = 0) {
  ColumnDefinition column;
  column.shown = {.name = name, .type = type, .length = 0, .autonumber = false};
  const bool text_or_binary = type == ColumnType::kText || type == ColumnType::kBinary;
  column.fixed = !text_or_binary && !IsLongValue(type);
  if (text_or_binary) {
    column.stored_length = TextSize(format, kMaxTextLength);  // Jet 4 doubles it for both
  } else {
    column.stored_length = static_cast<std::uint16_t>(type == ColumnType::kBoolean ? 1 : WidthOf(type));
  }
  column.flags = kColumnSystem | kColumnNullable | more_flags;
  return column;
}

void AddIndex(TableDefinition& table, const std::string& name, std::vector<IndexColumn> columns, std::uint8_t flags,
              IndexKind kind) {
  RealIndex real;
  real.columns = std::move(columns);
  real.flags = flags;
  LogicalIndex logical;
  logical.name = name;
  logical.number = logical.real_index = static_cast<std::uint32_t>(table.real_indexes.size());
  logical.kind = kind;
  table.real_indexes.push_back(std::move(real));
  table.logical_indexes.push_back(std::move(logical));
}

SystemTable Objects(const Format& format) {
  using enum ColumnType;
  SystemTable table{"MSysObjects", LayOutTable(kSystemTable, {
                                                                 SystemColumn(format, "Id", kLong),
                                                                 SystemColumn(format, "ParentId", kLong),
                                                                 SystemColumn(format, "Name", kText),
                                                                 SystemColumn(format, "Type", kInteger),
                                                                 SystemColumn(format, "DateCreate", kDateTime),
                                                                 SystemColumn(format, "DateUpdate", kDateTime),
                                                                 SystemColumn(format, "Owner", kBinary, kColumnSid),
                                                                 SystemColumn(format, "Flags", kLong),
                                                                 SystemColumn(format, "Database", kMemo),
                                                                 SystemColumn(format, "Connect", kMemo),
                                                                 SystemColumn(format, "ForeignName", kText),
                                                                 SystemColumn(format, "RmtInfoShort", kBinary),
                                                                 SystemColumn(format, "RmtInfoLong", kOle),
                                                                 SystemColumn(format, "Lv", kOle),
                                                                 SystemColumn(format, "LvProp", kOle),
                                                                 SystemColumn(format, "LvModule", kOle),
                                                                 SystemColumn(format, "LvExtra", kOle),
                                                             })};
  AddIndex(table.definition, "ParentIdName", {{1, true}, {2, true}}, kIndexUnique, IndexKind::kNormal);
  AddIndex(table.definition, "Id", {{0, true}}, kIndexUnique, IndexKind::kPrimaryKey);
  return table;
}

SystemTable Permissions(const Format& format) {
  using enum ColumnType;
  SystemTable table{"MSysACEs", LayOutTable(kSystemTable, {
                                                              SystemColumn(format, "ObjectId", kLong),
                                                              SystemColumn(format, "SID", kBinary, kColumnSid),
                                                              SystemColumn(format, "ACM", kLong),
                                                              SystemColumn(format, "FInheritable", kBoolean),
                                                          })};
  AddIndex(table.definition, "ObjectId", {{0, true}}, kIndexRequired, IndexKind::kNormal);
  return table;
}

SystemTable Queries(const Format& format) {
  using enum ColumnType;
  std::vector<ColumnDefinition> columns{
      SystemColumn(format, "ObjectId", kLong), SystemColumn(format, "Attribute", kByte),
      SystemColumn(format, "Order", kBinary),  SystemColumn(format, "Name1", kText),
      SystemColumn(format, "Name2", kText),    SystemColumn(format, "Expression", kMemo),
      SystemColumn(format, "Flag", kInteger),
  };
  if (format.version == 4) {
    columns.push_back(SystemColumn(format, "LvExtra", kLong));
  }
  SystemTable table{"MSysQueries", LayOutTable(kSystemTable, columns)};
  AddIndex(table.definition, "ObjectIdAttribute", {{0, true}, {1, true}, {2, true}}, kIndexUnique,
           IndexKind::kPrimaryKey);
  return table;
}

SystemTable Relationships(const Format& format) {
  using enum ColumnType;
  SystemTable table{"MSysRelationships",
                    LayOutTable(kSystemTable, {
                                                  SystemColumn(format, "szRelationship", kText),
                                                  SystemColumn(format, "grbit", kLong),
                                                  SystemColumn(format, "ccolumn", kLong),
                                                  SystemColumn(format, "icolumn", kLong),
                                                  SystemColumn(format, "szObject", kText),
                                                  SystemColumn(format, "szColumn", kText),
                                                  SystemColumn(format, "szReferencedObject", kText),
                                                  SystemColumn(format, "szReferencedColumn", kText),
                                              })};
  AddIndex(table.definition, "szRelationship", {{0, true}}, kIndexIgnoreNulls, IndexKind::kNormal);
  AddIndex(table.definition, "szObject", {{4, true}}, kIndexIgnoreNulls, IndexKind::kNormal);
  AddIndex(table.definition, "szReferencedObject", {{6, true}}, kIndexIgnoreNulls, IndexKind::kNormal);
  return table;
}

}  // namespace

TableDefinition LayOutTable(std::uint8_t table_type, const std::vector<ColumnDefinition>& columns) {
  TableDefinition table;
  table.type = table_type;
  table.columns = columns;
  std::uint16_t fixed_size = 0;
  for (ColumnDefinition& column : table.columns) {
    column.number = table.max_columns++;
    column.ordinal = table_type == kSystemTable ? 0 : column.number;
    column.language = kGeneralLanguage;
    column.variable_index = table.variable_columns;
    if (!column.fixed) {
      ++table.variable_columns;
    } else {
      column.flags |= kColumnFixed;
      if (column.shown.type != ColumnType::kBoolean) {
        column.fixed_offset = fixed_size;
        fixed_size = static_cast<std::uint16_t>(fixed_size + column.stored_length);
      }
    }
    if (IsLongValue(column.shown.type)) {
      table.long_value_maps.push_back({column.number, {}, {}});
    }
  }
  return table;
}

ColumnDefinition NewColumn(const Format& format, const ColumnSchema& schema) {
  ColumnDefinition column;
  column.shown = {.name = schema.name, .type = schema.type, .length = schema.length, .autonumber = false};
  column.flags = kColumnNullable;
  switch (schema.type) {
    case ColumnType::kText:
      column.stored_length = TextSize(format, schema.length);
      column.compressed = true;
      break;
    case ColumnType::kBinary:
      column.stored_length = static_cast<std::uint16_t>(schema.length);
      break;
    case ColumnType::kMemo:
      column.compressed = true;
      break;
    case ColumnType::kOle:
      break;
    case ColumnType::kBoolean:
      column.fixed = true;
      column.stored_length = 1;
      break;
    default:
      column.fixed = true;
      column.stored_length = static_cast<std::uint16_t>(WidthOf(schema.type));
      break;
  }
  const std::size_t longest = schema.type == ColumnType::kText     ? kMaxTextLength
                              : schema.type == ColumnType::kBinary ? kMaxBinaryLength
                                                                   : 0;
  if (longest != 0 && (schema.length == 0 || schema.length > longest)) {
    throw AccessError("column " + schema.name + " needs a length from 1 to " + std::to_string(longest));
  }
  if (!IsKnown(schema.type) || schema.type == ColumnType::kNumeric) {
    throw AccessError("column " + schema.name + " cannot be made: no such type in a new table");
  }
  return column;
}

void AddIndex(TableDefinition& table, const IndexSchema& schema) {
  std::vector<IndexColumn> columns;
  for (const IndexSchema::Part& part : schema.columns) {
    const auto column = std::ranges::find_if(
        table.columns, [&](const ColumnDefinition& c) { return SameName(c.shown.name, part.column); });
    if (column == table.columns.end() ||
        !KeyRefusal({part.column, column->shown.type, TextOrder::kGeneralJet4, part.descending}).empty()) {
      throw AccessError("index " + schema.name + " cannot be made of column " + part.column);
    }
    columns.push_back({column->number, !part.descending});
  }
  const bool taken = std::ranges::any_of(table.logical_indexes,
                                         [&](const LogicalIndex& other) { return SameName(other.name, schema.name); });
  if (taken || columns.empty() || columns.size() > kMaxIndexColumns || table.real_indexes.size() == kMaxIndexes) {
    throw AccessError("index " + schema.name + " cannot be made: its name is taken, or there are too many");
  }
  const bool primary = schema.primary_key;
  const auto flags = static_cast<std::uint8_t>((primary || schema.unique ? kIndexUnique : 0) |
                                               (primary || schema.required ? kIndexRequired : 0) |
                                               (schema.ignore_nulls ? kIndexIgnoreNulls : 0));
  AddIndex(table, schema.name, std::move(columns), flags, primary ? IndexKind::kPrimaryKey : IndexKind::kNormal);
}

std::vector<SystemTable> SystemTables(const Format& format) {
  return {Objects(format), Permissions(format), Queries(format), Relationships(format)};
}

Sid StoredSid(const Format& format, Sid sid) {
  return format.version == 3 ? sid : Sid{sid[0] ^ kSidMask[0], sid[1] ^ kSidMask[1]};
}

std::vector<SystemObject> SystemObjects(const Format& format) {
  constexpr std::uint32_t kSystem = 0x8000'0000;
  constexpr std::uint32_t kDatabasesId = kTablesId + 1;
  constexpr std::uint32_t kRelationshipsId = kTablesId + 2;
  std::vector<SystemObject> objects{
      {kTablesId, kRootId, "Tables", 3, kSystem, kEngineSid},
      {kDatabasesId, kRootId, "Databases", 3, kSystem, kEngineSid},
      {kRelationshipsId, kRootId, "Relationships", 3, kSystem, kEngineSid},
      {0x1000'0000, kDatabasesId, "MSysDb", 2, kSystem, kAdminSid},
  };
  std::uint32_t page = kObjectsPage;
  for (const SystemTable& table : SystemTables(format)) {
    objects.push_back({page++, kTablesId, table.name, 1, kSystem, kEngineSid});
  }
  return objects;
}

std::vector<Permission> SystemPermissions() {
  return {
      {2, kAdminSid, 0x60000, false},
      {3, kAdminSid, 0x60000, false},
      {4, kAdminSid, 0x60000, false},
      {5, kAdminSid, 0xE0000, false},
      {0x0F000001, kOwnerSid, 0xF00FE, true},
      {0x0F000001, kAdminSid, 0x60001, false},
      {0x0F000003, kOwnerSid, 0xF00FE, true},
      {0x0F000003, kAdminSid, 0x60001, false},
      {0x0F000002, kAdminSid, 0x60000, false},
      {0x10000000, kAdminSid, 0x6000E, false},
      {0x10000000, kUsersSid, 0x0E, false},
      {4, kUsersSid, 0x14, false},
      {5, kUsersSid, 0x14, false},
      {2, kUsersSid, 0x14, false},
      {0x0F000001, kUsersSid, 0xFFEFF, true},
      {0x0F000003, kUsersSid, 0xFFFFF, true},
  };
}

std::vector<Permission> UserTablePermissions(std::uint32_t page) {
  return {{page, kAdminSid, 0xFFEFF, false}, {page, kUsersSid, 0xFFEFF, false}};
}

}  // namespace marlevo::access
