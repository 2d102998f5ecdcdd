#include "platform/access/database/create.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <string>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/data_page.h"
#include "platform/access/database/catalog.h"
#include "platform/access/database/database.h"
#include "platform/access/index/index_tree.h"
#include "platform/access/storage/definition_pages.h"
#include "platform/access/storage/global_map.h"
#include "platform/access/storage/storage.h"
#include "platform/access/table/loaded_table.h"
#include "platform/base/text.h"

namespace marlevo::access {

namespace {

// The local time as the value of a DateTime column. A build that is to give the same files each time states a time in
// the environment (SOURCE_DATE_EPOCH), which is then taken instead of the clock's.
double Now() {
  const char* const stated = std::getenv("SOURCE_DATE_EPOCH");
  const std::time_t now = stated ? std::strtoll(stated, nullptr, 10) : std::time(nullptr);
  const std::tm local = *std::localtime(&now);
  const std::chrono::sys_days day =
      std::chrono::year{local.tm_year + 1900} / std::chrono::month(local.tm_mon + 1) / std::chrono::day(local.tm_mday);
  const std::chrono::sys_days origin = std::chrono::year{1899} / 12 / 30;
  const int seconds = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
  return static_cast<double>((day - origin).count()) + seconds / 86400.0;
}

std::int64_t SignedId(std::uint32_t id) {
  return static_cast<std::int32_t>(id);
}

}  // namespace

Creator::Creator(Storage& file, const NewFile& kind, std::string_view password)
    : file_(file), format_(file.Layout()), kind_(kind), now_(Now()) {
  WriteHeaderPage(password);
  WriteMapOfFile();
  std::vector<SystemTable> tables = SystemTables(format_);
  for (std::size_t i = 0; i < tables.size(); ++i) {
    file_.Pages().Append();  // the header fixes the pages of their definitions
  }
  for (std::uint32_t page = 0; page < file_.Pages().PageCount(); ++page) {
    GlobalMap(file_).Remove(page);
  }
  std::uint32_t page = kObjectsPage;
  for (SystemTable& table : tables) {
    for (ColumnDefinition& column : table.definition.columns) {
      column.code_page = kind_.code_page;
    }
    WriteDefinition(page++, table.definition);
  }
  objects_ = LoadedTable::Open(file_.shared_from_this(), kObjectsPage, "MSysObjects");
  permissions_ = LoadedTable::Open(file_.shared_from_this(), kObjectsPage + 1, "MSysACEs");
  for (const SystemObject& object : SystemObjects(format_)) {
    Register(object);
  }
  Permit(SystemPermissions());
}

void Creator::WriteHeaderPage(std::string_view password) {
  std::vector<std::byte> stored;
  const std::optional<std::size_t> length = file_.CodecFor(0).Encode(password, false, stored);
  if (!length || stored.size() > format_.password_size) {
    throw AccessError("a password has at most 20 characters");
  }
  const pager::PageEdit edit = file_.Change(file_.Pages().Append());
  WriteHeader({.format = &format_,
               .encoding_key = kind_.encoding_key,
               .code_page = kind_.code_page,
               .password = std::string(AsText(stored))},
              kCreationDate, edit.Bytes());
}

void Creator::WriteMapOfFile() {
  const pager::PageEdit edit = file_.Change(file_.Pages().Append());
  FormatDataPage(format_, edit.Bytes(), kOwnerGlobalMap);
  std::vector<std::byte> row(format_.usual_map_row);
  std::fill(row.begin() + 5, row.end(), std::byte{0xFF});
  AppendRow(format_, edit.Bytes(), row);
  // Every file has this second row; its use is not known.
  AppendRow(format_, edit.Bytes(), std::vector<std::byte>(row.size()));
}

void Creator::AddTable(const std::string& name, TableDefinition definition, Bytes properties) {
  const std::uint32_t page = file_.TakePage();
  WriteDefinition(page, definition);
  Register({page, kTablesId, name, kLocalTable, 0, kAdminSid}, properties);
  Permit(UserTablePermissions(page));
}

void Creator::WriteDefinition(std::uint32_t page, TableDefinition& definition) {
  definition.owned_map = NewMap();
  definition.free_map = NewMap();
  for (LongValueMaps& maps : definition.long_value_maps) {
    maps.owned = NewMap();
    maps.free = NewMap();
  }
  for (RealIndex& index : definition.real_indexes) {
    index.owned_map = NewMap();
    index.root = file_.TakePage();
    UsageMap(file_, index.owned_map).Add(index.root);
    IndexTree(file_, page, index.root, index.owned_map).Clear();
  }
  WriteDefinitionPages(file_, page, BuildDefinition(format_, file_.CodecFor(0), definition));
}

RowPointer Creator::NewMap() {
  const std::vector<std::byte> row(format_.usual_map_row);
  if (map_page_ != 0) {
    const pager::PageEdit edit = file_.Change(map_page_);
    if (DataPage(format_, map_page_, edit.Bytes()).Room() >= row.size() + 2) {
      return {map_page_, AppendRow(format_, edit.Bytes(), row)};
    }
  }
  map_page_ = file_.TakePage();
  const pager::PageEdit edit = file_.Change(map_page_);
  FormatDataPage(format_, edit.Bytes(), kOwnerUsageMaps);
  return {map_page_, AppendRow(format_, edit.Bytes(), row)};
}

void Creator::Register(const SystemObject& object, Bytes properties) {
  std::vector<Value> row(objects_->Columns().size());
  row[0] = SignedId(object.id);
  row[1] = SignedId(object.parent);
  row[2] = object.name;
  row[3] = std::int64_t{object.type};
  row[4] = now_;
  row[5] = now_;
  const Sid owner = StoredSid(format_, object.owner);
  row[6] = Bytes(owner);
  row[7] = SignedId(object.flags);
  if (!properties.empty()) {
    row[kPropertiesColumn] = properties;
  }
  objects_->Insert(row);
}

void Creator::Permit(const std::vector<Permission>& permissions) {
  for (const Permission& permission : permissions) {
    const Sid who = StoredSid(format_, permission.who);
    const std::array<Value, 4> row{SignedId(permission.object), Bytes(who), SignedId(permission.rights),
                                   permission.inheritable};
    permissions_->Insert(row);
  }
}

namespace {

void CheckNames(const std::vector<TableSchema>& tables) {
  for (auto table = tables.begin(); table != tables.end(); ++table) {
    if (table->name.empty() || table->name.starts_with("MSys") || table->columns.empty() ||
        std::any_of(tables.begin(), table,
                    [&](const TableSchema& other) { return SameName(other.name, table->name); })) {
      throw AccessError("table \"" + table->name + "\" cannot be made: it has no columns, or its name is taken");
    }
    const auto& columns = table->columns;
    for (auto column = columns.begin(); column != columns.end(); ++column) {
      if (std::any_of(columns.begin(), column,
                      [&](const ColumnSchema& other) { return SameName(other.name, column->name); })) {
        throw AccessError("column " + column->name + " stands twice in table " + table->name);
      }
    }
  }
}

TableDefinition DefinitionOf(const Format& format, const TableSchema& schema, int code_page) {
  std::vector<ColumnDefinition> columns;
  for (const ColumnSchema& column : schema.columns) {
    columns.push_back(NewColumn(format, column));
    columns.back().code_page = code_page;
  }
  TableDefinition definition = LayOutTable(kUserTable, columns);
  for (const IndexSchema& index : schema.indexes) {
    AddIndex(definition, index);
  }
  return definition;
}

}  // namespace

Database Database::Create(const std::filesystem::path& path, std::string_view password,
                          const std::vector<TableSchema>& tables, pager::FileSystem& files, NewFile kind) {
  CheckNames(tables);
  const std::shared_ptr<Storage> file = Storage::Create(path, kind, files);
  Statement statement(file);
  Creator creator(*file, kind, password);
  for (const TableSchema& table : tables) {
    creator.AddTable(table.name, DefinitionOf(file->Layout(), table, kind.code_page));
  }
  statement.Commit();
  file->Pages().Flush();
  return Database(file);
}

}  // namespace marlevo::access
