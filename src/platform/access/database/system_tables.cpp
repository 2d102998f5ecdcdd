#include "platform/access/database/system_tables.h"

#include <algorithm>
#include <utility>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/cell.h"
#include "platform/access/database/catalog.h"
#include "platform/access/database/database.h"
#include "platform/access/index/index_key.h"
#include "platform/base/text.h"

namespace marlevo::access {

namespace {

constexpr std::size_t kMaxLength = 255;  // characters of a Text column, bytes of a Binary one
constexpr std::size_t kMaxIndexes = 32;

// Objects below the root.
constexpr std::uint32_t kDatabasesId = kTablesId + 1;
constexpr std::uint32_t kRelationshipsId = kTablesId + 2;
constexpr std::uint32_t kDatabaseId = 0x1000'0000;  // the object "MSysDb", which stands for the file as a whole

// Rights: the bits of the column ACM in MSysACEs. What the low bits mean depends on the kind of object.
constexpr std::uint32_t kCreateObjects = 0x0'0001;  // in a container: make tables or relationships
constexpr std::uint32_t kUseDatabase = 0x0'000E;    // of the file: open it, open it exclusively, administer it
constexpr std::uint32_t kReadTable = 0x0'0014;      // of a table: read its design and its rows
constexpr std::uint32_t kUseTable = 0x0'00FE;       // of a table: read and change its design and its rows
constexpr std::uint32_t kOpenForms = 0x0'0100;      // means something only for forms and reports
constexpr std::uint32_t kManageRights = 0x6'0000;   // of any object: see and change the rights to it
constexpr std::uint32_t kChangeOwner = 0x8'0000;    // of any object: give it another owner
constexpr std::uint32_t kOwnObject = 0xF'0000;      // of any object: the rights above, and delete it
constexpr std::uint32_t kAllRights = 0xF'FFFF;
constexpr std::uint32_t kAllTableRights = kAllRights & ~kOpenForms;

// Bytes of a text column.
std::size_t TextSize(const Format& format, std::size_t characters) {
  return format.version == 3 ? characters : 2 * characters;
}

ColumnDefinition SystemColumn(const Format& format, const std::string& name, ColumnType type,
                              std::uint8_t more_flags = 0) {
  ColumnDefinition column;
  column.shown = {.name = name, .type = type, .length = 0, .autonumber = false};
  const bool text_or_binary = type == ColumnType::kText || type == ColumnType::kBinary;
  column.fixed = !text_or_binary && !IsLongValue(type);
  if (text_or_binary) {
    column.stored_length = TextSize(format, kMaxLength);  // Jet 4 doubles the length of Binary columns, too
  } else {
    column.stored_length = type == ColumnType::kBoolean ? 1 : WidthOf(type);
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
  logical.number = logical.real_index = table.real_indexes.size();
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
  std::size_t fixed_size = 0;
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
        fixed_size += column.stored_length;
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
      column.stored_length = schema.length;
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
      column.stored_length = WidthOf(schema.type);
      break;
  }
  const bool has_length = schema.type == ColumnType::kText || schema.type == ColumnType::kBinary;
  if (has_length && (schema.length == 0 || schema.length > kMaxLength)) {
    throw AccessError("column " + schema.name + " needs a length from 1 to " + std::to_string(kMaxLength));
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
  std::uint8_t flags = 0;
  if (primary || schema.unique) {
    flags |= kIndexUnique;
  }
  if (primary || schema.required) {
    flags |= kIndexRequired;
  }
  if (schema.ignore_nulls) {
    flags |= kIndexIgnoreNulls;
  }
  AddIndex(table, schema.name, std::move(columns), flags, primary ? IndexKind::kPrimaryKey : IndexKind::kNormal);
}

std::vector<SystemTable> SystemTables(const Format& format) {
  return {Objects(format), Permissions(format), Queries(format), Relationships(format)};
}

Sid StoredSid(const Format& format, Sid sid) {
  return format.version == 3 ? sid : Sid{sid[0] ^ kSidMask[0], sid[1] ^ kSidMask[1]};
}

std::vector<SystemObject> SystemObjects(const Format& format) {
  std::vector<SystemObject> objects{
      {kTablesId, kRootId, "Tables", kContainer, kSystemObject, kEngineSid},
      {kDatabasesId, kRootId, "Databases", kContainer, kSystemObject, kEngineSid},
      {kRelationshipsId, kRootId, "Relationships", kContainer, kSystemObject, kEngineSid},
      {kDatabaseId, kDatabasesId, "MSysDb", kWholeFile, kSystemObject, kAdminSid},
  };
  std::uint32_t page = kObjectsPage;
  for (const SystemTable& table : SystemTables(format)) {
    objects.push_back({page++, kTablesId, table.name, kLocalTable, kSystemObject, kEngineSid});
  }
  return objects;
}

// The rights in a new file. Users may read the system tables except MSysACEs, and change none of them. In the
// containers they may do everything, and the objects made there inherit that: every user may read and change a new
// table.
std::vector<Permission> SystemPermissions() {
  constexpr std::uint32_t kObjects = kObjectsPage;
  constexpr std::uint32_t kPermissions = kObjectsPage + 1;
  constexpr std::uint32_t kQueries = kObjectsPage + 2;
  constexpr std::uint32_t kRelationships = kObjectsPage + 3;
  return {
      {kObjects, kAdminSid, kManageRights, false},
      {kPermissions, kAdminSid, kManageRights, false},
      {kQueries, kAdminSid, kManageRights, false},
      {kRelationships, kAdminSid, kManageRights | kChangeOwner, false},
      {kTablesId, kOwnerSid, kOwnObject | kUseTable, true},
      {kTablesId, kAdminSid, kManageRights | kCreateObjects, false},
      {kRelationshipsId, kOwnerSid, kOwnObject | kUseTable, true},
      {kRelationshipsId, kAdminSid, kManageRights | kCreateObjects, false},
      {kDatabasesId, kAdminSid, kManageRights, false},
      {kDatabaseId, kAdminSid, kManageRights | kUseDatabase, false},
      {kDatabaseId, kUsersSid, kUseDatabase, false},
      {kQueries, kUsersSid, kReadTable, false},
      {kRelationships, kUsersSid, kReadTable, false},
      {kObjects, kUsersSid, kReadTable, false},
      {kTablesId, kUsersSid, kAllTableRights, true},
      {kRelationshipsId, kUsersSid, kAllRights, true},
  };
}

std::vector<Permission> UserTablePermissions(std::uint32_t page) {
  return {{page, kAdminSid, kAllTableRights, false}, {page, kUsersSid, kAllTableRights, false}};
}

}  // namespace marlevo::access
