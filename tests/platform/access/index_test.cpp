// Indexes: their trees through splits and shrinking, what they and relationships forbid.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/database/catalog.h"
#include "platform/access/database/database.h"
#include "platform/access/index/index.h"
#include "platform/access/storage/definition_pages.h"
#include "platform/access/table/loaded_table.h"
#include "platform/access/table/statement.h"

namespace marlevo::access {
namespace {

using enum ColumnType;
using namespace std::string_view_literals;
namespace fs = std::filesystem;

using Entry = std::string;  // bytes

enum class Order { kRandom, kUp, kDown };

// A tree of made-up entries beside a plain set.
class TreeModel {
 public:
  TreeModel(IndexTree tree, unsigned seed) : tree_(tree), random_(seed) {
    for (IndexWalk walk(tree_, {}); walk.Next();) {
      model_.emplace(AsText(walk.Entry()));
    }
  }

  void Insert(std::size_t count, Order order) {
    for (std::size_t i = 0; i < count; ++i) {
      const auto number = order == Order::kRandom ? random_() % 100'000 : ++last_;
      const Entry entry = MakeEntry(order == Order::kDown ? 0xFFFF'FFFF - number : number);
      EXPECT_EQ(tree_.Insert(AsBytes(entry)), model_.insert(entry).second);
    }
    Compare();
  }

  void EraseLast() {
    const Entry last = *model_.rbegin();
    EXPECT_TRUE(tree_.Erase(AsBytes(last)));
    model_.erase(last);
  }

  // All but `kept` entries; from the first to the last, or in any order.
  void EraseAllBut(std::size_t kept, bool in_order) {
    std::vector<Entry> entries(model_.begin(), model_.end());
    if (!in_order) {
      std::ranges::shuffle(entries, random_);
    }
    for (std::size_t i = kept; i < entries.size(); ++i) {
      EXPECT_TRUE(tree_.Erase(AsBytes(entries[i])));
      EXPECT_FALSE(tree_.Erase(AsBytes(entries[i])));
      model_.erase(entries[i]);
      if (i % 3000 == 0) {
        Compare();
      }
    }
    Compare();
  }

 private:
  // Keys of many lengths, some so long that few of them fit a page and the tree gets high.
  static Entry MakeEntry(std::size_t number) {
    std::vector<std::byte> entry{std::byte{0x7F}};
    for (int shift = 24; shift >= 0; shift -= 8) {
      entry.push_back(std::byte(number >> shift & 0xFF));
    }
    entry.resize(entry.size() + (number % 11 == 0 ? 400 : number % 13), std::byte{0x55});
    AppendEntryRow(RowId{static_cast<std::uint32_t>(number)}, entry);
    return Entry(AsText(entry));
  }

  void Compare() {
    EXPECT_EQ(tree_.FindFaults(), std::vector<std::string>());
    auto expected = model_.begin();
    for (IndexWalk walk(tree_, {}); walk.Next(); ++expected) {
      ASSERT_NE(expected, model_.end());
      ASSERT_EQ(AsText(walk.Entry()), *expected);
    }
    EXPECT_EQ(expected, model_.end());
    for (int i = 0; i < 100 && !model_.empty(); ++i) {
      const Entry sought = MakeEntry(random_() % 100'000);
      IndexWalk walk(tree_, AsBytes(sought));
      const auto first = model_.lower_bound(sought);
      ASSERT_EQ(walk.Next(), first != model_.end());
      ASSERT_TRUE(first == model_.end() || AsText(walk.Entry()) == *first);
    }
  }

  IndexTree tree_;
  std::mt19937 random_;
  std::set<Entry> model_;
  std::size_t last_ = 0;
};

class IndexTreeTest : public BothFormatsTest {
 protected:
  IndexTreeTest() {
    Make({{"T", {{"n", kLong}}, {{.name = "n", .columns = {{"n"}}}}}});
    opened_ = Storage::Open(file_, {.password = kPassword, .code_page = {}}, pager::NativeFiles());
    state_ = LoadedTable::Open(opened_, FindTable(opened_, "T").page, "T");
    root_ = state_->Definition().real_indexes[0].root;
    statement_.emplace(opened_);
  }

  const IndexTree& Tree() const { return state_->Indexes()[0].Tree(); }
  IndexPage Load(std::uint32_t number) const {
    const pager::PageRef page = opened_->Read(number);
    return {opened_->Layout(), number, IndexPageView(opened_->Layout(), state_->Page(), number, page.Bytes())};
  }
  void Store(std::uint32_t number, const IndexPage& page) const {
    const pager::PageEdit edit = opened_->Change(number);
    page.Store(state_->Page(), edit.Bytes());
  }
  // The first or the last page of a level.
  std::uint32_t End(std::uint8_t level, bool last) const {
    std::uint32_t number = root_;
    for (IndexPage page = Load(number); page.links.level > level; page = Load(number)) {
      number = page.Child(last ? page.ChildCount() - 1 : 0);
    }
    return number;
  }

  std::shared_ptr<Storage> opened_;
  std::shared_ptr<LoadedTable> state_;
  std::uint32_t root_ = 0;
  std::optional<Statement> statement_;
};

TEST_P(IndexTreeTest, GrowsAndShrinks) {
  unsigned seed = 0;
  std::uint32_t pages = 0;
  for (const Order order : {Order::kRandom, Order::kUp, Order::kDown, Order::kRandom}) {
    SCOPED_TRACE(static_cast<int>(order));
    TreeModel model(Tree(), ++seed);
    model.Insert(12'000, order);
    model.EraseAllBut(300, order == Order::kUp);
    model.Insert(3000, Order::kRandom);
    model.EraseAllBut(0, order == Order::kDown);
    EXPECT_TRUE(pages == 0 || order != Order::kRandom || opened_->Pages().PageCount() <= pages * 2);
    pages = std::max(pages, opened_->Pages().PageCount());
  }
}

// A page with a single child has an entry for it, not only the tail.
TEST_P(IndexTreeTest, KeepsTheBoundOfAnOnlyChild) {
  TreeModel model(Tree(), 1);
  model.Insert(40'000, Order::kUp);
  ASSERT_GT(Load(root_).links.level, 1);
  while (Load(End(1, true)).ChildCount() > 1) {
    model.EraseLast();
  }
  model.Insert(1, Order::kUp);
  model.Insert(300, Order::kUp);
}

// Other writers may leave a leaf in its place when its last entry goes.
TEST_P(IndexTreeTest, LivesWithEmptyLeaves) {
  TreeModel(Tree(), 1).Insert(5000, Order::kUp);
  std::uint32_t leaf = End(0, false);
  for (int i = 0; i < 8; ++i) {
    IndexPage page = Load(leaf);
    while (i % 3 != 2 && page.Count() > 0) {
      page.Erase(0);
    }
    Store(leaf, page);
    leaf = page.links.next;
  }
  TreeModel model(Tree(), 2);
  model.Insert(3000, Order::kRandom);
  model.EraseAllBut(0, false);
}

// Other writers may leave the last leaves to be found from the leaf before them only.
TEST_P(IndexTreeTest, TakesLeavesInThatNothingLeadsTo) {
  const std::uint32_t lost = opened_->TakePage();
  IndexPage first(opened_->Layout(), {.next = lost});
  IndexPage second(opened_->Layout(), {.previous = root_});
  first.Insert(0, AsBytes("1111-row"));
  second.Insert(0, AsBytes("2222-row"));
  Store(root_, first);
  Store(lost, second);
  ASSERT_NE(Tree().FindFaults(), std::vector<std::string>());
  EXPECT_TRUE(Tree().Insert(AsBytes("3333-row")));
  EXPECT_EQ(Tree().FindFaults(), std::vector<std::string>());
  TreeModel(Tree(), 1).EraseAllBut(0, false);

  TreeModel(Tree(), 2).Insert(12'000, Order::kUp);
  const std::uint32_t above = End(1, true);
  IndexPage parent = Load(above);
  ASSERT_GT(parent.Count(), 2u);
  for (int leaf = 0; leaf < 2; ++leaf) {
    parent.links.tail = parent.Child(parent.Count() - 1);
    parent.Erase(parent.Count() - 1);
  }
  Store(above, parent);
  Entry last;
  for (IndexWalk walk(Tree(), {}); walk.Next();) {
    last = AsText(walk.Entry());
  }
  ASSERT_NE(Tree().FindFaults(), std::vector<std::string>());
  EXPECT_TRUE(Tree().Erase(AsBytes(last)));
  EXPECT_EQ(Tree().FindFaults(), std::vector<std::string>());
  TreeModel model(Tree(), 3);
  model.Insert(3000, Order::kRandom);
  model.EraseAllBut(0, true);
}

INSTANTIATE_TEST_SUITE_P(Formats, IndexTreeTest, testing::ValuesIn(kFormats), FormatName);

class TableIndexes : public NewFileTest {};

// Access judges by them which index to use.
TEST_F(TableIndexes, CountDifferentKeys) {
  const std::vector<IndexSchema> three{{.name = "n", .columns = {{"n"}}, .unique = true},
                                       {.name = "no", .columns = {{"no"}}},
                                       {.name = "some", .columns = {{"no", true}}, .ignore_nulls = true}};
  for (const NewFile& format : kFormats) {
    fs::remove(file_);
    Table table = Make({{"T", {{"n", kLong}, {"no", kText, 9}}, three}}, format).OpenTable("T");
    for (int i = 0; i < 700; ++i) {
      const std::string no = std::string("A").append(std::to_string(i / 10));
      table.Insert(i < 2 ? Row(2) : Row{i, std::string_view(no)});
    }
    // Of the 70 texts 20 go, and half of the rows of the others; the two rows without values stay.
    for (Cursor cursor = table.Scan(); cursor.Next();) {
      if (const std::int64_t n = cursor.Integer(0); n >= 500 || (n > 1 && n % 2 == 1)) {
        EXPECT_TRUE(table.Delete(cursor.Row()));
      }
    }
    const auto file = Storage::Open(file_, {.password = kPassword, .code_page = {}}, pager::NativeFiles());
    const std::uint32_t page = FindTable(file, "T").page;
    const auto indexes =
        ParseDefinition(file->Layout(), file->CodecFor(0), page, ReadDefinitionPages(*file, page)).real_indexes;
    EXPECT_EQ(indexes.at(0).keys, 250u);
    EXPECT_EQ(indexes.at(1).keys, 51u);
    EXPECT_EQ(indexes.at(2).keys, 50u);
  }
}

TEST_F(TableIndexes, RefuseValuesThatFillHalfAPage) {
  const IndexSchema::Part a{"a"}, b{"b"}, c{"c"};
  const Database database =
      Make({{"T", {{"a", kText, 255}, {"b", kText, 255}, {"c", kText, 255}}, {{.name = "abc", .columns = {a, b, c}}}}});
  Table table = database.OpenTable("T");
  std::string text(255, '~');           // two bytes of key each
  const std::string hyphens(255, '-');  // four
  const auto insert = [&](std::string_view last) {
    table.Insert(Row{std::string_view(text), std::string_view(text), last});
  };
  EXPECT_NE(ErrorOf<ValueError>([&] { insert(hyphens); }).find("too long"), std::string::npos);
  for (int i = 0; i < 40; ++i) {
    text[100] = static_cast<char>('a' + i % 26);
    insert("x");
  }
  EXPECT_EQ(Health(database), "sound");
}

TEST_F(TableIndexes, HoldRelationships) {
  for (const char* sample : {"indexTestV1997.mdb", "indexTestV2000.mdb", "indexTestV2003.mdb"}) {
    SCOPED_TRACE(sample);
    const fs::path path = CopyOfSample(sample, folder_.Path());
    if (path.empty()) {
      GTEST_SKIP() << kNoSamples;
    }
    const Database database = Database::Open(path, {});
    Table from = database.OpenTable("Table1");
    Table to = database.OpenTable("Table2");
    const auto erase = [](Table& table, int id) {
      Cursor cursor = table.Scan(std::vector<Equals>{{0, id}});
      EXPECT_TRUE(cursor.Next() && table.Delete(cursor.Row())) << id;
    };
    const auto refusal = [](const auto& work) { return ErrorOf<ValueError>(work); };
    // Table1 refers by its second column to Table2, by its third to Table3.
    Row child{9, 77, 10, "x"sv, 0};
    EXPECT_NE(refusal([&] { from.Insert(child); }).find("otherfk1"), std::string::npos);
    EXPECT_NE(refusal([&] { erase(to, 1); }).find("delete those rows first"), std::string::npos);
    child[1] = 0;
    from.Insert(child);
    erase(from, 1);
    erase(from, 2);
    erase(to, 1);
    EXPECT_NE(refusal([&] { erase(to, 2); }).find("delete those rows first"), std::string::npos);
    EXPECT_EQ(RowsOf(from).size(), 3u);
    EXPECT_EQ(RowsOf(to).size(), 2u);
    EXPECT_EQ(Health(database), "sound");
  }
}

}  // namespace
}  // namespace marlevo::access
