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
    static_cast<void>(view.Row(i));
  }
  static_cast<void>(view.Row(slot));
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
    StoreU16(at, static_cast<std::uint16_t>(LoadU16(at) + new_start - start));
  }
}

void UpdateFreeSpace(const Format& format, MutableBytes page) {
  const std::size_t count = LoadU16(&page[format.slot_count_at]);
  const std::size_t rows = count == 0 ? page.size() : Offset(format, page, count - 1);
  StoreU16(&page[kFreeSpaceAt], static_cast<std::uint16_t>(rows - (format.slots_at + 2 * count)));
}

}  // namespace

DataPage::DataPage(const Format& format, std::uint32_t number, Bytes page)
    : format_(&format), number_(number), page_(page), slot_count_(LoadU16(&page[format.slot_count_at])) {
  if (LoadU8(page.data()) != kDataPage) {
    throw AccessError(number, "expected a data page, found type " + std::to_string(LoadU8(page.data())));
  }
  if (format.slots_at + 2 * slot_count_ > page.size()) {
    throw AccessError(number, "the page cannot hold " + std::to_string(slot_count_) + " rows");
  }
}

void DataPage::ThrowNoRow(std::size_t slot) const {
  throw AccessError(number_, "there is no row " + std::to_string(slot));
}

void DataPage::ThrowMisplaced(std::size_t slot) const {
  throw AccessError(number_, "row " + std::to_string(slot) + " does not lie between its neighbours");
}

std::size_t DataPage::Room() const {
  const std::size_t slots_end = format_->slots_at + 2 * slot_count_;
  if (slot_count_ == 0) {
    return page_.size() - slots_end;
  }
  return static_cast<std::size_t>(Row(slot_count_ - 1).data() - page_.data()) - slots_end;
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

std::uint8_t AppendRow(const Format& format, MutableBytes page, Bytes row, std::uint16_t flags) {
  const std::size_t count = LoadU16(&page[format.slot_count_at]);
  const std::size_t end = count == 0 ? page.size() : Offset(format, page, count - 1);
  std::ranges::copy(row, &page[end - row.size()]);
  StoreU16(SlotPlace(format, page, count), static_cast<std::uint16_t>((end - row.size()) | flags));
  StoreU16(&page[format.slot_count_at], static_cast<std::uint16_t>(count + 1));
  UpdateFreeSpace(format, page);
  return static_cast<std::uint8_t>(count);
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
  StoreU16(&page[format.slot_count_at], static_cast<std::uint16_t>(count));
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
