#include "platform/access/table/row_scan.h"

#include <algorithm>
#include <limits>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/cell.h"
#include "platform/access/storage/long_value.h"
#include "platform/base/text.h"

namespace marlevo::access {

RowScan::RowScan(std::shared_ptr<LoadedTable> table, std::span<const Equals> conditions,
                 std::span<const TextHint> hints)
    : table_(std::move(table)),
      reading_(table_->File().Pages()),
      conditions_(conditions.begin(), conditions.end()),
      texts_(table_->Columns().size()),
      long_values_(table_->Columns().size()) {
  table_->Refresh();
  for (const Equals& condition : conditions_) {
    if (const std::optional<RawCondition> raw = RawForm(condition)) {
      raw_conditions_.push_back(*raw);
      least_row_ = std::max(least_row_, raw->place + sizeof raw->bytes);
    }
  }
  for (const TextHint& hint : hints) {
    const ColumnDefinition& column = table_->Definition().columns[hint.column];
    const bool ascii = std::ranges::none_of(hint.text, [](char c) { return (c & 0x80) != 0; });
    if (table_->File().Layout().version == 4 && column.shown.type == ColumnType::kText && !column.fixed && ascii) {
      raw_texts_.push_back({column.variable_index, hint.text});
    }
  }
}

RowScan::RowScan(std::shared_ptr<LoadedTable> table, std::span<const Equals> conditions, const Index& index,
                 std::span<const Value> values)
    : RowScan(std::move(table), conditions) {
  index_ = &index;
  if (std::optional<Key> start = index.KeyStart(values)) {
    key_start_ = std::move(*start);
  } else {
    impossible_ = true;
  }
}

// The form of the condition that can be compared without taking the row apart; nothing when it has none.
std::optional<RowScan::RawCondition> RowScan::RawForm(const Equals& condition) const {
  const ColumnDefinition& column = table_->Definition().columns[condition.column];
  if (!IsInteger(column.shown.type) || !column.fixed) {
    return std::nullopt;
  }
  const std::uint32_t mask = 0xFFFF'FFFF >> (32 - 8 * WidthOf(column.shown.type));
  return RawCondition{.place = table_->File().Layout().row_number_width + column.fixed_offset,
                      .mask = mask,
                      .bytes = static_cast<std::uint32_t>(condition.value) & mask};
}

bool RowScan::NextPage() {
  const std::optional<std::uint32_t> next = table_->OwnedPages().Next(page_ + 1);
  page_ref_ = {};
  if (!next) {
    return false;
  }
  page_ = *next;
  next_slot_ = 0;
  page_version_ = Version();
  page_ref_ = table_->File().Read(page_);
  const DataPage page(table_->File().Layout(), page_, page_ref_.Bytes());
  if (page.Owner() != table_->Page()) {
    throw AccessError(
        page_, "expected rows of table " + table_->Name() + ", found those of page " + std::to_string(page.Owner()));
  }
  return true;
}

// Reads the current page anew after a change of the file. Returns false when the page belongs to the table no more.
bool RowScan::ReloadPage() {
  page_version_ = Version();
  page_ref_ = table_->File().Read(page_);
  return LoadU8(page_ref_.Bytes().data()) == kDataPage && LoadU32(&page_ref_.Bytes()[kOwnerAt]) == table_->Page();
}

// The first slot, from next_slot_ on, whose row was moved or may meet the conditions. A scan spends nearly all its time
// here.
std::uint32_t RowScan::NextCandidate(const DataPage& page) const {
  return page.Find(next_slot_, least_row_, [numbers = std::span(raw_conditions_), this](Bytes row) {
    const auto holds = [row](const RawCondition& condition) {
      return (LoadU32(row.data() + condition.place) & condition.mask) == condition.bytes;
    };
    return std::ranges::all_of(numbers, holds) &&
           std::ranges::all_of(raw_texts_, [row](const RawText& text) { return MayHold(text, row); });
  });
}

// Returns false only when the text of the row certainly differs. A malformed row returns true, so that RowView reports
// it.
bool RowScan::MayHold(const RawText& text, Bytes row) {
  if (row.size() < 2) {
    return true;
  }
  // From the end of the row: the null mask, the number of variable columns, the offset of each of them.
  const std::size_t mask_size = (LoadU16(row.data()) + std::size_t{7}) / 8;
  const std::size_t tail = mask_size + 2 + 2 * (text.variable_index + 2);
  if (row.size() < 2 + tail) {
    return true;
  }
  const std::byte* const offsets = &row[row.size() - tail];
  const std::size_t end = LoadU16(offsets);
  const std::size_t start = LoadU16(offsets + 2);
  if (LoadU16(&row[row.size() - mask_size - 2]) <= text.variable_index || start > end || end > row.size()) {
    return true;
  }
  Bytes stored = row.subspan(start, end - start);
  const std::size_t width = TextCodec::IsShortForm(stored) ? 1 : 2;
  stored = stored.subspan(width == 1 ? 2 : 0);
  if (stored.size() != width * text.text.size()) {
    return width == 1 && stored.size() > text.text.size();  // it may switch to two bytes for each character
  }
  for (std::size_t i = 0; i < text.text.size(); ++i) {
    const char32_t character = width == 1 ? LoadU8(&stored[i]) : LoadU16(&stored[2 * i]);
    if (SmallLetter(character) != SmallLetter(text.text[i])) {
      return false;
    }
  }
  return true;
}

// Makes the row current if it meets all conditions.
bool RowScan::LookAt(Bytes row, std::uint32_t page) {
  row_ = RowView(table_->File().Layout(), page, row, table_->HasVariableColumns());
  row_page_ = page;
  return std::ranges::all_of(conditions_, [this](const Equals& condition) {
    return !IsNull(condition.column) && Real(condition.column) == static_cast<double>(condition.value);
  });
}

bool RowScan::LookAtSlot(const DataPage& page) {
  if (page.Flags(slot_) == 0) {
    return LookAt(page.Row(slot_), page_);
  }
  const RowPointer body = table_->PathOf({page_, slot_}).back();
  body_ref_ = table_->File().Read(body.page);
  return LookAt(DataPage(table_->File().Layout(), body.page, body_ref_.Bytes()).Row(body.slot), body.page);
}

bool RowScan::Next() {
  if (impossible_) {
    return false;
  }
  const bool found = index_ != nullptr ? NextByIndex() : NextByPage();
  impossible_ = !found;  // after the end, Next returns false for ever, even if rows are added behind
  return found;
}

// Goes to the next entry and returns whether it begins with key_start_. After a change of the file the entries may lie
// on other pages, so the walk begins anew, at the last entry seen or right behind it when it is gone.
bool RowScan::NextEntry() {
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

bool RowScan::NextByIndex() {
  while (NextEntry()) {
    const RowPointer row = FromRowId(EntryRow(entry_));
    if (row.page != page_ || !page_ref_ || page_version_ != Version()) {
      page_ = row.page;
      page_version_ = Version();
      page_ref_ = table_->File().Read(page_);
    }
    slot_ = row.slot;
    const DataPage page(table_->File().Layout(), page_, page_ref_.Bytes());
    if (page.Owner() != table_->Page() || slot_ >= page.SlotCount() || (page.Flags(slot_) & kSlotBody) != 0) {
      throw AccessError(page_, "the index " + index_->Name() + " leads to a row that does not exist");
    }
    if (LookAtSlot(page)) {
      return true;
    }
  }
  return false;
}

bool RowScan::NextByPage() {
  if (page_ref_ && page_version_ != Version() && !ReloadPage()) {
    page_ref_ = {};
  }
  while (page_ref_ || NextPage()) {
    const DataPage page(table_->File().Layout(), page_, page_ref_.Bytes());
    while ((slot_ = NextCandidate(page)) < page.SlotCount()) {
      next_slot_ = slot_ + 1;
      if (LookAtSlot(page)) {
        return true;
      }
    }
    page_ref_ = {};
  }
  return false;
}

bool RowScan::IsNull(std::size_t column) const {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  return definition.shown.type != ColumnType::kBoolean && !row_.IsSet(definition.number);
}

// The stored bytes of a cell that is not null.
Bytes RowScan::CellBytes(std::size_t column) const {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  const Bytes bytes = definition.fixed ? row_.Fixed(definition.fixed_offset, definition.stored_length)
                                       : row_.Variable(definition.variable_index);
  if (bytes.size() < WidthOf(definition.shown.type)) {
    throw AccessError(row_page_, "the value of column " + definition.shown.name + " has only " +
                                     std::to_string(bytes.size()) + " bytes");
  }
  return bytes;
}

std::int64_t RowScan::Integer(std::size_t column) const {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  if (definition.shown.type == ColumnType::kBoolean) {
    return row_.IsSet(definition.number) ? 1 : 0;
  }
  return IsNull(column) || !IsInteger(definition.shown.type) ? 0
                                                             : DecodeInteger(definition.shown.type, CellBytes(column));
}

double RowScan::Real(std::size_t column) const {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  if (definition.shown.type == ColumnType::kBoolean) {
    return static_cast<double>(Integer(column));
  }
  return IsNull(column) || !IsNumber(definition.shown.type) ? 0 : DecodeReal(definition, CellBytes(column));
}

std::string_view RowScan::Text(std::size_t column) {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  if (IsNull(column)) {
    return {};
  }
  std::string_view text =
      DecodeText(definition, table_->CodecOf(column),
                 IsLongValue(definition.shown.type) ? Raw(column) : CellBytes(column), texts_[column]);
  if (definition.fixed && definition.shown.type == ColumnType::kText) {
    text = text.substr(0, text.find_last_not_of(' ') + 1);  // it was padded to the column's length
  }
  return text;
}

Bytes RowScan::Raw(std::size_t column) {
  const ColumnDefinition& definition = table_->Definition().columns[column];
  if (IsNull(column)) {
    return {};
  }
  const Bytes bytes = CellBytes(column);
  if (!IsLongValue(definition.shown.type) || bytes.empty()) {
    return bytes;
  }
  ReadLongValue(table_->File(), row_page_, bytes, long_values_[column]);
  return long_values_[column];
}

}  // namespace marlevo::access
