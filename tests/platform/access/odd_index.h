// Gives the first index of a table a shape that other programs leave and this engine does not make itself.
#pragma once

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/access/index/index_page.h"
#include "platform/access/odd_file.h"
#include "platform/access/storage/global_map.h"

namespace marlevo::access {

// The pages of the index, in a statement that Keep ends.
class IndexPages {
 public:
  IndexPages(const std::filesystem::path& path, std::string_view table)
      : file_(OpenFile(path)),
        table_(FindTable(file_, table).page),
        index_(ParseDefinition(file_->Layout(), file_->CodecFor(0), table_, ReadDefinitionPages(*file_, table_))
                   .real_indexes.at(0)),
        statement_(file_) {}

  const Format& Layout() const { return file_->Layout(); }
  IndexPage Load(std::uint32_t number) const {
    const pager::PageRef page = file_->Read(number);
    return {Layout(), number, IndexPageView(Layout(), table_, number, page.Bytes())};
  }
  void Store(std::uint32_t number, const IndexPage& page) const {
    EXPECT_TRUE(page.Fits());
    const pager::PageEdit edit = file_->Change(number);
    page.Store(table_, edit.Bytes());
  }
  // The same with the bytes that all entries have in common stored only once.
  void StoreShortened(std::uint32_t number, const IndexPage& page) const {
    Store(number, page);
    const auto& places = Layout().index_page;
    const pager::PageEdit edit = file_->Change(number);
    std::memset(&edit.Bytes()[places.entry_mask], 0, Layout().page_size - places.entry_mask);
    const Bytes first = page.Entry(0);
    const Bytes last = page.Entry(page.Count() - 1);
    const std::size_t prefix = std::min<std::size_t>(std::ranges::mismatch(first, last).in1 - first.begin(),
                                                     places.prefix_width == 1 ? 255 : 999);
    std::size_t end = 0;
    for (std::size_t i = 0; i < page.Count(); ++i) {
      const Bytes stored = page.Entry(i).subspan(i == 0 ? 0 : prefix);
      std::ranges::copy(stored, &edit.Bytes()[places.entries + end]);
      end += stored.size();
      edit.Bytes()[places.entry_mask + end / 8] |= std::byte{1} << end % 8;
    }
    std::memcpy(&edit.Bytes()[places.prefix_length], &prefix, places.prefix_width);
    StoreU16(&edit.Bytes()[kFreeSpaceAt], Layout().page_size - places.entries - end);
  }
  std::uint32_t Add() {
    const std::uint32_t number = file_->TakePage();
    UsageMap(*file_, index_.owned_map).Add(number);
    return number;
  }
  // The first or last page of the lowest level but `above`; of a lower tree its root.
  std::uint32_t End(unsigned above, bool last) const {
    std::uint32_t number = index_.root;
    for (IndexPage page = Load(number); page.links.level > above; page = Load(number)) {
      number = page.Child(last ? page.ChildCount() - 1 : 0);
    }
    return number;
  }
  void Keep() {
    statement_.Commit();
    file_->Pages().Flush();
  }

 private:
  std::shared_ptr<Storage> file_;
  std::uint32_t table_;
  RealIndex index_;
  Statement statement_;
};

using OddShape = void (*)(const std::filesystem::path& path, std::string_view table);

// The last leaves are found from the leaf before them only; of two levels or of a single leaf.
inline void LoseLastLeaves(const std::filesystem::path& path, std::string_view table) {
  IndexPages index(path, table);
  const std::uint32_t number = index.End(1, true);
  IndexPage page = index.Load(number);
  if (page.IsLeaf()) {
    const std::uint32_t lost = index.Add();
    IndexPage front = page.SplitFront(false);
    front.links.next = lost;
    page.links.previous = number;
    index.Store(lost, page);
    index.Store(number, front);
  } else {
    for (int leaf = 0; leaf < 2; ++leaf) {
      ASSERT_GT(page.Count(), 1u);
      page.links.tail = page.Child(page.Count() - 1);
      page.Erase(page.Count() - 1);
    }
    index.Store(number, page);
  }
  index.Keep();
}

// A leaf stays in its place although its entries are gone.
inline void AddEmptyLeaf(const std::filesystem::path& path, std::string_view table) {
  IndexPages index(path, table);
  const std::uint32_t number = index.End(1, false);
  IndexPage parent = index.Load(number);
  ASSERT_GT(parent.ChildCount(), 1u);
  const std::uint32_t before = parent.Child(0);
  const std::uint32_t after = parent.Child(1);
  const std::uint32_t added = index.Add();
  IndexPage left = index.Load(before);
  IndexPage right = index.Load(after);
  left.links.next = right.links.previous = added;
  std::vector<std::byte> bound(parent.Bound(0).begin(), parent.Bound(0).end());
  bound.back() = std::byte(std::to_integer<unsigned>(bound.back()) + 1);  // of a row that is gone
  parent.InsertChild(1, bound, added);
  index.Store(before, left);
  index.Store(after, right);
  index.Store(added, IndexPage(index.Layout(), {.previous = before, .next = after}));
  index.Store(number, parent);
  index.Keep();
}

inline void ShortenLeaves(const std::filesystem::path& path, std::string_view table) {
  IndexPages index(path, table);
  for (std::uint32_t number = index.End(0, false); number != 0; number = index.Load(number).links.next) {
    index.StoreShortened(number, index.Load(number));
  }
  index.Keep();
}

// The map of the file calls pages free that are in use.
inline void CallUsedPagesFree(const std::filesystem::path& path, std::string_view) {
  const auto file = OpenFile(path);
  Statement statement(file);
  for (std::uint32_t page = kObjectsPage; page < file->Pages().PageCount(); page += 2) {
    GlobalMap(*file).Add(page);
  }
  statement.Commit();
  file->Pages().Flush();
}

}  // namespace marlevo::access
