// An index page with its entries unpacked, for changes that move entries between pages. See index_page_view.h for what
// an index page holds.
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
  // Entry i as a leaf entry: on a leaf the entry itself; on a higher page without the child's number, which leaves the
  // greatest leaf entry below that child.
  Bytes Bound(std::size_t i) const;

  // For pages above the leaves. Child i belongs to entry i; the tail, if there is one, is the last child.
  std::size_t ChildCount() const { return Count() + (links.tail == 0 ? 0 : 1); }
  std::uint32_t Child(std::size_t i) const;

  // The first entry whose Bound is not less than `sought`; Count() when there is none.
  std::size_t LowerBound(Bytes sought) const;

  void Insert(std::size_t i, Bytes entry);
  void InsertChild(std::size_t i, Bytes bound, std::uint32_t child);
  void Erase(std::size_t i);

  // Whether the entries fit on a page. If they do not, SplitFront moves entries from the front of this page to a new
  // one, on which they fit, and returns it: all entries but the last when `all_but_last` is true and as many fit,
  // otherwise about half of the bytes.
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
  // The page was read with its entries' common prefix stored only once, and is written that way again. No other page is
  // ever compressed, because some readers decode the prefix wrongly: they read its length in Jet 3 as two bytes instead
  // of one and so take the page's level for a part of it.
  bool shortened_ = false;
};

}  // namespace marlevo::access
