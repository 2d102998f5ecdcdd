#include "platform/access/database/catalog.h"

#include <algorithm>
#include <memory>

#include "platform/access/bytes/access_error.h"
#include "platform/access/table/loaded_table.h"
#include "platform/access/table/row_scan.h"
#include "platform/base/text.h"

namespace marlevo::access {

namespace {

constexpr std::uint32_t kHiddenSystemObject = 0x0000'0002;  // a bit of CatalogEntry::flags
constexpr std::uint32_t kPageOfId = 0x00FF'FFFF;            // the bits of a table's number that are its page

std::size_t ColumnNamed(const LoadedTable& table, std::string_view name) {
  const auto found = std::ranges::find(table.Columns(), name, &Column::name);
  if (found == table.Columns().end()) {
    throw AccessError(table.Page(), "the catalog lacks the column " + std::string(name));
  }
  return found - table.Columns().begin();
}

}  // namespace

std::vector<CatalogEntry> ReadCatalog(const std::shared_ptr<Storage>& file) {
  const auto objects = LoadedTable::Open(file, kObjectsPage, "MSysObjects");
  const std::size_t id = ColumnNamed(*objects, "Id");
  const std::size_t name = ColumnNamed(*objects, "Name");
  const std::size_t type = ColumnNamed(*objects, "Type");
  const std::size_t flags = ColumnNamed(*objects, "Flags");
  std::vector<CatalogEntry> entries;
  for (RowScan scan(objects, {}); scan.Next();) {
    entries.push_back({.name = std::string(scan.Text(name)),
                       .type = static_cast<std::int16_t>(scan.Integer(type)),
                       .flags = static_cast<std::uint32_t>(scan.Integer(flags)),
                       .page = static_cast<std::uint32_t>(scan.Integer(id)) & kPageOfId});
  }
  return entries;
}

std::vector<std::byte> StoredProperties(const std::shared_ptr<Storage>& file, const CatalogEntry& table) {
  const auto objects = LoadedTable::Open(file, kObjectsPage, "MSysObjects");
  const std::size_t id = ColumnNamed(*objects, "Id");
  const std::size_t type = ColumnNamed(*objects, "Type");
  const std::size_t properties = ColumnNamed(*objects, "LvProp");
  for (RowScan scan(objects, {}); scan.Next();) {
    if (scan.Integer(type) == kLocalTable && (static_cast<std::uint32_t>(scan.Integer(id)) & kPageOfId) == table.page) {
      const Bytes stored = scan.IsNull(properties) ? Bytes() : scan.Raw(properties);
      return {stored.begin(), stored.end()};
    }
  }
  return {};
}

bool IsUserTable(const CatalogEntry& entry) {
  return entry.type == kLocalTable && (entry.flags & (kSystemObject | kHiddenSystemObject)) == 0 &&
         !entry.name.starts_with("MSys");
}

CatalogEntry FindTable(const std::shared_ptr<Storage>& file, std::string_view name) {
  bool linked = false;
  for (CatalogEntry& entry : ReadCatalog(file)) {
    if (!SameName(entry.name, name)) {
      continue;
    }
    if (entry.type == kLocalTable) {
      return std::move(entry);
    }
    linked |= entry.type == kLinkedOdbcTable || entry.type == kLinkedTable;
  }
  const std::string table = "table " + std::string(name);
  if (linked) {
    throw AccessError(table + " is linked to another file; open the file in Access and import that table",
                      Fault::kNeedsAccess);
  }
  throw AccessError(table + " does not exist", Fault::kNoTable);
}

}  // namespace marlevo::access
