#include "platform/access/storage/global_map.h"

#include <algorithm>
#include <vector>

#include "platform/access/bytes/access_error.h"

namespace marlevo::access {

namespace {

constexpr std::size_t kGrowth = 64;  // bytes by which the map is lengthened, with bits for 512 pages

}  // namespace

void GlobalMap::Reach(std::uint32_t page) {
  const Loaded map = Load();
  if (!map.IsInline()) {
    const std::uint32_t index = page / PagesPerMapPage();
    if (index >= map.References()) {
      throw AccessError(row_.page, "the map of the file cannot reach page " + std::to_string(page));
    }
    if (map.Reference(index) == 0) {
      AddReference(index);
    }
  } else if (!map.CoversInline(page) && !Lengthen(page)) {
    MakeReferences(page);
  }
}

// Marks the pages from `from` to the end of the file as used.
void GlobalMap::MarkUsed(std::uint32_t from) {
  for (std::uint32_t page = from; page < file_->Pages().PageCount(); ++page) {
    Remove(page);
  }
}

// Lengthens the bits in the map's row. Returns false when the row's page has no room for that.
bool GlobalMap::Lengthen(std::uint32_t page) {
  const Loaded map = Load();
  const std::size_t room = DataPage(file_->Layout(), row_.page, map.page.Bytes()).Room();
  const std::size_t needed = (page - map.First()) / 8 + 1 - map.Bits().size();
  if (page < map.First() || needed > room) {
    return false;
  }
  const std::size_t old_size = map.row.size();
  const std::uint32_t known = map.First() + static_cast<std::uint32_t>(map.Bits().size() * 8);
  const pager::PageEdit edit = file_->Change(row_.page);
  ResizeRow(file_->Layout(), row_.page, edit.Bytes(), row_.slot, old_size + std::min(room, std::max(needed, kGrowth)));
  const Loaded grown = Load();
  std::ranges::fill(Writable(edit, grown).subspan(old_size), std::byte{0xFF});
  MarkUsed(known);
  return true;
}

// Moves the bits from the map's row to pages of their own. Those are appended to the file: while the bits are on their
// way the map cannot be asked for free pages.
void GlobalMap::MakeReferences(std::uint32_t page) {
  std::vector<std::uint32_t> free;
  for (std::optional<std::uint32_t> next = Next(0); next && *next < file_->Pages().PageCount();
       next = Next(*next + 1)) {
    free.push_back(*next);
  }
  {
    const Loaded map = Load();
    const pager::PageEdit edit = file_->Change(row_.page);
    const MutableBytes row = Writable(edit, map);
    std::ranges::fill(row, std::byte{0});
    StoreU8(row.data(), kReferenceMap);
  }
  for (std::uint32_t index = 0; index <= page / PagesPerMapPage(); ++index) {
    Reach(index * PagesPerMapPage());
  }
  for (const std::uint32_t number : free) {
    Add(number);
  }
}

void GlobalMap::AddReference(std::uint32_t index) {
  const std::uint32_t map_page = file_->AppendPage();
  {
    const pager::PageEdit edit = file_->Change(map_page);
    FormatMapPage(edit.Bytes(), true);
  }
  SetReference(index, map_page);
  MarkUsed(index * PagesPerMapPage());
  Reach(map_page);
  Remove(map_page);
}

}  // namespace marlevo::access
