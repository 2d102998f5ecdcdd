// One page of an index in memory: entries in ascending order, compared as plain bytes. An entry of a leaf is a key and
// the row that has it; an entry of a higher page is the greatest leaf entry below a child, and the child's page number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/access/bytes.h"
#include "platform/access/format.h"
#include "platform/access/schema.h"

namespace marlevo::access {

// Behind the key stand the row's page (three bytes) and slot, in higher pages then the child. All with the highest byte
// first, so that entries of equal keys are in the order of RowId.
inline constexpr std::size_t kEntryRowSize = 4;
inline constexpr std::size_t kEntryChildSize = 4;

void AppendEntryRow(RowId row, std::vector<std::byte>& entry);
RowId EntryRow(Bytes leaf_entry);

class IndexPage {
 public:
  // Where the page stands in the tree.
  struct Links {
    std::uint8_t level = 0;      // 0 for leaves, 1 for their parents ...
    std::uint32_t previous = 0;  // neighbours on the same level, 0 when there is none
    std::uint32_t next = 0;
    std::uint32_t tail = 0;  // of a higher page: its last child, which has no entry; 0 when all have one
  };

  IndexPage(const Format& format, const Links& place) : links(place), format_(&format) {}

  // Throws AccessError when the page does not belong to an index of the table whose definition page is `table`, or its
  // entries do not fit into it. Their order is not looked at.
  IndexPage(const Format& format, std::uint32_t table, std::uint32_t number, Bytes page);

  bool IsLeaf() const { return links.level == 0; }
  std::size_t Count() const { return ends_.size(); }
  Bytes Entry(std::size_t i) const;
  // The leaf entry that it is or repeats.
  Bytes Bound(std::size_t i) const;

  // Of a higher page: children are counted like entries, the tail after all of them.
  std::size_t ChildCount() const { return Count() + (links.tail == 0 ? 0 : 1); }
  std::uint32_t Child(std::size_t i) const;

  // The first entry whose Bound is not less than `sought`; Count() when there is none.
  std::size_t LowerBound(Bytes sought) const;

  void Insert(std::size_t i, Bytes entry);
  void InsertChild(std::size_t i, Bytes bound, std::uint32_t child);
  void Erase(std::size_t i);

  // Whether Store has room for the entries. When not: takes the first of them away, in a page of their own that has
  // room; `all_but_last` takes as many as it can, otherwise about half of the bytes.
  bool Fits() const;
  IndexPage SplitFront(bool all_but_last);

  void Store(std::uint32_t table, MutableBytes page) const;

  Links links;

 private:
  std::size_t Start(std::size_t i) const { return i == 0 ? 0 : ends_[i - 1]; }
  std::size_t StoredSize(std::size_t prefix) const;
  std::size_t CommonPrefix() const;

  const Format* format_;
  std::vector<std::byte> bytes_;  // the entries in full, one after another
  std::vector<std::size_t> ends_;
  // The page came with its entries' common prefix stored only once. Others are never shortened: not every reader of
  // such files gets it right.
  bool shortened_ = false;
};

}  // namespace marlevo::access
