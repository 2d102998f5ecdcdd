#include "platform/access/index/index_tree.h"

#include <algorithm>
#include <set>

#include "platform/access/bytes/access_error.h"
#include "platform/access/storage/usage_map.h"

namespace marlevo::access {

namespace {

// A tree with more levels is damaged and leads in a circle: even if only two of the longest keys fitted on each page,
// the pages of the largest file would not fill 64 levels.
constexpr std::size_t kMostLevels = 64;

std::vector<std::byte> Copy(Bytes bytes) {
  return {bytes.begin(), bytes.end()};
}

}  // namespace

// Finding a leaf.

void IndexTree::Clear() const {
  const pager::PageEdit edit = file_->Change(root_);
  IndexPage(file_->Layout(), {}).Store(table_, edit.Bytes());
}

// Every page has room for at least two children with entries.
std::size_t IndexTree::LongestEntry() const {
  return (file_->Layout().page_size - file_->Layout().index_page.entries) / 2 - kEntryChildSize;
}

IndexPage IndexTree::Load(std::uint32_t number) const {
  const pager::PageRef page = file_->Read(number);
  return {file_->Layout(), number, IndexPageView(file_->Layout(), table_, number, page.Bytes())};
}

IndexTree::Leaf IndexTree::LoadLeaf(std::uint32_t number) const {
  pager::PageRef page = file_->Read(number);
  const IndexPageView view(file_->Layout(), table_, number, page.Bytes());
  if (!view.IsLeaf()) {
    throw AccessError(number, "expected a leaf of the index");
  }
  return {number, std::move(page), view, false, true};
}

// The leaf that holds the entry, or would hold it. Reads the pages as they lie in the file, without unpacking them.
IndexTree::Leaf IndexTree::FindLeaf(Bytes sought) const {
  bool rightmost = true;
  bool bounded = false;
  std::size_t level = 0;
  for (std::uint32_t number = root_;;) {
    pager::PageRef page = file_->Read(number);
    const IndexPageView view(file_->Layout(), table_, number, page.Bytes());
    if (view.IsLeaf()) {
      return {number, std::move(page), view, rightmost, bounded};
    }
    const IndexPageView::Place place = view.LowerBound(sought);
    const std::uint32_t child = view.Child(place);
    if (child == 0 || ++level > kMostLevels) {
      throw AccessError(number, "the index does not lead to a leaf");
    }
    rightmost = rightmost && (view.IsEnd(place) || (view.IsLast(place) && view.Links().tail == 0));
    bounded = bounded || !view.IsEnd(place) || view.Links().tail == 0;
    number = child;
  }
}

// The same way from the root to a leaf, with all its pages unpacked for a change.
IndexTree::Path IndexTree::Descend(Bytes sought) const {
  Path path;
  for (std::uint32_t number = root_;;) {
    path.push_back({number, Load(number)});
    Step& step = path.back();
    if (step.page.IsLeaf()) {
      return path;
    }
    if (step.page.ChildCount() == 0 || path.size() > kMostLevels) {
      throw AccessError(number, "the index does not lead to a leaf");
    }
    step.child = std::min(step.page.LowerBound(sought), step.page.ChildCount() - 1);
    number = step.page.Child(step.child);
  }
}

// Takes leaves to which no higher page leads into the tree. Some programs append such leaves at the end of the chain,
// where only the leaf before leads to them. For each, the parent of the last leaf gets an entry for that leaf, and the
// appended one becomes the parent's tail.
void IndexTree::AdoptFollowers() const {
  const std::vector<std::byte> beyond_all(LongestEntry() + 1, std::byte{0xFF});
  for (std::uint32_t pages = file_->Pages().PageCount(); pages > 0; --pages) {
    Path path = Descend(beyond_all);
    Step leaf = std::move(path.back());
    const std::uint32_t next = leaf.page.links.next;
    if (next == 0) {
      return;
    }
    path.pop_back();
    if (path.empty()) {
      path.push_back(std::move(leaf));
      GrowRoot(path);
      leaf = std::move(path.back());
      path.pop_back();
      Store(leaf);
      Link(next, leaf.number, std::nullopt);
    }
    const IndexPage follower = Load(next);
    const std::size_t count = leaf.page.Count();
    if (!follower.IsLeaf() || follower.Count() == 0 || count == 0 || follower.links.previous != leaf.number ||
        !std::ranges::lexicographical_compare(leaf.page.Entry(count - 1), follower.Entry(0))) {
      throw AccessError(next, "the leaves at the end of the index are not in order");
    }
    Step& parent = path.back();
    if (parent.page.links.tail != leaf.number) {
      parent.page.Erase(parent.page.Count() - 1);
    }
    parent.page.InsertChild(parent.page.Count(), leaf.page.Entry(count - 1), leaf.number);
    parent.page.links.tail = next;
    UsageMap(*file_, owned_map_).Add(next);
    const std::vector<std::byte> last = Copy(follower.Entry(follower.Count() - 1));
    StoreChanged(std::move(path), last, true);
  }
  throw AccessError(root_, "the leaves of the index are chained in a circle");
}

// Like FindLeaf, but takes appended leaves into the tree first when the search ends in the last leaf that the tree
// knows.
IndexTree::Leaf IndexTree::FindLeafToChange(Bytes sought) const {
  Leaf leaf = FindLeaf(sought);
  if (!leaf.rightmost || leaf.view.Links().next == 0) {
    return leaf;
  }
  AdoptFollowers();
  return FindLeaf(sought);
}

// Pages of the tree.

std::uint32_t IndexTree::TakePage() const {
  const std::uint32_t number = file_->TakePage();
  UsageMap(*file_, owned_map_).Add(number);
  return number;
}

void IndexTree::GivePage(std::uint32_t number) const {
  UsageMap(*file_, owned_map_).Remove(number);
  file_->GivePage(number);
}

void IndexTree::Store(const Step& step) const {
  const pager::PageEdit edit = file_->Change(step.number);
  step.page.Store(table_, edit.Bytes());
}

// Sets one or both links of a page to its neighbours; page 0 stands for a neighbour that does not exist.
void IndexTree::Link(std::uint32_t number, std::optional<std::uint32_t> previous,
                     std::optional<std::uint32_t> next) const {
  if (number == 0) {
    return;
  }
  Load(number);  // throws unless it is a page of this index
  const pager::PageEdit edit = file_->Change(number);
  const auto& places = file_->Layout().index_page;
  if (previous) {
    StoreU32(&edit.Bytes()[places.previous], *previous);
  }
  if (next) {
    StoreU32(&edit.Bytes()[places.next], *next);
  }
}

// Changes. Most of them concern a single leaf: no bound changes, no page is added or removed. Those are done in place,
// on the page as it lies in the file; the others go through InsertWithBounds and EraseWithBounds.

bool IndexTree::Insert(Bytes entry) const {
  Leaf leaf = FindLeafToChange(entry);
  const IndexPageView::Place place = leaf.view.LowerBound(entry);
  if (!leaf.view.IsEnd(place) && leaf.view.IsEntry(place, entry)) {
    return false;
  }
  const bool keeps_bound = !leaf.view.IsEnd(place) || !leaf.bounded;
  if (!keeps_bound || leaf.view.HasPrefix() || leaf.view.Room() < entry.size()) {
    InsertWithBounds(entry);
    return true;
  }
  leaf.page = {};  // the pager copies a page before a change while somebody still holds it for reading
  const pager::PageEdit edit = file_->Change(leaf.number);
  InsertIndexEntry(file_->Layout(), edit.Bytes(), place, entry);
  return true;
}

bool IndexTree::Erase(Bytes entry) const {
  Leaf leaf = FindLeafToChange(entry);
  const IndexPageView::Place place = leaf.view.LowerBound(entry);
  if (leaf.view.IsEnd(place) || !leaf.view.IsEntry(place, entry)) {
    return false;
  }
  const bool alone = place.start == 0 && leaf.view.IsLast(place);
  const bool keeps_bound = !leaf.view.IsLast(place) || leaf.rightmost;
  if (!keeps_bound || alone || leaf.view.HasPrefix()) {
    EraseWithBounds(entry);
    return true;
  }
  leaf.page = {};
  const pager::PageEdit edit = file_->Change(leaf.number);
  EraseIndexEntry(file_->Layout(), edit.Bytes(), place);
  return true;
}

void IndexTree::InsertWithBounds(Bytes entry) const {
  Path path = Descend(entry);
  IndexPage& leaf = path.back().page;
  const std::size_t at = leaf.LowerBound(entry);
  const bool last = at == leaf.Count();
  const bool at_end = last && leaf.links.next == 0;
  leaf.Insert(at, entry);
  StoreChanged(std::move(path), last ? std::optional(Copy(entry)) : std::nullopt, at_end);
}

void IndexTree::EraseWithBounds(Bytes entry) const {
  Path path = Descend(entry);
  IndexPage& leaf = path.back().page;
  const std::size_t at = leaf.LowerBound(entry);
  leaf.Erase(at);
  if (leaf.Count() == 0 && path.size() > 1) {
    RemoveEmpty(std::move(path));
    return;
  }
  const bool was_last = at > 0 && at == leaf.Count();
  const auto last = was_last ? std::optional(Copy(leaf.Entry(at - 1))) : std::nullopt;
  StoreChanged(std::move(path), last, false);
}

// Stores the last page of the path, which has been changed, and changes the pages above it accordingly: pages that do
// not fit are split, and bounds are renewed. `last`: the greatest entry below the changed page, given when it may have
// changed. `at_end`: an entry was added behind all others. The pages split off are then left full instead of half full,
// since the next entries will probably come at the end, too.
void IndexTree::StoreChanged(Path path, const std::optional<std::vector<std::byte>>& last, bool at_end) const {
  bool changed = true;
  for (bool is_last = last.has_value();;) {
    std::vector<Step> fronts;
    if (changed) {
      if (!path.back().page.Fits()) {
        if (path.size() == 1) {
          GrowRoot(path);
        }
        fronts = Split(path.back(), at_end);
      }
      Store(path.back());
    }
    if (path.size() == 1) {
      return;
    }
    const std::uint32_t number = path.back().number;
    path.pop_back();
    Step& parent = path.back();
    for (const Step& front : fronts) {
      parent.page.InsertChild(parent.child++, front.page.Bound(front.page.Count() - 1), front.number);
    }
    changed = !fronts.empty();
    if (is_last && parent.child < parent.page.Count() && !std::ranges::equal(parent.page.Bound(parent.child), *last)) {
      parent.page.Erase(parent.child);
      parent.page.InsertChild(parent.child, *last, number);
      changed = true;
    }
    is_last = is_last && parent.child + 1 == parent.page.ChildCount();
    if (!changed && !is_last) {
      return;
    }
  }
}

// Moves the content of a full root to a new page below it. The root keeps its page number, which stands in the table's
// definition, and has the new page as its only child.
void IndexTree::GrowRoot(Path& path) const {
  Step content{TakePage(), std::move(path.front().page)};
  const unsigned level = content.page.links.level + 1;
  path.front() = {root_, IndexPage(file_->Layout(), {.level = level, .tail = content.number})};
  path.push_back(std::move(content));
}

// Moves entries from the front of the page to new pages in front of it until all fit. Stores the new pages, not this
// one.
std::vector<IndexTree::Step> IndexTree::Split(Step& step, bool at_end) const {
  std::vector<Step> fronts;
  while (!step.page.Fits()) {
    fronts.push_back({TakePage(), step.page.SplitFront(at_end)});
  }
  IndexLinks& links = step.page.links;
  Link(links.previous, std::nullopt, fronts.front().number);
  for (std::size_t i = 0; i < fronts.size(); ++i) {
    Step& front = fronts[i];
    const Step& following = i + 1 < fronts.size() ? fronts[i + 1] : step;
    front.page.links.previous = links.previous;
    front.page.links.next = following.number;
    links.previous = front.number;
    if (links.level > 1) {
      // Leaves are chained from end to end, but higher pages only with those below the same parent: the chain of the
      // children is cut between the new page and the next one.
      Link(front.page.Child(front.page.Count() - 1), std::nullopt, 0);
      Link(following.page.Child(0), 0, std::nullopt);
    }
    Store(front);
  }
  return fronts;
}

// Removes the path's last page, which has become empty, from the tree, then every higher page that becomes empty by
// that.
void IndexTree::RemoveEmpty(Path path) const {
  while (true) {
    const Step gone = std::move(path.back());
    path.pop_back();
    Link(gone.page.links.previous, std::nullopt, gone.page.links.next);
    Link(gone.page.links.next, gone.page.links.previous, std::nullopt);
    GivePage(gone.number);

    Step& parent = path.back();
    const bool was_last = parent.child + 1 == parent.page.ChildCount();
    RemoveChild(parent);
    if (parent.page.ChildCount() == 0 && path.size() > 1) {
      continue;
    }
    if (path.size() == 1) {
      ShrinkRoot(parent.page);
    }
    const std::optional<std::vector<std::byte>> last = was_last ? Greatest(parent.page) : std::nullopt;
    StoreChanged(std::move(path), last, false);
    return;
  }
}

// Removes the child at step.child and its entry from a higher page.
void IndexTree::RemoveChild(Step& step) const {
  IndexPage& page = step.page;
  if (step.child < page.Count()) {
    page.Erase(step.child);
  } else {
    page.links.tail = 0;
  }
  // The last of several children becomes the tail; a single child has an entry instead.
  const std::size_t count = page.Count();
  if (page.links.tail == 0 && count > 1 && step.child == count) {
    page.links.tail = page.Child(count - 1);
    page.Erase(count - 1);
  } else if (page.links.tail != 0 && count == 0) {
    if (const auto greatest = Greatest(page)) {
      page.InsertChild(0, *greatest, page.links.tail);
      page.links.tail = 0;
    }
  }
}

// A root without children is an empty leaf again; one with a single child takes that child's content.
void IndexTree::ShrinkRoot(IndexPage& root) const {
  if (root.ChildCount() == 0) {
    root = IndexPage(file_->Layout(), {});
  }
  while (!root.IsLeaf() && root.ChildCount() == 1) {
    const std::uint32_t child = root.Child(0);
    root = Load(child);
    GivePage(child);
  }
}

// The greatest leaf entry below a page; nothing when the last leaf below it is empty.
std::optional<std::vector<std::byte>> IndexTree::Greatest(IndexPage page) const {
  for (std::size_t level = 0; !page.IsLeaf(); ++level) {
    if (page.ChildCount() == 0 || level > kMostLevels) {
      return std::nullopt;
    }
    page = Load(page.Child(page.ChildCount() - 1));
  }
  return page.Count() == 0 ? std::nullopt : std::optional(Copy(page.Entry(page.Count() - 1)));
}

// Looking for faults. An Audit holds what has been seen so far while all pages are visited in order.
struct IndexTree::Audit {
  std::vector<std::string> faults;
  std::set<std::uint32_t> pages;
  std::uint32_t last_leaf = 0;
  std::uint32_t last_leaf_next = 0;  // the next leaf according to last_leaf
  std::size_t leaf_depth = 0;
  std::vector<std::byte> last_entry;

  void Fault(std::uint32_t page, const char* what) { faults.push_back("page " + std::to_string(page) + ": " + what); }
};

std::vector<std::string> IndexTree::FindFaults() const {
  Audit audit;
  CheckBelow(root_, 0, audit);
  if (audit.last_leaf_next != 0) {
    audit.Fault(audit.last_leaf, "the last leaf of the index is followed by another");
  }
  std::set<std::uint32_t> owned;
  const UsageMap map(*file_, owned_map_);
  for (auto page = map.Next(0); page; page = map.Next(*page + 1)) {
    owned.insert(*page);
  }
  if (owned != audit.pages) {
    audit.Fault(root_, "the map of the index does not list its pages");
  }
  return std::move(audit.faults);
}

void IndexTree::CheckBelow(std::uint32_t number, std::size_t depth, Audit& audit) const {
  if (!audit.pages.insert(number).second || depth > kMostLevels) {
    return audit.Fault(number, "the index leads to this page twice");
  }
  const pager::PageRef ref = file_->Read(number);
  const IndexPageView view(file_->Layout(), table_, number, ref.Bytes());
  if (view.FreeSpace() != view.Room()) {
    audit.Fault(number, "the index page does not have as many free bytes as it says");
  }
  const IndexPage page(file_->Layout(), number, view);
  if (page.IsLeaf()) {
    if (audit.last_leaf != 0 && (audit.last_leaf_next != number || audit.leaf_depth != depth)) {
      audit.Fault(audit.last_leaf, "the next leaf of the index is another one");
    }
    if (page.links.previous != audit.last_leaf) {
      audit.Fault(number, "the previous leaf of the index is another one");
    }
    audit.last_leaf = number;
    audit.last_leaf_next = page.links.next;
    audit.leaf_depth = depth;
    for (std::size_t i = 0; i < page.Count(); ++i) {
      if (!std::ranges::lexicographical_compare(audit.last_entry, page.Entry(i))) {
        audit.Fault(number, "the entries of the index are not in order");
      }
      audit.last_entry = Copy(page.Entry(i));
    }
    return;
  }
  if (page.ChildCount() == 0) {
    audit.Fault(number, "the index does not lead to a leaf");
  }
  for (std::size_t i = 0; i < page.ChildCount(); ++i) {
    CheckBelow(page.Child(i), depth + 1, audit);
    const IndexLinks links = Load(page.Child(i)).links;
    if (links.level > 0 && ((i > 0 && links.previous != page.Child(i - 1)) ||
                            (i + 1 < page.ChildCount() && links.next != page.Child(i + 1)))) {
      audit.Fault(page.Child(i), "the neighbours of a higher page of the index are others");
    }
    // The bound may be greater than every entry below: a leaf that some program has emptied may keep its bound.
    if (i < page.Count() && std::ranges::lexicographical_compare(page.Bound(i), audit.last_entry)) {
      audit.Fault(number, "a child has entries beyond its bound");
    }
  }
}

IndexWalk::IndexWalk(const IndexTree& tree, Bytes from)
    : tree_(tree), leaf_(tree.FindLeaf(from)), place_(leaf_.view.LowerBound(from)) {
  pages_left_ = tree.file_->Pages().PageCount();
}

bool IndexWalk::Next() {
  if (started_ && !leaf_.view.IsEnd(place_)) {
    place_ = leaf_.view.After(place_);
  }
  started_ = true;
  while (leaf_.view.IsEnd(place_)) {
    const std::uint32_t next = leaf_.view.Links().next;
    if (next == 0) {
      return false;
    }
    leaf_ = tree_.LoadLeaf(next);
    if (pages_left_-- == 0) {
      throw AccessError(next, "the leaves of the index are chained in a circle");
    }
    place_ = leaf_.view.First();
  }
  return true;
}

}  // namespace marlevo::access
