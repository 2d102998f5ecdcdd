#include "platform/access/storage/usage_map.h"

#include <algorithm>
#include <bit>
#include <string>
#include <vector>

#include "platform/access/bytes/access_error.h"

namespace marlevo::access {

namespace {

// Places in a map's row, after the byte that tells its type.
constexpr std::size_t kFirstPageAt = 1;   // inline map: the page to which bit 0 belongs
constexpr std::size_t kInlineBitsAt = 5;  // inline map: the bits
constexpr std::size_t kReferencesAt = 1;  // reference map: numbers of pages of bits, four bytes each

// The first bit that is set, not counting those before `from`. Whole groups of 64 clear bits are passed over at once.
std::optional<std::uint32_t> FindBit(Bytes bits, std::uint32_t from) {
  std::uint32_t byte = from / 8;
  if (byte >= bits.size()) {
    return std::nullopt;
  }
  const unsigned first = LoadU8(&bits[byte]) & (0xFFu << from % 8);
  if (first != 0) {
    return byte * 8 + std::countr_zero(first);
  }
  ++byte;
  while (byte + 8 <= bits.size() && Load<std::uint64_t>(&bits[byte]) == 0) {
    byte += 8;
  }
  while (byte < bits.size() && bits[byte] == std::byte{0}) {
    ++byte;
  }
  if (byte == bits.size()) {
    return std::nullopt;
  }
  return byte * 8 + std::countr_zero(LoadU8(&bits[byte]));
}

bool TestBit(Bytes bits, std::size_t bit) {
  return (LoadU8(&bits[bit / 8]) >> bit % 8 & 1) != 0;
}

void PutBit(MutableBytes bits, std::size_t bit, bool value) {
  const std::byte mask = std::byte{1} << bit % 8;
  bits[bit / 8] = value ? bits[bit / 8] | mask : bits[bit / 8] & ~mask;
}

// The bits of a page of bits; throws AccessError when the page is of another type.
Bytes MapPageBits(std::uint32_t number, Bytes page) {
  if (LoadU8(page.data()) != kMapPage) {
    throw AccessError(number, "expected a page of a usage map, found type " + std::to_string(LoadU8(page.data())));
  }
  return page.subspan(kMapPageHeader);
}

}  // namespace

void FormatMapPage(MutableBytes page, bool members) {
  std::ranges::fill(page, members ? std::byte{0xFF} : std::byte{0});
  StoreU32(page.data(), 0);
  StoreU8(&page[0], kMapPage);
  StoreU8(&page[1], 1);
}

bool UsageMap::Loaded::IsInline() const {
  return LoadU8(row.data()) == kInlineMap;
}
std::uint32_t UsageMap::Loaded::First() const {
  return LoadU32(&row[kFirstPageAt]);
}
Bytes UsageMap::Loaded::Bits() const {
  return row.subspan(kInlineBitsAt);
}
std::size_t UsageMap::Loaded::References() const {
  return (row.size() - kReferencesAt) / 4;
}
std::uint32_t UsageMap::Loaded::Reference(std::size_t index) const {
  return LoadU32(&row[kReferencesAt + 4 * index]);
}

UsageMap::Loaded UsageMap::Load() const {
  Loaded loaded{.page = file_->Read(row_.page), .row = {}};
  const DataPage page(file_->Layout(), row_.page, loaded.page.Bytes());
  loaded.row = page.Row(row_.slot);
  const bool maps_live_here = page.Owner() == kOwnerUsageMaps || page.Owner() == kOwnerGlobalMap;
  if (!maps_live_here || page.Flags(row_.slot) != 0 || loaded.row.size() < kInlineBitsAt ||
      LoadU8(loaded.row.data()) > kReferenceMap) {
    throw AccessError(row_.page, "row " + std::to_string(row_.slot) + " is no usage map");
  }
  // With a first page near 2^32 the number after a member would overflow to 0, and a walk would never end.
  if (loaded.IsInline() && loaded.First() > file_->Layout().max_pages) {
    throw AccessError(row_.page, "the usage map in row " + std::to_string(row_.slot) + " begins behind every page");
  }
  return loaded;
}

MutableBytes UsageMap::Writable(const pager::PageEdit& edit, const Loaded& loaded) const {
  return edit.Bytes().subspan(loaded.row.data() - loaded.page.Bytes().data(), loaded.row.size());
}

void UsageMap::SetReference(std::size_t index, std::uint32_t map_page) {
  const Loaded map = Load();
  const pager::PageEdit edit = file_->Change(row_.page);
  StoreU32(&Writable(edit, map)[kReferencesAt + 4 * index], map_page);
}

std::uint32_t UsageMap::PagesPerMapPage() const {
  return (file_->Layout().page_size - kMapPageHeader) * 8;
}

std::vector<std::uint32_t> UsageMap::MapPages() const {
  std::vector<std::uint32_t> pages;
  const Loaded map = Load();
  for (std::size_t index = 0; !map.IsInline() && index < map.References(); ++index) {
    if (map.Reference(index) != 0) {
      pages.push_back(map.Reference(index));
    }
  }
  return pages;
}

bool UsageMap::Contains(std::uint32_t page) const {
  const Loaded map = Load();
  if (map.IsInline()) {
    return map.CoversInline(page) && TestBit(map.Bits(), page - map.First());
  }
  const std::size_t index = page / PagesPerMapPage();
  if (index >= map.References() || map.Reference(index) == 0) {
    return false;
  }
  const pager::PageRef map_page = file_->Read(map.Reference(index));
  return TestBit(MapPageBits(map.Reference(index), map_page.Bytes()), page % PagesPerMapPage());
}

std::optional<std::uint32_t> UsageMap::Next(std::uint32_t page) const {
  const Loaded map = Load();
  if (map.IsInline()) {
    const std::uint32_t from = page > map.First() ? page - map.First() : 0;
    const std::optional<std::uint32_t> bit = FindBit(map.Bits(), from);
    return bit ? std::optional(map.First() + *bit) : std::nullopt;
  }
  const std::uint32_t per_page = PagesPerMapPage();
  std::uint32_t from = page % per_page;
  for (std::uint32_t index = page / per_page; index < map.References(); ++index) {
    if (const std::uint32_t reference = map.Reference(index); reference != 0) {
      const pager::PageRef map_page = file_->Read(reference);
      if (const auto bit = FindBit(MapPageBits(reference, map_page.Bytes()), from)) {
        return index * per_page + *bit;
      }
    }
    from = 0;
  }
  return std::nullopt;
}

// Returns false when the map has no bit for the page.
bool UsageMap::SetBit(std::uint32_t page, bool value) {
  const Loaded map = Load();
  if (map.IsInline()) {
    if (!map.CoversInline(page)) {
      return false;
    }
    const pager::PageEdit edit = file_->Change(row_.page);
    PutBit(Writable(edit, map).subspan(kInlineBitsAt), page - map.First(), value);
    return true;
  }
  const std::size_t index = page / PagesPerMapPage();
  if (index >= map.References() || map.Reference(index) == 0) {
    return false;
  }
  const pager::PageRef map_page = file_->Read(map.Reference(index));
  MapPageBits(map.Reference(index), map_page.Bytes());
  const pager::PageEdit edit = file_->Change(map.Reference(index));
  PutBit(edit.Bytes().subspan(kMapPageHeader), page % PagesPerMapPage(), value);
  return true;
}

void UsageMap::Add(std::uint32_t page) {
  if (SetBit(page, true)) {
    return;
  }
  if (Load().IsInline()) {
    MakeReferences();
    Add(page);
    return;
  }
  const std::size_t index = page / PagesPerMapPage();
  if (index >= Load().References()) {
    throw AccessError(row_.page,
                      "usage map " + std::to_string(row_.slot) + " cannot reach page " + std::to_string(page));
  }
  const std::uint32_t map_page = file_->TakePage();
  const pager::PageEdit edit = file_->Change(map_page);
  FormatMapPage(edit.Bytes(), false);
  SetReference(index, map_page);
  SetBit(page, true);
}

void UsageMap::Remove(std::uint32_t page) {
  if (Contains(page)) {
    SetBit(page, false);
  }
}

// Turns an inline map into a reference map with the same members.
void UsageMap::MakeReferences() {
  std::vector<std::uint32_t> members;
  for (std::optional<std::uint32_t> page = Next(0); page; page = Next(*page + 1)) {
    members.push_back(*page);
  }
  {
    const Loaded map = Load();
    const pager::PageEdit edit = file_->Change(row_.page);
    const MutableBytes row = Writable(edit, map);
    std::ranges::fill(row, std::byte{0});
    StoreU8(row.data(), kReferenceMap);
  }
  for (const std::uint32_t member : members) {
    Add(member);
  }
}

}  // namespace marlevo::access
