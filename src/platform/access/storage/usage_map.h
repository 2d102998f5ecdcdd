// A usage map: a set of page numbers with one bit for each page. The map is a row of a data page. A short map holds its
// bits in that row (an inline map); a long one holds the numbers of pages full of bits there (a reference map).
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/access/bytes/data_page.h"
#include "platform/access/storage/storage.h"

namespace marlevo::access {

class UsageMap {
 public:
  UsageMap(Storage& file, RowPointer row) : file_(&file), row_(row) {}

  bool Contains(std::uint32_t page) const;

  // The smallest member that is not less than `page`.
  std::optional<std::uint32_t> Next(std::uint32_t page) const;

  // Where the map itself is stored: its row, and its pages of bits if it has any.
  RowPointer Row() const { return row_; }
  std::vector<std::uint32_t> MapPages() const;

  // Inside a statement. Add may take pages of the file for the map itself.
  void Add(std::uint32_t page);
  void Remove(std::uint32_t page);

 protected:
  // The map's row, and the page that keeps it in memory.
  struct Loaded {
    pager::PageRef page;
    Bytes row;

    bool IsInline() const;
    std::uint32_t First() const;  // the page to which bit 0 of an inline map belongs
    Bytes Bits() const;
    bool CoversInline(std::uint32_t number) const { return number >= First() && number - First() < Bits().size() * 8; }
    std::size_t References() const;
    std::uint32_t Reference(std::size_t index) const;
  };
  Loaded Load() const;
  // The bytes of the loaded row in `edit`, the same page opened for changes.
  MutableBytes Writable(const pager::PageEdit& edit, const Loaded& loaded) const;
  void SetReference(std::size_t index, std::uint32_t map_page);
  std::uint32_t PagesPerMapPage() const;

  Storage* file_;
  RowPointer row_;

 private:
  void MakeReferences();
  bool SetBit(std::uint32_t page, bool value);
};

// Turns a page, whatever it holds, into a page of bits. All bits are set when `members` is true, otherwise cleared.
void FormatMapPage(MutableBytes page, bool members);

}  // namespace marlevo::access
