// An index page as it lies in the file, for finding an entry and for changes within one page. Changes that move entries
// between pages work on an IndexPage.
//
// An entry of a leaf is a key and the row that has this key. An entry of a higher page is the greatest leaf entry below
// a child, and the child's page number. Entries are stored in ascending order of their bytes, without gaps. The page's
// mask has a bit for every byte of the entries; the bit is set where an entry begins that is not the first, and behind
// the last one. Example: entries of 9, 9 and 13 bytes set the bits 9, 18 and 31. The bytes with which all entries begin
// (their prefix) may be stored in the first entry only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/format.h"
#include "platform/access/bytes/schema.h"

namespace marlevo::access {

// After the key an entry has the row's page (three bytes) and slot, on a higher page then the child's page number. All
// numbers have the highest byte first, so that entries with equal keys are in the order of their RowIds.
inline constexpr std::size_t kEntryRowSize = 4;
inline constexpr std::size_t kEntryChildSize = 4;

void AppendEntryRow(RowId row, std::vector<std::byte>& entry);
RowId EntryRow(Bytes leaf_entry);
void AppendEntryChild(std::uint32_t child, std::vector<std::byte>& entry);
std::uint32_t EntryChild(Bytes entry);

// The page's place in the tree.
struct IndexLinks {
  unsigned level = 0;          // 0 for leaves, 1 for their parents ...
  std::uint32_t previous = 0;  // neighbours on the same level; 0 when there is none
  std::uint32_t next = 0;
  std::uint32_t tail = 0;  // of a higher page: the last child, which has no entry; 0 when every child has an entry
};

class IndexPageView {
 public:
  // Throws AccessError when the page does not belong to an index of the table whose definition page is `table`. Each
  // entry's bounds are checked when the entry is read; the order of the entries is not checked.
  IndexPageView(const Format& format, std::uint32_t table, std::uint32_t number, Bytes page);

  const IndexLinks& Links() const { return links_; }
  bool IsLeaf() const { return links_.level == 0; }
  bool HasPrefix() const { return prefix_ != 0; }

  // Where the stored bytes of an entry begin and end, counted from the start of the first entry. A prefix that is
  // stored with the first entry only is not among them.
  struct Place {
    std::size_t start = 0;
    std::size_t end = 0;
  };
  Place First() const { return At(0); }
  Place After(Place place) const { return At(place.end); }
  bool IsEnd(Place place) const { return place.start == end_; }
  bool IsLast(Place place) const { return place.end == end_; }

  // The first entry that is not less than `sought`; the numbers of children are not compared.
  Place LowerBound(Bytes sought) const;

  bool IsEntry(Place place, Bytes entry) const;

  // The entry with its prefix: a view of the page or of `buffer`.
  Bytes Entry(Place place, std::vector<std::byte>& buffer) const;

  // On a higher page: the child of the entry at `place`. At the end it is the tail or, without a tail, the child of the
  // last entry. 0 when the page has no child.
  std::uint32_t Child(Place place) const;

  // Free bytes behind the entries: the stored count, and what the entries leave.
  std::size_t FreeSpace() const { return LoadU16(&page_[kFreeSpaceAt]); }
  std::size_t Room() const { return page_.size() - format_->index_page.entries - end_; }

 private:
  Place At(std::size_t start) const;
  std::size_t BoundaryUpTo(std::size_t at) const;
  std::size_t BoundaryAfter(std::size_t at) const;
  bool IsLess(Place place, Bytes sought) const;
  Bytes Stored(Place place) const {
    return page_.subspan(format_->index_page.entries + place.start, place.end - place.start);
  }

  const Format* format_;
  std::uint32_t number_;
  Bytes page_;
  IndexLinks links_;
  std::size_t prefix_ = 0;
  std::size_t smallest_;  // fewest bytes that an entry can have
  std::size_t end_ = 0;   // where the last entry ends
};

// Puts an entry in front of `place`, or removes the one at `place`. The page has no prefix and has room for the entry.
void InsertIndexEntry(const Format& format, MutableBytes page, IndexPageView::Place place, Bytes entry);
void EraseIndexEntry(const Format& format, MutableBytes page, IndexPageView::Place place);

}  // namespace marlevo::access
