#include "platform/access/system_tables.h"

#include <algorithm>
#include <utility>

#include "platform/access/access_error.h"
#include "platform/access/catalog.h"
#include "platform/access/cell.h"
#include "platform/access/database.h"
#include "platform/access/index_key.h"

namespace marlevo::access {

namespace {

constexpr std::uint16_t kGeneral = 0x0409;  // language of the "General" order
constexpr std::size_t kMaxTextLength = 255;
constexpr std::size_t kMaxBinaryLength = 255;
constexpr std::size_t kMaxIndexes = 32;

ColumnDefinition SystemColumn(const std::string& name, ColumnType type, std::uint8_t more_flags = 0) {
  ColumnDefinition column;
  column.shown = {.name = name, .type = type, .length = 0, .autonumber = false};
  const bool text_or_binary = type == ColumnType::kText || type == ColumnType::kBinary;
  column.fixed = !text_or_binary && !IsLongValue(type);
  column.stored_length = static_cast<std::uint16_t>(text_or_binary                 ? 2 * kMaxTextLength
                                                    : type == ColumnType::kBoolean ? 1
                                                                                   : WidthOf(type));
  column.flags = kColumnSystem | kColumnNullable | more_flags;
  return column;
}

void AddIndex(TableDefinition& table, const std::string& name, std::vector<IndexColumn> columns, std::uint8_t flags,
              IndexKind kind) {
  RealIndex real;
  real.columns = std::move(columns);
  real.flags = flags | kIndexJet4;
  LogicalIndex logical;
  logical.name = name;
  logical.number = logical.real_index = static_cast<std::uint32_t>(table.real_indexes.size());
  logical.kind = kind;
  table.real_indexes.push_back(std::move(real));
  table.logical_indexes.push_back(std::move(logical));
}

SystemTable Objects() {
  using enum ColumnType;
  SystemTable table{"MSysObjects", LayOutTable(kSystemTable, {
                                                                 SystemColumn("Id", kLong),
                                                                 SystemColumn("ParentId", kLong),
                                                                 SystemColumn("Name", kText),
                                                                 SystemColumn("Type", kInteger),
                                                                 SystemColumn("DateCreate", kDateTime),
                                                                 SystemColumn("DateUpdate", kDateTime),
                                                                 SystemColumn("Owner", kBinary, kColumnSid),
                                                                 SystemColumn("Flags", kLong),
                                                                 SystemColumn("Database", kMemo),
                                                                 SystemColumn("Connect", kMemo),
                                                                 SystemColumn("ForeignName", kText),
                                                                 SystemColumn("RmtInfoShort", kBinary),
                                                                 SystemColumn("RmtInfoLong", kOle),
                                                                 SystemColumn("Lv", kOle),
                                                                 SystemColumn("LvProp", kOle),
                                                                 SystemColumn("LvModule", kOle),
                                                                 SystemColumn("LvExtra", kOle),
                                                             })};
  AddIndex(table.definition, "ParentIdName", {{1, true}, {2, true}}, kIndexUnique, IndexKind::kNormal);
  AddIndex(table.definition, "Id", {{0, true}}, kIndexUnique, IndexKind::kPrimaryKey);
  return table;
}

SystemTable Permissions() {
  using enum ColumnType;
  SystemTable table{"MSysACEs", LayOutTable(kSystemTable, {
                                                              SystemColumn("ObjectId", kLong),
                                                              SystemColumn("SID", kBinary, kColumnSid),
                                                              SystemColumn("ACM", kLong),
                                                              SystemColumn("FInheritable", kBoolean),
                                                          })};
  AddIndex(table.definition, "ObjectId", {{0, true}}, kIndexRequired, IndexKind::kNormal);
  return table;
}

SystemTable Queries() {
  using enum ColumnType;
  SystemTable table{"MSysQueries", LayOutTable(kSystemTable, {
                                                                 SystemColumn("ObjectId", kLong),
                                                                 SystemColumn("Attribute", kByte),
                                                                 SystemColumn("Order", kBinary),
                                                                 SystemColumn("Name1", kText),
                                                                 SystemColumn("Name2", kText),
                                                                 SystemColumn("Expression", kMemo),
                                                                 SystemColumn("Flag", kInteger),
                                                                 SystemColumn("LvExtra", kLong),
                                                             })};
  AddIndex(table.definition, "ObjectIdAttribute", {{0, true}, {1, true}, {2, true}}, kIndexUnique,
           IndexKind::kPrimaryKey);
  return table;
}

SystemTable Relationships() {
  using enum ColumnType;
  SystemTable table{"MSysRelationships", LayOutTable(kSystemTable, {
                                                                       SystemColumn("szRelationship", kText),
                                                                       SystemColumn("grbit", kLong),
                                                                       SystemColumn("ccolumn", kLong),
                                                                       SystemColumn("icolumn", kLong),
                                                                       SystemColumn("szObject", kText),
                                                                       SystemColumn("szColumn", kText),
                                                                       SystemColumn("szReferencedObject", kText),
                                                                       SystemColumn("szReferencedColumn", kText),
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
    column.language = kGeneral;
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

ColumnDefinition NewColumn(const ColumnSchema& schema) {
  ColumnDefinition column;
  column.shown = {.name = schema.name, .type = schema.type, .length = schema.length, .autonumber = false};
  column.flags = kColumnNullable;
  switch (schema.type) {
    case ColumnType::kText:
      column.stored_length = static_cast<std::uint16_t>(2 * schema.length);
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

std::vector<SystemTable> SystemTables() {
  return {Objects(), Permissions(), Queries(), Relationships()};
}

std::vector<SystemObject> SystemObjects() {
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
  for (const SystemTable& table : SystemTables()) {
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
