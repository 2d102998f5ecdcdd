#include "platform/access/bytes/data_page.h"

#include <algorithm>
#include <string>
#include <vector>

#include "platform/access/bytes/access_error.h"

namespace marlevo::access {

namespace {

std::byte* SlotPlace(const Format& format, MutableBytes page, std::size_t slot) {
  return &page[format.slots_at + 2 * slot];
}

std::size_t Offset(const Format& format, MutableBytes page, std::size_t slot) {
  return LoadU16(SlotPlace(format, page, slot)) & kSlotOffset;
}

// Called before rows are moved: throws AccessError unless the rows from `slot` on lie inside the page and in order.
void CheckRows(const Format& format, std::uint32_t number, MutableBytes page, std::size_t slot) {
  const DataPage view(format, number, page);
  for (std::size_t i = slot; i < view.SlotCount(); ++i) {
    view.Row(i);
  }
  view.Row(slot);
}

// Moves the rows of the slots after `slot` so that the row of `slot` gets `size` bytes, and sets all their offsets.
void MoveLaterRows(const Format& format, MutableBytes page, std::size_t slot, std::size_t size) {
  const std::size_t count = LoadU16(&page[format.slot_count_at]);
  const std::size_t end = slot == 0 ? page.size() : Offset(format, page, slot - 1);
  const std::size_t start = Offset(format, page, slot);
  const std::size_t last = Offset(format, page, count - 1);
  const std::size_t new_start = end - size;
  std::memmove(&page[new_start + last - start], &page[last], start - last);
  for (std::size_t i = slot; i < count; ++i) {
    std::byte* at = SlotPlace(format, page, i);
    StoreU16(at, LoadU16(at) + new_start - start);
  }
}

void UpdateFreeSpace(const Format& format, MutableBytes page) {
  const std::size_t count = LoadU16(&page[format.slot_count_at]);
  const std::size_t rows = count == 0 ? page.size() : Offset(format, page, count - 1);
  StoreU16(&page[kFreeSpaceAt], rows - (format.slots_at + 2 * count));
}

}  // namespace

DataPage::DataPage(const Format& format, std::uint32_t number, Bytes page)
    : format_(&format), number_(number), page_(page), slot_count_(LoadU16(&page[format.slot_count_at])) {
  if (LoadU8(page.data()) != kDataPage) {
    throw AccessError(number, "expected a data page, found type " + std::to_string(LoadU8(page.data())));
  }
  if (RowsFrom() > page.size()) {
    throw AccessError(number, "the page cannot hold " + std::to_string(slot_count_) + " rows");
  }
}

Bytes DataPage::Row(std::size_t slot) const {
  if (slot >= slot_count_) {
    throw AccessError(number_, "there is no row " + std::to_string(slot));
  }
  const std::size_t start = SlotAt(slot) & kSlotOffset;
  const std::size_t end = RowEnd(slot);
  if (start > end || end > page_.size() || start < RowsFrom()) {
    throw AccessError(number_, "row " + std::to_string(slot) + " does not lie between its neighbours");
  }
  return page_.subspan(start, end - start);
}

std::size_t DataPage::Room() const {
  const Bytes last = slot_count_ == 0 ? page_.last(0) : Row(slot_count_ - 1);
  return last.data() - page_.data() - RowsFrom();
}

RowPointer DataPage::Body(std::size_t slot) const {
  const Bytes row = Row(slot);
  if (row.size() < 4) {
    throw AccessError(number_, "row " + std::to_string(slot) + " is too short for a pointer to its body");
  }
  return LoadRowPointer(row.data());
}

void FormatDataPage(const Format& format, MutableBytes page, std::uint32_t owner) {
  std::ranges::fill(page, std::byte{0});
  StoreU8(&page[0], kDataPage);
  StoreU8(&page[1], 1);
  StoreU32(&page[kOwnerAt], owner);
  UpdateFreeSpace(format, page);
}

std::uint32_t AppendRow(const Format& format, MutableBytes page, Bytes row, std::uint16_t flags) {
  const std::uint32_t count = LoadU16(&page[format.slot_count_at]);
  const std::size_t end = count == 0 ? page.size() : Offset(format, page, count - 1);
  std::ranges::copy(row, &page[end - row.size()]);
  StoreU16(SlotPlace(format, page, count), (end - row.size()) | flags);
  StoreU16(&page[format.slot_count_at], count + 1);
  UpdateFreeSpace(format, page);
  return count;
}

void DeleteRow(const Format& format, std::uint32_t number, MutableBytes page, std::size_t slot) {
  CheckRows(format, number, page, slot);
  MoveLaterRows(format, page, slot, 0);
  std::byte* at = SlotPlace(format, page, slot);
  StoreU16(at, LoadU16(at) | kSlotDeleted);
  std::size_t count = LoadU16(&page[format.slot_count_at]);
  while (count > 0 && (LoadU16(SlotPlace(format, page, count - 1)) & kSlotDeleted) == kSlotDeleted) {
    --count;
  }
  StoreU16(&page[format.slot_count_at], count);
  UpdateFreeSpace(format, page);
}

void ResizeRow(const Format& format, std::uint32_t number, MutableBytes page, std::size_t slot, std::size_t size) {
  CheckRows(format, number, page, slot);
  const Bytes row = DataPage(format, number, page).Row(slot);
  std::vector<std::byte> content(row.begin(), row.end());
  content.resize(size);
  MoveLaterRows(format, page, slot, size);
  std::ranges::copy(content, &page[Offset(format, page, slot)]);
  UpdateFreeSpace(format, page);
}

}  // namespace marlevo::access
