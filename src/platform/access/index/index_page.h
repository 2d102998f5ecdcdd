// A page of an index taken apart, for changes that move entries between pages. See index_page_view.h for what it holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/format.h"
#include "platform/access/index/index_page_view.h"

namespace marlevo::access {

class IndexPage {
 public:
  IndexPage(const Format& format, const IndexLinks& place) : links(place), format_(&format) {}

  // Throws AccessError when the page's entries do not fit into it.
  IndexPage(const Format& format, std::uint32_t number, const IndexPageView& page);

  bool IsLeaf() const { return links.level == 0; }
  std::size_t Count() const { return ends_.size(); }
  Bytes Entry(std::size_t i) const;
  // The leaf entry that it is or repeats.
  Bytes Bound(std::size_t i) const;

  // Above the leaves: children are counted like entries, the tail after all of them.
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

  IndexLinks links;

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
