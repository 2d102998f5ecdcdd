#include "platform/access/index/index_page_view.h"

#include <algorithm>
#include <array>
#include <bit>

#include "platform/access/bytes/access_error.h"

namespace marlevo::access {

namespace {

constexpr std::size_t kLargestMask = kJet4.index_page.entries - kJet4.index_page.entry_mask;

std::uint32_t LoadBigEndian(Bytes bytes) {
  return __builtin_bswap32(LoadU32(bytes.data()));
}

void AppendBigEndian(std::uint32_t number, std::vector<std::byte>& bytes) {
  bytes.resize(bytes.size() + sizeof number);
  StoreU32(bytes.data() + bytes.size() - sizeof number, __builtin_bswap32(number));
}

std::size_t MaskSize(const Format& format) {
  return format.index_page.entries - format.index_page.entry_mask;
}

void SetBoundary(const Format& format, MutableBytes page, std::size_t at) {
  page[format.index_page.entry_mask + at / 8] |= std::byte{1} << at % 8;
}

// Where the last entry ends; 0 on a page without entries.
std::size_t LastBoundary(const Format& format, Bytes page) {
  const Bytes mask = page.subspan(format.index_page.entry_mask, MaskSize(format));
  std::size_t size = mask.size();
  while (size >= 8 && Load<std::uint64_t>(&mask[size - 8]) == 0) {
    size -= 8;
  }
  while (size > 0 && mask[size - 1] == std::byte{0}) {
    --size;
  }
  return size == 0 ? 0 : 8 * (size - 1) + std::bit_width(LoadU8(&mask[size - 1])) - 1;
}

// Moves the entries from the place `from` on, and their bits in the mask, to the place `to`. The bit at `from` itself
// does not move: on inserting it still marks the end of the entry before, on erasing it marked the end of the erased
// one.
void MoveEntries(const Format& format, MutableBytes page, std::size_t from, std::size_t to) {
  const std::size_t last = LastBoundary(format, page);
  std::byte* entries = &page[format.index_page.entries];
  std::memmove(entries + to, entries + from, last - from);
  StoreU16(&page[kFreeSpaceAt], LoadU16(&page[kFreeSpaceAt]) + from - to);

  const MutableBytes mask = page.subspan(format.index_page.entry_mask, MaskSize(format));
  std::array<std::uint8_t, kLargestMask> old;
  std::memcpy(old.data(), mask.data(), mask.size());
  const std::size_t kept = std::min(from, to) + 1;  // the bits before this place stay
  mask[kept / 8] &= std::byte{0xFF} >> (8 - kept % 8);
  std::fill(mask.begin() + kept / 8 + 1, mask.end(), std::byte{0});
  for (std::size_t byte = from / 8; byte <= last / 8; ++byte) {
    for (unsigned bits = old[byte]; bits != 0; bits &= bits - 1) {
      const std::size_t boundary = 8 * byte + std::countr_zero(bits);
      if (boundary > from) {
        SetBoundary(format, page, boundary - from + to);
      }
    }
  }
}

}  // namespace

void AppendEntryRow(RowId row, std::vector<std::byte>& entry) {
  AppendBigEndian(static_cast<std::uint32_t>(row), entry);
}

RowId EntryRow(Bytes leaf_entry) {
  return RowId{LoadBigEndian(leaf_entry.last(kEntryRowSize))};
}

void AppendEntryChild(std::uint32_t child, std::vector<std::byte>& entry) {
  AppendBigEndian(child, entry);
}

std::uint32_t EntryChild(Bytes entry) {
  return LoadBigEndian(entry.last(kEntryChildSize));
}

IndexPageView::IndexPageView(const Format& format, std::uint32_t table, std::uint32_t number, Bytes page)
    : format_(&format), number_(number), page_(page), end_(LastBoundary(format, page)) {
  const auto& places = format.index_page;
  const std::uint8_t type = LoadU8(page.data());
  if ((type != kIndexLeafPage && type != kIndexNodePage) || LoadU32(&page[kOwnerAt]) != table) {
    throw AccessError(number, "expected a page of the table's index");
  }
  links_.previous = LoadU32(&page[places.previous]);
  links_.next = LoadU32(&page[places.next]);
  smallest_ = 1 + kEntryRowSize;
  if (type == kIndexNodePage) {
    links_.level = std::max<unsigned>(LoadU8(&page[places.level]), 1);
    links_.tail = LoadU32(&page[places.tail]);
    smallest_ += kEntryChildSize;
  }
  prefix_ = places.prefix_width == 1 ? LoadU8(&page[places.prefix_length]) : LoadU16(&page[places.prefix_length]);
  if (places.entries + end_ > page.size() || (end_ != 0 && First().end < prefix_)) {
    throw AccessError(number, "the entries of the index page do not fit into it");
  }
}

std::size_t IndexPageView::BoundaryUpTo(std::size_t at) const {
  const std::byte* mask = &page_[format_->index_page.entry_mask];
  unsigned bits = LoadU8(mask + at / 8) & (0xFFu >> (7 - at % 8));
  std::size_t byte = at / 8;
  while (bits == 0 && byte > 0) {
    bits = LoadU8(mask + --byte);
  }
  return bits == 0 ? 0 : 8 * byte + std::bit_width(bits) - 1;
}

// The first boundary behind `at`, which is before the end, so that there is one.
std::size_t IndexPageView::BoundaryAfter(std::size_t at) const {
  const std::byte* mask = &page_[format_->index_page.entry_mask];
  std::size_t byte = (at + 1) / 8;
  unsigned bits = LoadU8(mask + byte) & (0xFFu << (at + 1) % 8);
  while (bits == 0) {
    bits = LoadU8(mask + ++byte);
  }
  return 8 * byte + std::countr_zero(bits & 0xFF);
}

IndexPageView::Place IndexPageView::At(std::size_t start) const {
  if (start == end_) {
    return {end_, end_};
  }
  const Place place{start, BoundaryAfter(start)};
  if (place.end - place.start + (start == 0 ? 0 : prefix_) < smallest_) {
    throw AccessError(number_, "the entries of the index page do not fit into it");
  }
  return place;
}

bool IndexPageView::IsLess(Place place, Bytes sought) const {
  Bytes rest = Stored(place);
  rest = rest.first(rest.size() - std::min(rest.size(), IsLeaf() ? 0 : kEntryChildSize));
  if (place.start != 0 && prefix_ != 0) {
    const Bytes prefix = page_.subspan(format_->index_page.entries, prefix_);
    const Bytes front = sought.first(std::min(sought.size(), prefix_));
    if (!std::ranges::equal(prefix, front)) {
      return std::ranges::lexicographical_compare(prefix, front);
    }
    sought = sought.subspan(prefix_);
  }
  return std::ranges::lexicographical_compare(rest, sought);
}

IndexPageView::Place IndexPageView::LowerBound(Bytes sought) const {
  std::size_t first = 0;
  std::size_t end = end_;
  while (first < end) {
    const Place middle = At(BoundaryUpTo(first + (end - first) / 2));
    if (IsLess(middle, sought)) {
      first = middle.end;
    } else {
      end = middle.start;
    }
  }
  return At(first);
}

Bytes IndexPageView::Entry(Place place, std::vector<std::byte>& buffer) const {
  const Bytes stored = Stored(place);
  if (place.start == 0 || prefix_ == 0) {
    return stored;
  }
  const Bytes prefix = page_.subspan(format_->index_page.entries, prefix_);
  buffer.assign(prefix.begin(), prefix.end());
  buffer.insert(buffer.end(), stored.begin(), stored.end());
  return buffer;
}

bool IndexPageView::IsEntry(Place place, Bytes entry) const {
  std::vector<std::byte> buffer;
  return std::ranges::equal(Entry(place, buffer), entry);
}

std::uint32_t IndexPageView::Child(Place place) const {
  if (IsEnd(place)) {
    if (links_.tail != 0 || end_ == 0) {
      return links_.tail;
    }
    place = At(BoundaryUpTo(end_ - 1));
  }
  std::vector<std::byte> buffer;
  return EntryChild(Entry(place, buffer));
}

void InsertIndexEntry(const Format& format, MutableBytes page, IndexPageView::Place place, Bytes entry) {
  MoveEntries(format, page, place.start, place.start + entry.size());
  std::memcpy(&page[format.index_page.entries + place.start], entry.data(), entry.size());
  SetBoundary(format, page, place.start + entry.size());
}

void EraseIndexEntry(const Format& format, MutableBytes page, IndexPageView::Place place) {
  MoveEntries(format, page, place.end, place.start);
}

}  // namespace marlevo::access
