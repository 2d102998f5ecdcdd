#include "platform/access/database/copy.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/cell.h"
#include "platform/access/bytes/properties.h"
#include "platform/access/database/catalog.h"
#include "platform/access/database/check.h"
#include "platform/access/database/code_page_guess.h"
#include "platform/access/database/create.h"
#include "platform/access/storage/long_value.h"
#include "platform/access/table/loaded_table.h"
#include "platform/access/table/row_scan.h"
#include "platform/access/table/statement.h"
#include "platform/pager/read_only_files.h"

namespace marlevo::access {

namespace {

namespace fs = std::filesystem;

// The stored values of one row, in the form that RowEncoder::EncodeStored takes.
class StoredRow {
 public:
  explicit StoredRow(const LoadedTable& table) : table_(table), buffers_(table.Columns().size()) {}

  const std::vector<std::optional<Bytes>>& Read(const RowScan& scan) {
    const RowView& row = scan.Cells();
    values_.clear();
    for (std::size_t i = 0; i < buffers_.size(); ++i) {
      const ColumnDefinition& column = table_.Definition().columns[i];
      const ColumnType type = column.shown.type;
      if (!row.IsSet(column.number)) {
        values_.emplace_back(std::nullopt);
      } else if (type == ColumnType::kBoolean) {
        values_.emplace_back(Bytes());
      } else if (column.fixed) {
        values_.emplace_back(row.Fixed(column.fixed_offset, column.stored_length));
      } else if (const Bytes bytes = row.Variable(column.variable_index); !IsLongValue(type) || bytes.empty()) {
        values_.emplace_back(bytes);
      } else {
        ReadLongValue(table_.File(), FromRowId(scan.Row()).page, bytes, buffers_[i]);
        values_.emplace_back(Bytes(buffers_[i]));
      }
    }
    return values_;
  }

 private:
  const LoadedTable& table_;
  std::vector<std::vector<std::byte>> buffers_;
  std::vector<std::optional<Bytes>> values_;
};

bool SameBytes(const std::optional<Bytes>& a, const std::optional<Bytes>& b) {
  return a.has_value() == b.has_value() && (!a || std::ranges::equal(*a, *b));
}

// The reason in an error's text, without the advice to the user that follows a semicolon.
std::string WithoutAdvice(const std::string& reason) {
  return reason.substr(0, reason.find(';'));
}

FileHeader HeaderOf(const Storage& file) {
  const pager::PageRef page = file.Read(0);
  return ParseHeader(page.Bytes());
}

class Copier {
 public:
  Copier(const fs::path& from, const fs::path& to, pager::FileSystem& files)
      : files_(files), untouched_(files), to_(to), old_(Open(from)), catalog_(ReadCatalog(old_)) {
    part_ = to_;
    part_ += "-copy";
  }

  CopyReport Run() {
    if (files_.Open(to_) != nullptr) {
      throw pager::PagerError(to_, "exists already and is not written over");
    }
    files_.Remove(part_);  // left by an earlier copy that was killed
    try {
      WriteAll();
      CompareAll();
      files_.Rename(part_, to_, false);
      part_ = to_;
      files_.SyncFolder(files_.Resolve(to_).parent_path());
    } catch (...) {
      RemovePart();
      throw;
    }
    return std::move(report_);
  }

 private:
  std::shared_ptr<Storage> Open(const fs::path& path) {
    std::shared_ptr<Storage> file =
        Storage::Open(path, {.password = {}, .code_page = {}, .any_password = true}, untouched_);
    SettleCodePage(file);
    return file;
  }

  void RemovePart() noexcept {
    try {
      files_.Remove(part_);
    } catch (const pager::PagerError&) {
      // The next copy of that name removes it.
    }
  }

  void FindTables() {
    for (const CatalogEntry& entry : catalog_) {
      if (IsUserTable(entry)) {
        if (const std::string reason = WhyNoName(entry.name); reason.empty()) {
          tables_.push_back(entry);
        } else {
          report_.left_out.push_back("table " + entry.name + ": " + reason);
        }
      }
    }
  }

  // Why the new file cannot have a table of this name; empty when it can. MSysObjects has an index of the names, so a
  // name needs a key.
  std::string WhyNoName(const std::string& name) const {
    const bool jet4 = old_->Layout().version == 4;
    const KeyColumn column{.name = "Name",
                           .type = ColumnType::kText,
                           .order = jet4 ? TextOrder::kGeneralJet4 : OrderOfJet3Texts(*old_, 0),
                           .descending = false};
    std::vector<std::byte> stored;
    Key key;
    try {
      old_->CodecFor(0).Encode(name, false, stored);
      const std::u16string units = jet4 ? TextCodec::DecodeUnits(stored) : std::u16string();
      AppendKey(column, jet4 ? KeyValue(units) : KeyValue(Bytes(stored)), key);
    } catch (const ValueError& error) {
      return WithoutAdvice(error.what());
    }
    return {};
  }

  std::shared_ptr<LoadedTable> TableOf(const CatalogEntry& entry) const {
    return LoadedTable::Open(old_, entry.page, entry.name);
  }

  void WriteAll() {
    const FileHeader header = HeaderOf(*old_);
    NewFile kind{.version = header.format->version, .code_page = header.code_page, .encoding_key = header.encoding_key};
    if (kind.version == 3) {
      kind.stored_code_page = old_->CodePageOf(0);
    }
    FindTables();
    NameOtherObjects();
    const std::shared_ptr<Storage> file = Storage::Create(part_, kind, files_);
    Statement statement(file);
    Creator creator(*file, kind, old_->CodecFor(header.code_page).DecodeName(AsBytes(header.password)));
    for (const CatalogEntry& entry : tables_) {
      creator.AddTable(entry.name, DefinitionFor(entry), PropertiesOf(entry));
      NameLostRules(entry);
    }
    for (const CatalogEntry& entry : tables_) {
      CopyRows(TableOf(entry), *LoadedTable::Open(file, FindTable(file, entry.name).page, entry.name));
    }
    statement.Commit();
    file->Pages().Flush();
  }

  void NameOtherObjects() {
    const std::pair<int, const char*> kinds[] = {{kLinkedOdbcTable, "linked table"},
                                                 {kLinkedTable, "linked table"},
                                                 {kQuery, "query"},
                                                 {-32768, "form"},
                                                 {-32764, "report"},
                                                 {-32766, "macro"},
                                                 {-32761, "module"}};
    for (const CatalogEntry& entry : catalog_) {
      for (const auto& [type, kind] : kinds) {
        if (entry.type == type && !entry.name.starts_with("~")) {  // "~" begins the names of temporary objects
          report_.left_out.push_back(std::string(kind) + " " + entry.name);
        }
      }
    }
  }

  // The definition of the new table: that of the old one with only the indexes that this engine can keep correct.
  TableDefinition DefinitionFor(const CatalogEntry& entry) {
    const std::shared_ptr<LoadedTable> table = TableOf(entry);
    TableDefinition definition = table->Definition();
    definition.type = kUserTable;
    definition.last_autonumber = table->LastAutonumber();
    definition.long_value_maps.clear();
    for (ColumnDefinition& column : definition.columns) {
      column.language = kGeneralLanguage;
      column.sort_version = 0;
      if (IsLongValue(column.shown.type)) {
        definition.long_value_maps.push_back({column.number, {}, {}});
      }
    }
    definition.real_indexes.clear();
    definition.logical_indexes.clear();
    for (std::size_t i = 0; i < table->Indexes().size(); ++i) {
      AddIndex(table, i, definition);
    }
    for (const LogicalIndex& index : table->Definition().logical_indexes) {
      // A relationship has a logical index in both tables. The name on one side begins with a full stop.
      if (index.kind == IndexKind::kForeignKey && !index.name.starts_with('.')) {
        report_.left_out.push_back("relationship " + index.name + " of table " + entry.name);
      }
    }
    return definition;
  }

  void AddIndex(const std::shared_ptr<LoadedTable>& table, std::size_t i, TableDefinition& definition) {
    std::vector<LogicalIndex> names;
    std::ranges::copy_if(table->Definition().logical_indexes, std::back_inserter(names), [i](const LogicalIndex& name) {
      return name.real_index == i && name.kind != IndexKind::kForeignKey;
    });
    if (names.empty()) {
      return;  // the index serves a relationship only
    }
    const Index& index = table->Indexes()[i];
    if (const std::string reason = WhyNoIndex(table, index); !reason.empty()) {
      report_.left_out.push_back("index " + index.Name() + " of table " + table->Name() + ": " + reason);
      return;
    }
    for (LogicalIndex& name : names) {
      name = {.name = name.name, .kind = name.kind};
      name.number = definition.logical_indexes.size();
      name.real_index = definition.real_indexes.size();
      definition.logical_indexes.push_back(name);
    }
    const RealIndex& real = table->Definition().real_indexes[i];
    definition.real_indexes.push_back({.columns = real.columns, .owned_map = {}, .flags = real.flags});
  }

  static std::string WhyNoIndex(const std::shared_ptr<LoadedTable>& table, const Index& index) {
    if (!index.Refusal().empty()) {
      return WithoutAdvice(index.Refusal());
    }
    if (!index.OrdersEveryText()) {
      return "the order of Chinese characters in it is not known";
    }
    try {
      for (RowScan rows(table, {}); rows.Next();) {
        index.KeyOf(rows.Cells());
      }
    } catch (const ValueError& error) {
      return WithoutAdvice(error.what());
    }
    return {};
  }

  // The table's properties without validation rules: only Access can check those, so the new table could not be
  // written.
  std::vector<std::byte> PropertiesOf(const CatalogEntry& entry) const {
    const std::vector<std::byte> stored = StoredProperties(old_, entry);
    try {
      return stored.empty() ? stored : WithoutValidation(old_->CodecFor(0), stored);
    } catch (const AccessError&) {
      return {};
    }
  }

  void NameLostRules(const CatalogEntry& entry) {
    const auto name = [&](const std::string& of, const std::string& rule) {
      if (!rule.empty()) {
        report_.left_out.push_back("validation rule " + rule + " of " + of);
      }
    };
    try {
      const TableRules rules = ReadRules(old_->CodecFor(0), StoredProperties(old_, entry));
      name("table " + entry.name, rules.validation_rule);
      for (const auto& [column, of] : rules.columns) {
        name("column " + column + " of table " + entry.name, of.validation_rule);
      }
    } catch (const AccessError&) {
      report_.left_out.push_back("properties of table " + entry.name + ", which cannot be read");
    }
  }

  static void CopyRows(const std::shared_ptr<LoadedTable>& from, LoadedTable& to) {
    StoredRow row(*from);
    for (RowScan rows(from, {}); rows.Next();) {
      to.AppendStored(row.Read(rows));
    }
  }

  // Opens the new file from the disk and compares it with the old one.
  void CompareAll() {
    const std::shared_ptr<Storage> file = Open(part_);
    if (const std::vector<std::string> faults = CheckFile(file); !faults.empty()) {
      Differ(faults.front());
    }
    if (old_->CodecFor(HeaderOf(*old_).code_page).DecodeName(AsBytes(HeaderOf(*old_).password)) !=
        file->CodecFor(HeaderOf(*file).code_page).DecodeName(AsBytes(HeaderOf(*file).password))) {
      Differ("the password");
    }
    if (std::ranges::count_if(ReadCatalog(file), IsUserTable) != std::ssize(tables_)) {
      Differ("the number of tables");
    }
    for (const CatalogEntry& entry : tables_) {
      const CatalogEntry copied = FindTable(file, entry.name);
      if (StoredProperties(file, copied) != PropertiesOf(entry)) {
        Differ("the properties of table " + entry.name);
      }
      CompareTable(TableOf(entry), LoadedTable::Open(file, copied.page, copied.name));
      ++report_.tables;
    }
  }

  void CompareTable(const std::shared_ptr<LoadedTable>& theirs, const std::shared_ptr<LoadedTable>& ours) {
    const auto same_column = [](const ColumnDefinition& a, const ColumnDefinition& b) {
      return a.shown.name == b.shown.name && a.shown.type == b.shown.type && a.stored_length == b.stored_length &&
             a.flags == b.flags && a.scale == b.scale && a.precision == b.precision && a.code_page == b.code_page;
    };
    if (!std::ranges::equal(theirs->Definition().columns, ours->Definition().columns, same_column)) {
      Differ("the columns of table " + theirs->Name());
    }
    StoredRow their_row(*theirs);
    StoredRow our_row(*ours);
    RowScan our_rows(ours, {});
    for (RowScan their_rows(theirs, {}); their_rows.Next(); ++report_.rows) {
      if (!our_rows.Next() || !std::ranges::equal(their_row.Read(their_rows), our_row.Read(our_rows), SameBytes)) {
        Differ("row " + std::to_string(report_.rows + 1) + " of table " + theirs->Name());
      }
      report_.values += theirs->Columns().size();
    }
    if (our_rows.Next()) {
      Differ("table " + theirs->Name() + " has more rows");
    }
  }

  [[noreturn]] static void Differ(const std::string& where) {
    throw AccessError("the copy is not like the original: " + where, Fault::kDamaged);
  }

  pager::FileSystem& files_;
  pager::ReadOnlyFiles untouched_;
  fs::path to_;
  fs::path part_;  // the name under which the copy grows until it has been compared
  std::shared_ptr<Storage> old_;
  std::vector<CatalogEntry> catalog_;
  std::vector<CatalogEntry> tables_;  // those to be copied
  CopyReport report_;
};

}  // namespace

CopyReport CopyFile(const fs::path& from, const fs::path& to, pager::FileSystem& files) {
  return Copier(from, to, files).Run();
}

}  // namespace marlevo::access
