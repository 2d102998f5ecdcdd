#include "platform/access/database/check.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <utility>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/cell.h"
#include "platform/access/bytes/data_page.h"
#include "platform/access/database/catalog.h"
#include "platform/access/storage/definition_pages.h"
#include "platform/access/storage/global_map.h"
#include "platform/access/storage/long_value.h"
#include "platform/access/table/loaded_table.h"
#include "platform/access/table/row_scan.h"

namespace marlevo::access {

namespace {

class Checker {
 public:
  explicit Checker(std::shared_ptr<Storage> file)
      : file_(std::move(file)), format_(file_->Layout()), users_(file_->Pages().PageCount()) {}

  std::vector<std::string> Run() {
    Use(0, "the header");
    Use(kGlobalMapPage, "the map of the file");
    Try([this] { UseMapPages(GlobalMap(*file_), "the map of the file"); });
    Try([this] {
      for (const CatalogEntry& entry : ReadCatalog(file_)) {
        if (entry.type == kLocalTable) {
          Try([&] { CheckTable(*LoadedTable::Open(file_, entry.page, entry.name)); });
        }
      }
    });
    Try([this] { CheckGlobalMap(); });
    return std::move(faults_);
  }

 private:
  // Runs one part of the check. An error ends that part only, so that every other part is still checked.
  template <typename Work>
  void Try(Work work) {
    try {
      work();
    } catch (const AccessError& error) {
      faults_.emplace_back(error.what());
    }
  }

  void Fault(std::uint32_t page, const std::string& what) {
    faults_.push_back("page " + std::to_string(page) + ": " + what);
  }

  // Notes that `user` uses the page. Returns false, and notes a fault, when the page is used already or does not exist.
  bool Use(std::uint32_t page, const std::string& user) {
    if (page >= users_.size()) {
      Fault(page, user + " has this page, which is outside the file");
      return false;
    }
    if (!users_[page].empty()) {
      Fault(page, "is used by " + users_[page] + " and by " + user);
      return false;
    }
    users_[page] = user;
    return true;
  }

  // Notes the use of a map's own pages of bits.
  void UseMapPages(const UsageMap& map, const std::string& user) {
    for (const std::uint32_t page : map.MapPages()) {
      Use(page, user + " (usage map)");
    }
  }

  // Notes the use of all pages of a map. The page that holds the map's row may hold the rows of other maps, too.
  void UseMap(const UsageMap& map, const std::string& user) {
    const std::uint32_t page = map.Row().page;
    if (page < users_.size() && users_[page] != kMapRows) {
      Use(page, kMapRows);
    }
    UseMapPages(map, user);
  }

  void CheckTable(const LoadedTable& table) {
    const std::string name = "table " + table.Name();
    const TableDefinition& definition = table.Definition();
    for (const std::uint32_t page : DefinitionPages(*file_, table.Page())) {
      Use(page, name + " (definition)");
    }
    CheckOwned(table.OwnedPages(), name);
    CheckFree(UsageMap(*file_, definition.free_map), table.OwnedPages(), name);
    for (const LongValueMaps& maps : definition.long_value_maps) {
      Try([&] { CheckLongValueMaps(maps, name); });
    }
    for (const RealIndex& index : definition.real_indexes) {
      Try([&] { CheckIndexMap(index, name); });
    }
    CheckRows(table, name);
    for (const Index& index : table.Indexes()) {
      Try([&] { CheckIndex(table, index, name + " (index " + index.Name() + ")"); });
    }
  }

  // Notes the use of the pages that belong to a table, a long-value column or an index.
  void CheckOwned(const UsageMap& owned, const std::string& user) {
    UseMap(owned, user);
    for (auto page = owned.Next(0); page; page = owned.Next(*page + 1)) {
      Use(*page, user);
    }
  }

  // Checks the map of pages with room: the user must own each of them.
  void CheckFree(const UsageMap& free, const UsageMap& owned, const std::string& user) {
    UseMap(free, user);
    for (auto page = free.Next(0); page; page = free.Next(*page + 1)) {
      if (!owned.Contains(*page)) {
        Fault(*page, "is offered for new rows of " + user + ", which does not own it");
      }
    }
  }

  // A column without these maps is no fault: Access makes such columns.
  void CheckLongValueMaps(const LongValueMaps& maps, const std::string& table) {
    if (maps.owned.page == 0) {
      return;
    }
    const UsageMap owned(*file_, maps.owned);
    CheckOwned(owned, table + " (long values)");
    if (maps.free.page != 0) {
      CheckFree(UsageMap(*file_, maps.free), owned, table + " (long values)");
    }
    for (auto page = owned.Next(0); page; page = owned.Next(*page + 1)) {
      Try([&] { CheckDataPage(*page, kOwnerLongValues); });
    }
  }

  void CheckIndexMap(const RealIndex& index, const std::string& table) {
    const UsageMap owned(*file_, index.owned_map);
    CheckOwned(owned, table + " (index)");
    if (!owned.Contains(index.root)) {
      Fault(index.root, "is the root of an index of " + table + " but not in its map");
    }
  }

  // The tree must be sound and have exactly one entry for each row that the index lists.
  void CheckIndex(const LoadedTable& table, const Index& index, const std::string& user) {
    for (const std::string& fault : index.Tree().FindFaults()) {
      faults_.push_back(user + ": " + fault);
    }
    std::size_t surplus = 0;
    IndexWalk walk(index.Tree(), {});
    while (walk.Next()) {
      ++surplus;
    }
    RowScan rows(LoadedTable::Open(file_, table.Page(), table.Name()), {});
    while (index.Refusal().empty() && rows.Next()) {
      try {
        const Index::RowKey key = index.KeyOf(rows.Cells());
        if (index.Lists(key) && !index.Contains(key.key, rows.Row())) {
          faults_.push_back(user + " lacks a row of page " + std::to_string(FromRowId(rows.Row()).page));
        } else {
          surplus -= index.Lists(key) ? 1 : 0;
        }
      } catch (const ValueError&) {
        --surplus;  // this engine cannot build the key, so the row's entry is assumed to be right
      }
    }
    if (index.Refusal().empty() && surplus != 0) {
      faults_.push_back(user + " has entries of rows that do not exist");
    }
  }

  // Checks the owner, the slots and the count of free bytes of a data page.
  void CheckDataPage(std::uint32_t number, std::uint32_t owner) {
    const pager::PageRef ref = file_->Read(number);
    const DataPage page(format_, number, ref.Bytes());
    if (page.Owner() != owner) {
      Fault(number, "says that it belongs to " + std::to_string(page.Owner()) + ", not " + std::to_string(owner));
    }
    for (std::size_t slot = 0; slot < page.SlotCount(); ++slot) {
      page.Row(slot);
    }
    if (page.FreeSpace() != page.Room()) {
      Fault(number, "says that it has " + std::to_string(page.FreeSpace()) + " free bytes instead of " +
                        std::to_string(page.Room()));
    }
  }

  void CheckRows(const LoadedTable& table, const std::string& name) {
    std::size_t rows = 0;
    bodies_.clear();
    for (auto page = table.OwnedPages().Next(0); page; page = table.OwnedPages().Next(*page + 1)) {
      Try([&] {
        CheckDataPage(*page, table.Page());
        rows += CheckRowsOf(*page, table);
      });
    }
    for (const auto& [body, pointers] : bodies_) {
      if (pointers != 1) {
        Fault(body.first, "the body of a moved row at " + std::to_string(body.second) + " is pointed to " +
                              std::to_string(pointers) + " times");
      }
    }
    if (rows != table.RowCount()) {
      faults_.push_back(name + " has " + std::to_string(rows) + " rows but counts " + std::to_string(table.RowCount()));
    }
  }

  // Checks the rows of a page and returns how many rows of the table it has; the bodies of moved rows do not count.
  std::size_t CheckRowsOf(std::uint32_t number, const LoadedTable& table) {
    const pager::PageRef ref = file_->Read(number);
    const DataPage page(format_, number, ref.Bytes());
    std::size_t rows = 0;
    for (std::uint32_t slot = 0; slot < page.SlotCount(); ++slot) {
      if (page.IsDeleted(slot)) {
        continue;
      }
      const RowPointer row{number, slot};
      if ((page.Flags(slot) & kSlotBody) != 0) {
        bodies_.try_emplace({row.page, row.slot}, 0);
      } else {
        ++rows;
      }
      if ((page.Flags(slot) & kSlotMoved) != 0) {
        const RowPointer body = page.Body(slot);
        ++bodies_[{body.page, body.slot}];
        table.PathOf(row);
      } else {
        Try([&] { CheckRow(table, number, page.Row(slot)); });
      }
    }
    return rows;
  }

  void CheckRow(const LoadedTable& table, std::uint32_t number, Bytes bytes) {
    const RowView row(format_, number, bytes, table.HasVariableColumns());
    std::vector<std::byte> value;
    for (const ColumnDefinition& column : table.Definition().columns) {
      const ColumnType type = column.shown.type;
      if (!row.IsSet(column.number) || type == ColumnType::kBoolean) {
        continue;
      }
      const Bytes cell =
          column.fixed ? row.Fixed(column.fixed_offset, column.stored_length) : row.Variable(column.variable_index);
      if (cell.size() < WidthOf(type) || (column.fixed && cell.size() != column.stored_length)) {
        Fault(number,
              "a row's value of column " + column.shown.name + " has only " + std::to_string(cell.size()) + " bytes");
      }
      if (IsLongValue(type) && !cell.empty()) {
        ReadLongValue(*file_, number, cell, value);
      }
    }
  }

  void CheckGlobalMap() {
    const GlobalMap map(*file_);
    for (std::uint32_t page = 0; page < users_.size(); ++page) {
      const bool free = map.Contains(page);
      if (free && !users_[page].empty()) {
        Fault(page, "is used by " + users_[page] + " but the map of the file calls it free");
      } else if (!free && users_[page].empty()) {
        Fault(page, "is used by nobody but the map of the file does not call it free");
      }
    }
  }

  static constexpr const char* kMapRows = "usage maps";

  std::shared_ptr<Storage> file_;
  const Format& format_;
  std::vector<std::string> users_;  // who uses each page; empty when nobody has been found yet
  // For the place (page, slot) of each body of a moved row, how many slots point to it.
  std::map<std::pair<std::uint32_t, std::uint32_t>, int> bodies_;
  std::vector<std::string> faults_;
};

}  // namespace

std::vector<std::string> CheckFile(const std::shared_ptr<Storage>& file) {
  const pager::Reading reading(file->Pages());
  return Checker(file).Run();
}

}  // namespace marlevo::access
