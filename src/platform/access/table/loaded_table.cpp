#include "platform/access/table/loaded_table.h"

#include <algorithm>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/cell.h"
#include "platform/access/bytes/properties.h"
#include "platform/access/storage/definition_pages.h"
#include "platform/access/storage/long_value.h"

namespace marlevo::access {

namespace {

constexpr const char* kRuleAdvice = ", which only Access can check; open the file in Access and remove the rule";
constexpr std::size_t kLongestPath = 16;  // Access moves a row once; a longer path is damage, probably a circle

std::vector<Column> ShownColumns(const TableDefinition& definition) {
  std::vector<Column> shown;
  for (const ColumnDefinition& column : definition.columns) {
    shown.push_back(column.shown);
  }
  return shown;
}

std::vector<const TextCodec*> TextsOf(const Storage& file, const TableDefinition& definition) {
  std::vector<const TextCodec*> texts;
  for (const ColumnDefinition& column : definition.columns) {
    texts.push_back(&file.CodecFor(column.code_page));
  }
  return texts;
}

}  // namespace

std::shared_ptr<LoadedTable> LoadedTable::Open(const std::shared_ptr<Storage>& file, std::uint32_t page,
                                               const std::string& name) {
  std::weak_ptr<LoadedTable>& slot = file->TableSlot(page);
  std::shared_ptr<LoadedTable> table = slot.lock();
  if (table == nullptr) {
    slot = table = std::shared_ptr<LoadedTable>(new LoadedTable(file, page, name));
  }
  return table;
}

LoadedTable::LoadedTable(std::shared_ptr<Storage> file, std::uint32_t page, std::string name)
    : file_(std::move(file)),
      page_(page),
      name_(std::move(name)),
      definition_bytes_(LoadDefinition()),
      definition_(ParseDefinition(file_->Layout(), file_->CodecFor(0), page, definition_bytes_)),
      columns_(ShownColumns(definition_)),
      texts_(TextsOf(*file_, definition_)),
      encoder_(file_->Layout(), definition_, texts_),
      rows_(*file_, page, definition_.owned_map, definition_.free_map),
      known_version_(file_->Pages().Version()),
      indexes_(*file_, page, definition_) {
  const auto autonumber = std::ranges::find_if(columns_, &Column::autonumber);
  if (autonumber != columns_.end()) {
    autonumber_ = autonumber - columns_.begin();
  }
  for (const LongValueMaps& maps : definition_.long_value_maps) {
    if (maps.owned.page == 0 || maps.free.page == 0) {
      continue;  // Access makes files with such columns; FindWriteRefusal says that they cannot be written
    }
    long_values_.emplace(maps.column, RowSpace(*file_, kOwnerLongValues, maps.owned, maps.free));
  }
  write_refusal_ = FindWriteRefusal();
  FindSearchedIndexes();
}

void LoadedTable::FindSearchedIndexes() {
  for (std::size_t i = 0; i < indexes_.All().size(); ++i) {
    const Index& index = indexes_.All()[i];
    if (!index.Refusal().empty()) {
      continue;
    }
    IndexView view{.name = index.Name(),
                   .columns = {},
                   .descending = {},
                   .unique = index.IsUnique(),
                   .complete = index.IsComplete()};
    for (std::size_t part = 0; part < index.Columns().size(); ++part) {
      const auto column =
          std::ranges::find(definition_.columns, index.Columns()[part].number, &ColumnDefinition::number);
      view.columns.push_back(column - definition_.columns.begin());
      view.descending.push_back(index.IsDescending(part));
    }
    index_views_.push_back(std::move(view));
    searched_indexes_.push_back(i);
  }
}

// The definition's bytes with the counts of rows, AutoNumbers and keys set to 0, so that they differ only when the
// design of the table has changed.
std::vector<std::byte> LoadedTable::LoadDefinition() const {
  const Format& format = file_->Layout();
  std::vector<std::byte> bytes = ReadDefinitionPages(*file_, page_);
  StoreU32(&bytes[format.definition.rows], 0);
  StoreU32(&bytes[format.definition.last_autonumber], 0);
  const std::size_t indexes = LoadU32(&bytes[format.definition.real_indexes]);
  const std::size_t counters = std::min(indexes * format.index_counter_size, bytes.size() - format.definition.body);
  std::ranges::fill(MutableBytes(bytes).subspan(format.definition.body, counters), std::byte{0});
  return bytes;
}

std::string LoadedTable::FindWriteRefusal() const {
  const std::string table = "table " + name_;
  if (!indexes_.Refusal().empty()) {
    return table + ": " + indexes_.Refusal();
  }
  for (const ColumnDefinition& column : definition_.columns) {
    if (!IsKnown(column.shown.type)) {
      return table + " has the column " + column.shown.name +
             " of a type that this program does not write; open the file in Access and remove the column";
    }
    if (IsLongValue(column.shown.type) && (column.fixed || !long_values_.contains(column.number))) {
      return table + " has no place for the long values of column " + column.shown.name +
             "; open the file in Access and compact it";
    }
  }
  return {};
}

void LoadedTable::RefuseWriting(const std::string& why) {
  if (write_refusal_.empty()) {
    write_refusal_ = "table " + name_ + why;
  }
}

void LoadedTable::SetRules(Bytes properties) {
  write_refusal_ = FindWriteRefusal();
  ruled_.clear();
  TableRules rules = ReadRules(file_->CodecFor(0), properties);
  if (!rules.validation_rule.empty()) {
    RefuseWriting(" has the validation rule " + rules.validation_rule + kRuleAdvice);
  }
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    Column& column = columns_[i];
    ColumnRules& of = rules.columns[column.name];
    if (!of.validation_rule.empty()) {
      RefuseWriting(" has the validation rule " + of.validation_rule + " in the column " + column.name + kRuleAdvice);
    }
    column.required = of.required && column.type != ColumnType::kBoolean;
    column.empty_allowed = of.empty_allowed;
    column.default_value = std::move(of.default_value);
    if (column.required || !column.empty_allowed) {
      ruled_.push_back(i);
    }
  }
}

void LoadedTable::Refresh() {
  const std::uint64_t version = file_->Pages().Version();
  if (version == known_version_) {
    return;
  }
  if (LoadDefinition() != definition_bytes_) {
    throw AccessError("the design of table " + name_ + " was changed by another program; open it again");
  }
  rows_.Forget();
  for (auto& [number, space] : long_values_) {
    space.Forget();
  }
  known_version_ = version;
}

std::size_t LoadedTable::RowCount() const {
  const pager::PageRef page = file_->Read(page_);
  return LoadU32(&page.Bytes()[file_->Layout().definition.rows]);
}

std::int32_t LoadedTable::LastAutonumber() const {
  const pager::PageRef page = file_->Read(page_);
  return Load<std::int32_t>(&page.Bytes()[file_->Layout().definition.last_autonumber]);
}

std::vector<RowPointer> LoadedTable::PathOf(RowPointer row) const {
  std::vector<RowPointer> path{row};
  for (;;) {
    const RowPointer at = path.back();
    const pager::PageRef ref = file_->Read(at.page);
    const DataPage page(file_->Layout(), at.page, ref.Bytes());
    if (page.Owner() != page_ || at.slot >= page.SlotCount() || page.IsDeleted(at.slot) || path.size() > kLongestPath) {
      throw AccessError(at.page, "there is no body of a moved row at " + std::to_string(at.slot));
    }
    if ((page.Flags(at.slot) & kSlotMoved) == 0) {
      return path;
    }
    path.push_back(page.Body(at.slot));
  }
}

std::vector<Value> LoadedTable::WithAutonumber(std::span<const Value> values) const {
  std::vector<Value> completed(values.begin(), values.end());
  if (autonumber_ && *autonumber_ < completed.size() &&
      std::holds_alternative<std::monostate>(completed[*autonumber_])) {
    completed[*autonumber_] = std::int64_t{LastAutonumber()} + 1;
  }
  return completed;
}

void LoadedTable::CheckRules(std::span<const Value> values) const {
  for (const std::size_t i : ruled_) {
    const auto* text = std::get_if<std::string_view>(&values[i]);
    if (columns_[i].required && std::holds_alternative<std::monostate>(values[i])) {
      throw ValueError("column " + columns_[i].name + " requires a value", Fault::kEmpty);
    }
    if (!columns_[i].empty_allowed && text != nullptr && text->empty()) {
      throw ValueError("column " + columns_[i].name + " does not take an empty text", Fault::kEmpty);
    }
  }
}

void LoadedTable::StoreLongValues(MutableBytes row) {
  for (const RowEncoder::LongCell& cell : encoder_.LongCells()) {
    StoreLongValue(*file_, LongValueSpace(*cell.column), cell.value, row.subspan(cell.place, kLongValueHeader));
  }
}

void LoadedTable::CountRow() {
  const pager::PageEdit page = file_->Change(page_);
  std::byte* rows = &page.Bytes()[file_->Layout().definition.rows];
  StoreU32(rows, LoadU32(rows) + 1);
}

void LoadedTable::CountAutonumber(std::span<const Value> values) {
  const pager::PageEdit page = file_->Change(page_);
  std::byte* last = &page.Bytes()[file_->Layout().definition.last_autonumber];
  const Value& value = values[*autonumber_];
  const auto* real = std::get_if<double>(&value);
  const std::int64_t number = real != nullptr ? static_cast<std::int64_t>(*real) : std::get<std::int64_t>(value);
  StoreU32(last, std::max(std::int64_t{Load<std::int32_t>(last)}, number));
}

RowPointer LoadedTable::Insert(std::span<const Value> values) {
  Refresh();
  std::vector<Value> completed;
  if (autonumber_) {
    completed = WithAutonumber(values);
    values = completed;
  }
  const MutableBytes row = encoder_.Encode(values);
  CheckRules(values);
  indexes_.CheckNew(RowView(file_->Layout(), page_, row, HasVariableColumns()));
  StoreLongValues(row);
  const RowPointer added = rows_.Add(row);
  indexes_.Insert(ToRowId(added));
  CountRow();
  if (autonumber_) {
    CountAutonumber(values);
  }
  known_version_ = file_->Pages().Version();
  return added;
}

RowPointer LoadedTable::AppendStored(std::span<const std::optional<Bytes>> values) {
  const MutableBytes row = encoder_.EncodeStored(values);
  indexes_.CheckNew(RowView(file_->Layout(), page_, row, HasVariableColumns()));
  StoreLongValues(row);
  const RowPointer added = rows_.Append(row);
  indexes_.Insert(ToRowId(added));
  CountRow();
  known_version_ = file_->Pages().Version();
  return added;
}

RowSpace& LoadedTable::LongValueSpace(const ColumnDefinition& column) {
  return long_values_.at(column.number);
}

bool LoadedTable::IsLiving(RowPointer row) const {
  if (row.page >= file_->Pages().PageCount()) {
    return false;
  }
  const pager::PageRef ref = file_->Read(row.page);
  if (LoadU8(ref.Bytes().data()) != kDataPage || LoadU32(&ref.Bytes()[kOwnerAt]) != page_) {
    return false;
  }
  const DataPage page(file_->Layout(), row.page, ref.Bytes());
  return row.slot < page.SlotCount() && (page.Flags(row.slot) & kSlotBody) == 0;
}

bool LoadedTable::Delete(RowPointer row) {
  Refresh();
  if (!IsLiving(row)) {
    return false;
  }
  const std::vector<RowPointer> path = PathOf(row);
  EraseFromIndexes(ToRowId(row), path.back());
  if (!long_values_.empty()) {
    RemoveLongValues(path.back());
  }
  for (const RowPointer at : path) {
    rows_.Remove(at);
  }
  const pager::PageEdit page = file_->Change(page_);
  std::byte* rows = &page.Bytes()[file_->Layout().definition.rows];
  StoreU32(rows, std::max(LoadU32(rows), 1u) - 1);
  known_version_ = file_->Pages().Version();
  return true;
}

void LoadedTable::EraseFromIndexes(RowId row, RowPointer body) {
  {
    const pager::PageRef ref = file_->Read(body.page);
    indexes_.CheckGone(RowView(file_->Layout(), body.page,
                               DataPage(file_->Layout(), body.page, ref.Bytes()).Row(body.slot), HasVariableColumns()),
                       row);
  }
  indexes_.Erase(row);
}

void LoadedTable::RemoveLongValues(RowPointer body) {
  const pager::PageRef ref = file_->Read(body.page);
  const RowView row(file_->Layout(), body.page, DataPage(file_->Layout(), body.page, ref.Bytes()).Row(body.slot),
                    HasVariableColumns());
  for (const ColumnDefinition& column : definition_.columns) {
    if (IsLongValue(column.shown.type) && row.IsSet(column.number)) {
      if (const Bytes field = row.Variable(column.variable_index); !field.empty()) {
        RemoveLongValue(*file_, LongValueSpace(column), body.page, field);
      }
    }
  }
}

}  // namespace marlevo::access
