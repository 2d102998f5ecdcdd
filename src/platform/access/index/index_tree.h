// The tree of an index: leaves that hold every entry in order and are chained, pages above them that lead to them. What
// the entries mean is the business of index.h.
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

  // Makes the root an empty index's only page. Inside a statement.
  void Clear() const;

  // No entry, not even as the greatest of a higher page, may be longer.
  std::size_t LongestEntry() const;

  // Inside a statement. False when the entry is (Insert) or is not (Erase) there. Leaves that no higher page leads to
  // become part of the tree.
  bool Insert(Bytes entry) const;
  bool Erase(Bytes entry) const;

  // What is wrong with pages, links, order and map, one line each.
  std::vector<std::string> FindFaults() const;

 private:
  friend class IndexWalk;

  // A page on the way from the root to a leaf, and which of the page's children comes next.
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
    bool rightmost;      // no child on the way to it had another behind it
    bool bounded;        // some page on the way to it has an entry for it, which no entry of the leaf may be beyond
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

// Walks the leaf entries upwards from the first one that is not less than a given one. The tree must not change
// meanwhile.
class IndexWalk {
 public:
  IndexWalk(const IndexTree& tree, Bytes from);

  bool Next();                                                 // false at the end
  Bytes Entry() { return leaf_.view.Entry(place_, buffer_); }  // valid until the next call

 private:
  IndexTree tree_;
  IndexTree::Leaf leaf_;
  IndexPageView::Place place_;  // before the first Next: of the entry after it
  std::vector<std::byte> buffer_;
  bool started_ = false;
  std::uint32_t pages_left_;  // guards against chains without end
};

}  // namespace marlevo::access
