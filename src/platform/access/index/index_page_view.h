// A page of an index as it lies in the file, for finding an entry and for the changes that leave everything else as it
// is. Whatever moves entries between pages works on an IndexPage.
//
// An entry is a key and the row that has it; on pages above the leaves the greatest leaf entry below a child, and the
// child's page number. Entries are in ascending order as plain bytes. A mask has a bit at every place where an entry
// ends, counted from the first one; a prefix that all entries share may be stored with the first one only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/format.h"
#include "platform/access/bytes/schema.h"

namespace marlevo::access {

// Behind the key stand the row's page (three bytes) and slot, above the leaves then the child. All with the highest
// byte first, so that entries of equal keys are in the order of RowId.
inline constexpr std::size_t kEntryRowSize = 4;
inline constexpr std::size_t kEntryChildSize = 4;

void AppendEntryRow(RowId row, std::vector<std::byte>& entry);
RowId EntryRow(Bytes leaf_entry);
void AppendEntryChild(std::uint32_t child, std::vector<std::byte>& entry);
std::uint32_t EntryChild(Bytes entry);

// Where a page stands in the tree.
struct IndexLinks {
  std::uint8_t level = 0;      // 0 for leaves, 1 for their parents ...
  std::uint32_t previous = 0;  // neighbours on the same level, 0 when there is none
  std::uint32_t next = 0;
  std::uint32_t tail = 0;  // above the leaves: the last child, which has no entry; 0 when all have one
};

class IndexPageView {
 public:
  // Throws AccessError when the page does not belong to an index of the table whose definition page is `table`. Its
  // entries are checked when they are looked at, except for their order.
  IndexPageView(const Format& format, std::uint32_t table, std::uint32_t number, Bytes page);

  const IndexLinks& Links() const { return links_; }
  bool IsLeaf() const { return links_.level == 0; }
  bool HasPrefix() const { return prefix_ != 0; }
  std::size_t PrefixLength() const { return prefix_; }

  // An entry's own bytes, without the prefix; counted from the place of the first entry.
  struct Place {
    std::size_t start = 0;
    std::size_t end = 0;
  };
  Place First() const { return At(0); }
  Place After(Place place) const { return At(place.end); }
  bool IsEnd(Place place) const { return place.start == end_; }
  bool IsLast(Place place) const { return place.end == end_; }

  // The first entry that is not less than `sought`, children's numbers apart.
  Place LowerBound(Bytes sought) const;

  bool IsEntry(Place place, Bytes entry) const;

  // The entry in full: a part of the page or of `buffer`.
  Bytes Entry(Place place, std::vector<std::byte>& buffer) const;

  // Above the leaves: that of an entry; that of the last one when `place` is the end and there is no tail; 0 when there
  // is no child.
  std::uint32_t Child(Place place) const;

  // Whether `page` can take the entry as it is.
  bool HasRoomFor(Bytes entry) const;

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
  std::size_t smallest_;  // entry
  std::size_t end_ = 0;   // of the last entry
};

// On a page without a prefix: puts an entry before `place`, for which it has room; takes one away.
void InsertIndexEntry(const Format& format, MutableBytes page, IndexPageView::Place place, Bytes entry);
void EraseIndexEntry(const Format& format, MutableBytes page, IndexPageView::Place place);

}  // namespace marlevo::access
