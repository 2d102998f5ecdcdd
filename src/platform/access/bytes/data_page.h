// A data page: a table of slots at the front; the rows lie at the back, row 0 at the very end and each later row in
// front of the one before it. Pages that hold the rows of usage maps or of long values have this shape too.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/format.h"
#include "platform/access/bytes/schema.h"

namespace marlevo::access {

// A pointer to a row, as structures of the file store it: the slot in the first byte, the page in the other three.
struct RowPointer {
  std::uint32_t page = 0;
  std::uint32_t slot = 0;  // 0..255
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
  const auto number = static_cast<std::uint32_t>(id);
  return {number >> 8, number & 0xFF};
}

// Reads a data page. Every access is checked: a place outside the page throws an AccessError with the page's number.
class DataPage {
 public:
  // Throws AccessError when the page is not a data page or its slot table does not fit into it.
  DataPage(const Format& format, std::uint32_t number, Bytes page);

  std::uint32_t Owner() const { return LoadU32(&page_[kOwnerAt]); }
  std::size_t FreeSpace() const { return LoadU16(&page_[kFreeSpaceAt]); }  // the stored count; Room() computes it
  std::uint32_t SlotCount() const { return slot_count_; }
  std::uint16_t Flags(std::size_t slot) const { return SlotAt(slot) & kSlotFlags; }
  bool IsDeleted(std::size_t slot) const { return (SlotAt(slot) & kSlotDeleted) == kSlotDeleted; }

  // The row in this slot: it reaches from the slot's own offset to the offset of the slot before.
  Bytes Row(std::size_t slot) const;

  // The first slot, from `slot` on, that is wanted; SlotCount() when there is none. A row is wanted when it has been
  // moved, when `wanted` is true of its bytes, and when it is shorter than `least` bytes or lies in the wrong place,
  // which Row and RowView report.
  template <typename Wanted>
  std::uint32_t Find(std::uint32_t slot, std::size_t least, Wanted wanted) const {
    const std::byte* const slots = &page_[format_->slots_at];
    const std::size_t rows_from = RowsFrom();
    std::size_t end = std::min(RowEnd(slot), page_.size());
    for (; slot < slot_count_; ++slot) {
      const std::uint16_t entry = LoadU16(slots + 2 * slot);
      const std::size_t start = entry & kSlotOffset;
      if (entry == start) {
        if (start < rows_from || start + least > end || wanted(Bytes(page_.data() + start, end - start))) {
          break;
        }
        end = start;
      } else if ((entry & kSlotDeleted) == kSlotMoved) {
        break;
      } else {
        end = std::min(start, end);
      }
    }
    return slot;
  }

  // Free bytes between the slot table and the rows, computed from the slots.
  std::size_t Room() const;

  // Where the bytes of the row in this slot have been moved to. The slot has the flag kSlotMoved.
  RowPointer Body(std::size_t slot) const;

 private:
  std::size_t RowsFrom() const { return format_->slots_at + 2 * slot_count_; }  // where the slot table ends
  std::size_t RowEnd(std::size_t slot) const { return slot == 0 ? page_.size() : SlotAt(slot - 1) & kSlotOffset; }
  std::uint16_t SlotAt(std::size_t slot) const { return LoadU16(&page_[format_->slots_at + 2 * slot]); }

  const Format* format_;
  std::uint32_t number_;
  Bytes page_;
  std::uint32_t slot_count_;
};

// Turns a page, whatever it holds, into an empty data page.
void FormatDataPage(const Format& format, MutableBytes page, std::uint32_t owner);

// Appends a row with the next slot number; the caller has checked that row.size() + 2 bytes and a slot number are free.
std::uint32_t AppendRow(const Format& format, MutableBytes page, Bytes row, std::uint16_t flags = 0);

// Frees the row's bytes. Its slot stays and is marked deleted, so that the other rows keep their slot numbers; deleted
// slots at the end of the slot table are removed.
void DeleteRow(const Format& format, std::uint32_t number, MutableBytes page, std::size_t slot);

// Lengthens a row with zero bytes at its end, or cuts its end off. The caller has checked that there is room.
void ResizeRow(const Format& format, std::uint32_t number, MutableBytes page, std::size_t slot, std::size_t size);

}  // namespace marlevo::access
