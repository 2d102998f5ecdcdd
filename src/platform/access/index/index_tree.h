// The tree of an index: leaves that hold all entries in order and are chained from end to end, and higher pages that
// lead to them. index.h knows what the entries mean.
//
// Search: an entry of a higher page repeats the greatest leaf entry below its child, called the child's bound. The
// search goes to the first child whose bound is not less than what is sought, or to the tail, a last child without an
// entry. Example: above the leaves (10 20) (30 40) (50 60) stands a page with the entries 20 and 40 and the third leaf
// as its tail. A search for 35 passes 20 and goes below 40; a search for 55 goes to the tail.
//
// Insert: a full page moves about half of its entries, the first ones, to a new page in front of it, and the parent
// gets an entry for the new page; a full parent splits in the same way. A full root moves its content to a new page
// below itself first, since the root's page number stands in the table's definition and cannot change. By this all
// leaves stay at the same depth. Example: 15 is inserted and (10 15 20) does not fit: (10) becomes a new leaf, (15 20)
// stays, and the parent's entries are 10, 20 and 40.
//
// Erase: pages are never merged. A page that becomes empty leaves the tree, and a root with one child takes over that
// child's content. Erasing the greatest entry of a leaf changes the bound in the parent.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/access/bytes/table_definition.h"
#include "platform/access/index/index_page.h"
#include "platform/access/storage/storage.h"

namespace marlevo::access {

class IndexTree {
 public:
  // `table` is the table's definition page.
  IndexTree(Storage& file, std::uint32_t table, std::uint32_t root, RowPointer owned_map)
      : file_(&file), table_(table), root_(root), owned_map_(owned_map) {}

  // Turns the root into an empty leaf, the only page of an empty index. Inside a statement.
  void Clear() const;

  // The most bytes that a leaf entry may have; a longer one would not leave room for two children on a higher page.
  std::size_t LongestEntry() const;

  // Inside a statement. Insert returns false when the entry is there already, Erase when it is not there. Both first
  // take leaves at the end of the chain to which no higher page leads into the tree, see AdoptFollowers.
  bool Insert(Bytes entry) const;
  bool Erase(Bytes entry) const;

  // The faults of the tree's pages, links, order and usage map, one line each.
  std::vector<std::string> FindFaults() const;

 private:
  friend class IndexWalk;

  // A page on the way from the root to a leaf, and which of its children is the next page on that way.
  struct Step {
    std::uint32_t number;
    IndexPage page;
    std::size_t child = 0;
  };
  using Path = std::vector<Step>;

  struct Audit;

  // A leaf as it lies in the file.
  struct Leaf {
    std::uint32_t number;
    pager::PageRef page;
    IndexPageView view;  // of `page`
    bool rightmost;      // the way from the root always took the last child
    bool bounded;        // some page on that way has an entry, the bound, which no entry of the leaf may exceed
  };
  Leaf LoadLeaf(std::uint32_t number) const;
  Leaf FindLeaf(Bytes sought) const;
  Leaf FindLeafToChange(Bytes sought) const;

  void InsertWithBounds(Bytes entry) const;
  void EraseWithBounds(Bytes entry) const;
  IndexPage Load(std::uint32_t number) const;
  Path Descend(Bytes sought) const;
  void AdoptFollowers() const;
  std::uint32_t TakePage() const;
  void GivePage(std::uint32_t number) const;
  void Store(const Step& step) const;
  void Link(std::uint32_t number, std::optional<std::uint32_t> previous, std::optional<std::uint32_t> next) const;

  void StoreChanged(Path path, const std::optional<std::vector<std::byte>>& last, bool at_end) const;
  void GrowRoot(Path& path) const;
  std::vector<Step> Split(Step& step, bool at_end) const;
  void RemoveEmpty(Path path) const;
  void RemoveChild(Step& step) const;
  void ShrinkRoot(IndexPage& root) const;
  std::optional<std::vector<std::byte>> Greatest(IndexPage page) const;
  void CheckBelow(std::uint32_t number, std::size_t depth, Audit& audit) const;

  Storage* file_;
  std::uint32_t table_;
  std::uint32_t root_;
  RowPointer owned_map_;
};

// Walks the leaf entries in ascending order, from the first one that is not less than `from`. After a change of the
// tree the walk must not be used any more.
class IndexWalk {
 public:
  IndexWalk(const IndexTree& tree, Bytes from);

  bool Next();                                                 // false at the end
  Bytes Entry() { return leaf_.view.Entry(place_, buffer_); }  // valid until the next call

 private:
  IndexTree tree_;
  IndexTree::Leaf leaf_;
  IndexPageView::Place place_;  // of the current entry; before the first call of Next: of the entry that it will give
  std::vector<std::byte> buffer_;
  bool started_ = false;
  std::uint32_t pages_left_;  // a chain with more leaves than the file has pages is a circle
};

}  // namespace marlevo::access
