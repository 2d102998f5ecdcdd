#include "platform/access/index/index.h"

#include <algorithm>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/cell.h"

namespace marlevo::access {

namespace {

TextOrder OrderOf(const Storage& file, const ColumnDefinition& column) {
  if (column.language != kGeneralLanguage || column.sort_version != 0) {
    return TextOrder::kUnknown;
  }
  if (file.Layout().version == 4) {
    return TextOrder::kGeneralJet4;
  }
  return OrderOfJet3Texts(file, column.code_page);
}

// The name to show for a real index. Several logical indexes may use it; the name of a relationship is taken only when
// there is no other, since Access makes such names up.
std::string NameOf(const TableDefinition& table, std::size_t real_index) {
  std::string name;
  for (const LogicalIndex& index : table.logical_indexes) {
    if (index.real_index == real_index && (name.empty() || index.kind != IndexKind::kForeignKey)) {
      name = index.name;
    }
  }
  return name;
}

// The form in which AppendKey takes a stored value: Jet 4 texts as UTF-16 units, kept in `units`; all else as it is.
KeyValue ValueOf(const Storage& file, const ColumnDefinition& column, Bytes stored, std::u16string& units) {
  if (column.shown.type != ColumnType::kText || file.Layout().version == 3) {
    return stored;
  }
  units = TextCodec::DecodeUnits(stored);
  return units;
}

}  // namespace

TextOrder OrderOfJet3Texts(const Storage& file, int code_page_label) {
  return file.CodePageOf(code_page_label) == kWesternCodePage ? TextOrder::kGeneralJet3 : TextOrder::kAsciiJet3;
}

Index::Index(Storage& file, std::uint32_t page, const TableDefinition& table, std::size_t real_index)
    : file_(&file),
      page_(page),
      keys_at_(file.Layout().definition.body + real_index * file.Layout().index_counter_size + kIndexKeysAt),
      name_(NameOf(table, real_index)),
      flags_(table.real_indexes[real_index].flags),
      tree_(file, page, table.real_indexes[real_index].root, table.real_indexes[real_index].owned_map) {
  for (const IndexColumn& indexed : table.real_indexes[real_index].columns) {
    const ColumnDefinition* column = table.FindColumn(indexed.number);
    if (column == nullptr) {
      refusal_ = "the index " + name_ + " is of a column that does not exist; open the file in Access and remove it";
      continue;
    }
    columns_.push_back(*column);
    keys_.push_back({column->shown.name, column->shown.type, OrderOf(file, *column), !indexed.ascending});
    if (refusal_.empty()) {
      refusal_ = KeyRefusal(keys_.back());
    }
  }
}

bool Index::OrdersEveryText() const {
  return std::ranges::none_of(
      keys_, [](const KeyColumn& key) { return key.type == ColumnType::kText && key.order == TextOrder::kAsciiJet3; });
}

Index::RowKey Index::KeyOf(const RowView& row, std::span<const ColumnDefinition> columns) const {
  RowKey result;
  std::u16string units;
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    const ColumnDefinition& column = columns[i];
    const bool set = row.IsSet(column.number);
    KeyValue value;
    if (column.shown.type == ColumnType::kBoolean) {
      value = set;
    } else if (!set) {
      ++result.nulls;
    } else if (column.fixed) {
      const std::size_t width = WidthOf(column.shown.type);
      value = ValueOf(*file_, column, row.Fixed(column.fixed_offset, width != 0 ? width : column.stored_length), units);
    } else {
      value = ValueOf(*file_, column, row.Variable(column.variable_index), units);
    }
    AppendKey(keys_[i], value, result.key);
  }
  if (result.key.size() + kEntryRowSize > tree_.LongestEntry()) {
    throw ValueError("the values of the row are too long for the index " + name_, Fault::kTextTooLong);
  }
  return result;
}

std::optional<Key> Index::KeyStart(std::span<const Value> values) const {
  Key key;
  std::vector<std::byte> stored;
  std::u16string units;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const ColumnDefinition& column = columns_[i];
    KeyValue value;
    if (!std::holds_alternative<std::monostate>(values[i])) {
      stored.clear();
      try {
        if (column.shown.type == ColumnType::kBoolean) {
          value = EncodeBoolean(column, values[i]);
        } else {
          EncodeCell(column, file_->CodecFor(column.code_page), values[i], stored);
          value = ValueOf(*file_, column, stored, units);
        }
      } catch (const ValueError&) {
        return std::nullopt;
      }
      const bool real = IsNumber(column.shown.type) && !IsInteger(column.shown.type);
      if (real && DecodeReal(column, stored) == 0) {
        throw ValueError("column " + column.shown.name + " may hold -0, which is equal but has another place");
      }
    }
    AppendKey(keys_[i], value, key);
  }
  return key;
}

// Rows whose indexed columns are all null never clash in a unique index.
bool Index::ForbidsTwice(const RowKey& key) const {
  return Is(kIndexUnique) && key.nulls < keys_.size();
}

void Index::CheckNew(RowKey& key) const {
  if (Is(kIndexRequired) && key.nulls > 0) {
    throw ValueError("the index " + name_ + " does not allow an empty value in its columns", Fault::kEmpty);
  }
  key.taken = Lists(key) && Contains(key.key);
  if (key.taken && ForbidsTwice(key)) {
    throw ValueError("there is already a row with the same value in the index " + name_, Fault::kDuplicate);
  }
}

bool Index::Contains(Bytes key) const {
  IndexWalk walk(tree_, key);
  return walk.Next() && walk.Entry().size() == key.size() + kEntryRowSize &&
         std::ranges::equal(walk.Entry().first(key.size()), key);
}

bool Index::Contains(const Key& key, RowId row) const {
  Key entry = key;
  AppendEntryRow(row, entry);
  IndexWalk walk(tree_, entry);
  return walk.Next() && std::ranges::equal(walk.Entry(), entry);
}

bool Index::Lists(const RowKey& key) const {
  return !Is(kIndexIgnoreNulls) || key.nulls < keys_.size();
}

void Index::Insert(const RowKey& key, RowId row) const {
  if (Lists(key)) {
    Key entry = key.key;
    AppendEntryRow(row, entry);
    tree_.Insert(entry);
    if (!key.taken) {
      CountKey(1);
    }
  }
}

void Index::Erase(const RowKey& key, RowId row) const {
  if (!Lists(key)) {
    return;
  }
  Key entry = key.key;
  AppendEntryRow(row, entry);
  if (!tree_.Erase(entry)) {
    throw AccessError("the index " + name_ + " lacks the row; open the file in Access and compact it",
                      Fault::kNeedsAccess);
  }
  if (ForbidsTwice(key) || !Contains(key.key)) {
    CountKey(-1);
  }
}

// Keeps the count of different keys. Files of other programs may count too many; the count only helps Access to
// estimate how many rows a search will find.
void Index::CountKey(std::int32_t change) const {
  const pager::PageEdit page = file_->Change(page_);
  std::byte* keys = &page.Bytes()[keys_at_];
  StoreU32(keys, std::max(std::int64_t{LoadU32(keys)} + change, std::int64_t{0}));
}

}  // namespace marlevo::access
