// A data page: a table of slots at the front, rows filled in from the back, in the order of the slots. Also the pages
// of usage maps and of long values have this shape.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/format.h"
#include "platform/access/bytes/schema.h"

namespace marlevo::access {

// How a structure of the file points at a row: slot in the first byte, page in the other three.
struct RowPointer {
  std::uint32_t page = 0;
  std::uint8_t slot = 0;
  bool operator==(const RowPointer&) const = default;
};

inline RowPointer LoadRowPointer(const std::byte* at) {
  return {LoadU32(at) >> 8, LoadU8(at)};
}
inline void StoreRowPointer(std::byte* at, RowPointer row) {
  StoreU32(at, row.page << 8 | row.slot);
}

inline RowId ToRowId(RowPointer row) {
  return RowId{row.page << 8 | row.slot};
}
inline RowPointer FromRowId(RowId id) {
  return {static_cast<std::uint32_t>(id) >> 8, static_cast<std::uint8_t>(static_cast<std::uint32_t>(id) & 0xFF)};
}

// Reads a page. Every access is checked against the page's bounds; what lies outside is an AccessError with the page.
class DataPage {
 public:
  // Throws when the page is no data page or its slot table does not fit.
  DataPage(const Format& format, std::uint32_t number, Bytes page);

  std::uint32_t Owner() const { return LoadU32(&page_[kOwnerAt]); }
  std::size_t FreeSpace() const { return LoadU16(&page_[kFreeSpaceAt]); }  // as the page itself says
  std::size_t SlotCount() const { return slot_count_; }
  std::uint16_t Flags(std::size_t slot) const { return SlotAt(slot) & static_cast<std::uint16_t>(~kSlotOffset); }
  bool IsDeleted(std::size_t slot) const { return (SlotAt(slot) & kSlotDeleted) == kSlotDeleted; }

  // The bytes between this slot's offset and the one before it. In the header, since a scan does little else.
  Bytes Row(std::size_t slot) const {
    if (slot >= slot_count_) {
      ThrowNoRow(slot);
    }
    const std::size_t start = SlotAt(slot) & kSlotOffset;
    const std::size_t end = slot == 0 ? page_.size() : SlotAt(slot - 1) & kSlotOffset;
    if (start > end || end > page_.size() || start < format_->slots_at + 2 * slot_count_) {
      ThrowMisplaced(slot);
    }
    return {page_.data() + start, end - start};
  }

  // Free bytes between the slot table and the rows, worked out from the slots.
  std::size_t Room() const;

  // Of a slot with kSlotMoved.
  RowPointer Body(std::size_t slot) const;

 private:
  [[noreturn]] void ThrowNoRow(std::size_t slot) const;
  [[noreturn]] void ThrowMisplaced(std::size_t slot) const;
  std::uint16_t SlotAt(std::size_t slot) const { return LoadU16(&page_[format_->slots_at + 2 * slot]); }

  const Format* format_;
  std::uint32_t number_;
  Bytes page_;
  std::size_t slot_count_;
};

// Makes an empty data page of a zeroed or used one.
void FormatDataPage(const Format& format, MutableBytes page, std::uint32_t owner);

// Appends a row with the next slot number; the caller has checked that row.size() + 2 bytes and a slot number are free.
std::uint8_t AppendRow(const Format& format, MutableBytes page, Bytes row, std::uint16_t flags = 0);

// Gives the row's bytes back to the page. The slot stays, marked deleted, so that the others keep their numbers;
// deleted slots at the table's end go.
void DeleteRow(const Format& format, std::uint32_t number, MutableBytes page, std::size_t slot);

// Lengthens or shortens a row: bytes are kept from its start, new ones are zero. The caller has checked the room.
void ResizeRow(const Format& format, std::uint32_t number, MutableBytes page, std::size_t slot, std::size_t size);

}  // namespace marlevo::access
