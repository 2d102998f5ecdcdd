#include "platform/access/scan_state.h"

#include <algorithm>
#include <limits>

#include "platform/access/access_error.h"
#include "platform/access/cell.h"
#include "platform/access/long_value.h"

namespace marlevo::access {

namespace {

// The stored bytes of an integer; false when the type cannot hold it.
bool StoredBytes(ColumnType type, std::int64_t value, std::uint64_t& bytes) {
  switch (type) {
    case ColumnType::kByte:
      bytes = static_cast<std::uint8_t>(value);
      return value >= 0 && value <= 0xFF;
    case ColumnType::kInteger:
      bytes = static_cast<std::uint16_t>(value);
      return value >= -0x8000 && value <= 0x7FFF;
    default:
      bytes = static_cast<std::uint32_t>(value);
      return value >= -0x8000'0000LL && value <= 0x7FFF'FFFF;
  }
}

std::uint64_t LoadWidth(const std::byte* at, std::size_t width) {
  switch (width) {
    case 1:
      return LoadU8(at);
    case 2:
      return LoadU16(at);
    default:
      return LoadU32(at);
  }
}

// Whether each unit is one of two.
template <typename Unit>
bool IsEither(Bytes bytes, const std::u16string& small, const std::u16string& large) {
  for (std::size_t i = 0; i < small.size(); ++i) {
    const char16_t unit = Load<Unit>(&bytes[i * sizeof(Unit)]);
    if (unit != small[i] && unit != large[i]) {
      return false;
    }
  }
  return true;
}

}  // namespace

ScanState::ScanState(std::shared_ptr<TableState> table, std::span<const Equals> conditions,
                     std::span<const TextHint> hints)
    : table_(std::move(table)),
      reading_(table_->Storage().Pages()),
      texts_(table_->Columns().size()),
      long_values_(table_->Columns().size()) {
  table_->Refresh();
  Compile(conditions);
  Compile(hints);
}

ScanState::ScanState(std::shared_ptr<TableState> table, std::span<const Equals> conditions, const Index& index,
                     std::span<const Value> values)
    : ScanState(std::move(table), conditions) {
  index_ = &index;
  if (std::optional<Key> start = index.KeyStart(values)) {
    key_start_ = std::move(*start);
  } else {
    impossible_ = true;
  }
}

void ScanState::Compile(std::span<const Equals> conditions) {
  for (const Equals& condition : conditions) {
    const ColumnDefinition& column = table_->Definition().columns[condition.column];
    const std::size_t width = WidthOf(column.shown.type);
    if (!IsInteger(column.shown.type) || !column.fixed) {
      other_conditions_.push_back(condition);
      continue;
    }
    RawCondition raw{.end = table_->Storage().Layout().row_number_width + column.fixed_offset + width,
                     .width = width,
                     .bytes = 0,
                     .number = column.number};
    impossible_ |= !StoredBytes(column.shown.type, condition.value, raw.bytes);
    raw_conditions_.push_back(raw);
  }
}

void ScanState::Compile(std::span<const TextHint> hints) {
  for (const TextHint& hint : hints) {
    const ColumnDefinition& column = table_->Definition().columns[hint.column];
    if (table_->Storage().Layout().version == 4 && column.shown.type == ColumnType::kText && !column.fixed) {
      raw_texts_.push_back({column.variable_index, hint.small, hint.large});
    }
  }
}

bool ScanState::NextPage() {
  const std::optional<std::uint32_t> next = table_->OwnedPages().Next(page_ + 1);
  page_ref_ = {};
  if (!next) {
    return false;
  }
  page_ = *next;
  next_slot_ = 0;
  page_version_ = Version();
  page_ref_ = table_->Storage().Read(page_);
  const DataPage page(table_->Storage().Layout(), page_, page_ref_.Bytes());
  if (page.Owner() != table_->Page()) {
    throw AccessError(
        page_, "expected rows of table " + table_->Name() + ", found those of page " + std::to_string(page.Owner()));
  }
  return true;
}

// After a change while this scan was under way. False when the table has given the page back.
bool ScanState::ReloadPage() {
  page_version_ = Version();
  page_ref_ = table_->Storage().Read(page_);
  return LoadU8(page_ref_.Bytes().data()) == kDataPage && LoadU32(&page_ref_.Bytes()[kOwnerAt]) == table_->Page();
}

bool ScanState::MeetsRaw(const std::byte* row, std::size_t size) const {
  for (const RawCondition& condition : raw_conditions_) {
    if (condition.end > size || LoadWidth(row + condition.end - condition.width, condition.width) != condition.bytes) {
      return false;
    }
  }
  return true;
}

// Only a sure no is a no; a row that is not as it should be goes on to the reader that says so.
bool ScanState::MayMeet(const RawText& text, Bytes row) {
  const std::size_t mask_size = row.size() < 2 ? 0 : (LoadU16(row.data()) + std::size_t{7}) / 8;
  const std::size_t offsets_size = 2 * (text.variable_index + 2);
  if (row.size() < 2 + offsets_size + 2 + mask_size) {
    return true;
  }
  const std::byte* count = row.data() + row.size() - mask_size - 2;  // of variable columns; before it their offsets
  const std::size_t start = LoadU16(count - offsets_size + 2);
  const std::size_t end = LoadU16(count - offsets_size);
  if (LoadU16(count) <= text.variable_index || start > end || end > row.size()) {
    return true;
  }
  Bytes bytes = row.subspan(start, end - start);
  if (!TextCodec::IsShortForm(bytes)) {
    return bytes.size() / 2 == text.small.size() && IsEither<char16_t>(bytes, text.small, text.large);
  }
  bytes = bytes.subspan(2);
  if (bytes.size() == text.small.size()) {
    return IsEither<std::uint8_t>(bytes, text.small, text.large);
  }
  // A zero byte switches to two bytes a unit: only then there are more bytes than units.
  return bytes.size() > text.small.size() && std::ranges::find(bytes, std::byte{0}) != bytes.end();
}

// Makes the row current if it meets all conditions. Null cells keep some bytes, so that the null mask has the last
// word.
bool ScanState::LookAt(Bytes row, std::uint32_t page) {
  if (!MeetsRaw(row.data(), row.size())) {
    return false;
  }
  for (const RawText& text : raw_texts_) {
    if (!MayMeet(text, row)) {
      return false;
    }
  }
  row_ = RowView(table_->Storage().Layout(), page, row, table_->HasVariableColumns());
  row_page_ = page;
  for (const RawCondition& condition : raw_conditions_) {
    if (!row_.IsSet(condition.number)) {
      return false;
    }
  }
  for (const Equals& condition : other_conditions_) {
    if (IsNull(condition.column) || Real(condition.column) != static_cast<double>(condition.value)) {
      return false;
    }
  }
  return true;
}

bool ScanState::LookAtMoved() {
  const RowPointer body = table_->PathOf({page_, static_cast<std::uint8_t>(slot_)}).back();
  body_ref_ = table_->Storage().Read(body.page);
  return LookAt(DataPage(table_->Storage().Layout(), body.page, body_ref_.Bytes()).Row(body.slot), body.page);
}

bool ScanState::Next() {
  if (impossible_) {
    return false;
  }
  const bool found = index_ != nullptr ? NextByIndex() : NextByPage();
  impossible_ = !found;  // the end stays the end
  return found;
}

// The next entry that begins with key_start_. A change may have moved entries: the way is then found again.
bool ScanState::NextEntry() {
  bool found = false;
  if (!walk_ || walk_version_ != Version()) {
    walk_version_ = Version();
    walk_.emplace(index_->Tree(), entry_.empty() ? Bytes(key_start_) : Bytes(entry_));
    found = walk_->Next();
    if (found && std::ranges::equal(walk_->Entry(), entry_)) {
      found = walk_->Next();
    }
  } else {
    found = walk_->Next();
  }
  if (!found) {
    return false;
  }
  const Bytes entry = walk_->Entry();
  entry_.assign(entry.begin(), entry.end());
  return entry_.size() >= key_start_.size() + kEntryRowSize &&
         std::equal(key_start_.begin(), key_start_.end(), entry_.begin());
}

bool ScanState::NextByIndex() {
  while (NextEntry()) {
    const RowPointer row = FromRowId(EntryRow(entry_));
    if (row.page != page_ || !page_ref_ || page_version_ != Version()) {
      page_ = row.page;
      page_version_ = Version();
      page_ref_ = table_->Storage().Read(page_);
    }
    slot_ = row.slot;
    const DataPage page(table_->Storage().Layout(), page_, page_ref_.Bytes());
    if (page.Owner() != table_->Page() || slot_ >= page.SlotCount() || (page.Flags(slot_) & kSlotBody) != 0) {
      throw AccessError(page_, "the index " + index_->Name() + " leads to a row that does not exist");
    }
    if (page.Flags(slot_) == 0 ? LookAt(page.Row(slot_), page_) : LookAtMoved()) {
      return true;
    }
  }
  return false;
}

bool ScanState::NextByPage() {
  const Format& format = table_->Storage().Layout();
  if (page_ref_ && page_version_ != Version() && !ReloadPage()) {
    page_ref_ = {};
  }
  for (;;) {
    if (page_ref_) {
      const DataPage page(format, page_, page_ref_.Bytes());
      while (next_slot_ < page.SlotCount()) {
        slot_ = next_slot_++;
        const std::uint16_t flags = page.Flags(slot_);
        if (flags == 0 ? LookAt(page.Row(slot_), page_) : (flags & kSlotDeleted) == kSlotMoved && LookAtMoved()) {
          return true;
        }
      }
    }
    if (!NextPage()) {
      return false;
    }
  }
}

bool ScanState::IsNull(std::size_t column) const {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  return definition.shown.type != ColumnType::kBoolean && !row_.IsSet(definition.number);
}

// Of a cell that is not null.
Bytes ScanState::CellBytes(std::size_t column) const {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  const Bytes bytes = definition.fixed ? row_.Fixed(definition.fixed_offset, definition.stored_length)
                                       : row_.Variable(definition.variable_index);
  if (bytes.size() < WidthOf(definition.shown.type)) {
    throw AccessError(row_page_, "the value of column " + definition.shown.name + " has only " +
                                     std::to_string(bytes.size()) + " bytes");
  }
  return bytes;
}

std::int64_t ScanState::Integer(std::size_t column) const {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  if (definition.shown.type == ColumnType::kBoolean) {
    return row_.IsSet(definition.number) ? 1 : 0;
  }
  return IsNull(column) || !IsInteger(definition.shown.type) ? 0
                                                             : DecodeInteger(definition.shown.type, CellBytes(column));
}

double ScanState::Real(std::size_t column) const {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  if (definition.shown.type == ColumnType::kBoolean) {
    return static_cast<double>(Integer(column));
  }
  return IsNull(column) || !IsNumber(definition.shown.type) ? 0 : DecodeReal(definition, CellBytes(column));
}

std::string_view ScanState::Text(std::size_t column) {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  if (IsNull(column)) {
    return {};
  }
  std::string_view text =
      DecodeText(definition, table_->Text(column), IsLongValue(definition.shown.type) ? Raw(column) : CellBytes(column),
                 texts_[column]);
  if (definition.fixed && definition.shown.type == ColumnType::kText) {
    text = text.substr(0, text.find_last_not_of(' ') + 1);  // it was padded to the column's length
  }
  return text;
}

Bytes ScanState::Raw(std::size_t column) {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  if (IsNull(column)) {
    return {};
  }
  const Bytes bytes = CellBytes(column);
  if (!IsLongValue(definition.shown.type) || bytes.empty()) {
    return bytes;
  }
  ReadLongValue(table_->Storage(), row_page_, bytes, long_values_[column]);
  return long_values_[column];
}

}  // namespace marlevo::access
