#include "platform/access/storage/definition_pages.h"

#include <algorithm>
#include <string>

#include "platform/access/bytes/access_error.h"

namespace marlevo::access {

namespace {

constexpr std::size_t kNextAt = 4;
constexpr std::uint16_t kJet3Mark = 0x4356;  // "VC", stands where Jet 4 stores the free space of the page
constexpr std::size_t kHeader = 8;           // every page has one; on the first page it is part of the definition
constexpr std::size_t kMaxPages = 64;        // the largest table needs a quarter of these; a longer chain is a circle

}  // namespace

std::vector<std::uint32_t> DefinitionPages(const Storage& file, std::uint32_t page) {
  std::vector<std::uint32_t> pages;
  std::uint32_t next = page;
  do {
    const pager::PageRef part = file.Read(next);
    const std::uint8_t type = LoadU8(part.Bytes().data());
    if (type != kDefinitionPage || pages.size() == kMaxPages) {
      throw AccessError(next, "expected a table's definition, found type " + std::to_string(type));
    }
    pages.push_back(next);
    next = LoadU32(&part.Bytes()[kNextAt]);
  } while (next != 0);
  return pages;
}

std::vector<std::byte> ReadDefinitionPages(const Storage& file, std::uint32_t page) {
  std::vector<std::byte> joined;
  for (const std::uint32_t number : DefinitionPages(file, page)) {
    const pager::PageRef part = file.Read(number);
    const Bytes content = part.Bytes().subspan(number == page ? 0 : kHeader);
    joined.insert(joined.end(), content.begin(), content.end());
  }
  return joined;
}

void WriteDefinitionPages(Storage& file, std::uint32_t page, Bytes joined) {
  const std::size_t page_size = file.Layout().page_size;
  for (bool first = true; !joined.empty(); first = false) {
    const std::size_t header = first ? 0 : kHeader;
    const Bytes part = joined.first(std::min(joined.size(), page_size - header));
    joined = joined.subspan(part.size());
    const std::uint32_t next = joined.empty() ? 0 : file.TakePage();
    const pager::PageEdit edit = file.Change(page);
    std::ranges::fill(edit.Bytes(), std::byte{0});
    std::ranges::copy(part, edit.Bytes().begin() + header);
    StoreU8(&edit.Bytes()[0], kDefinitionPage);
    StoreU8(&edit.Bytes()[1], 1);
    const std::size_t used = header + part.size() + kHeader;
    const std::size_t free = page_size - std::min(used, page_size);
    StoreU16(&edit.Bytes()[kFreeSpaceAt], file.Layout().version == 3 ? kJet3Mark : free);
    StoreU32(&edit.Bytes()[kNextAt], next);
    page = next;
  }
}

}  // namespace marlevo::access
