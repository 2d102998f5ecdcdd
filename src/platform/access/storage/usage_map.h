// A set of pages: a row of a data page, either the bits themselves or pointers to pages of bits.
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

  // The first member from `page` on.
  std::optional<std::uint32_t> Next(std::uint32_t page) const;

  // Where the map itself is: its row, and its pages of bits if it has any.
  RowPointer Row() const { return row_; }
  std::vector<std::uint32_t> MapPages() const;

  // Inside a statement. Adding may take pages for the map itself.
  void Add(std::uint32_t page);
  void Remove(std::uint32_t page);

 protected:
  // The map's row, kept in memory while it is looked at.
  struct Loaded {
    pager::PageRef page;
    Bytes row;

    bool IsInline() const;
    std::uint32_t First() const;  // page of bit 0 of an inline map
    Bytes Bits() const;
    bool CoversInline(std::uint32_t number) const { return number >= First() && number - First() < Bits().size() * 8; }
    std::size_t References() const;
    std::uint32_t Reference(std::size_t index) const;
  };
  Loaded Load() const;
  // The same row in a page to be changed.
  MutableBytes Writable(const pager::PageEdit& edit, const Loaded& loaded) const;
  void SetReference(std::size_t index, std::uint32_t map_page);
  std::uint32_t PagesPerMapPage() const;

  Storage* file_;
  RowPointer row_;

 private:
  void MakeReferences();
  bool SetBit(std::uint32_t page, bool value);
};

// The bits of a map page; throws when it is none.
Bytes MapPageBits(std::uint32_t number, Bytes page);

// Makes a map page of a zeroed or used one; all its bits become `members`.
void FormatMapPage(MutableBytes page, bool members);

}  // namespace marlevo::access
