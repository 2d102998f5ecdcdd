// Indexes: their trees through splits and shrinking, what they and relationships forbid.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/catalog.h"
#include "platform/access/database.h"
#include "platform/access/definition_pages.h"
#include "platform/access/index.h"
#include "platform/access/table_state.h"
#include "support/scratch_folder.h"

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
    EXPECT_EQ(tree_.Check(), std::vector<std::string>());
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

class IndexTreeTest : public testing::TestWithParam<NewFile> {
 protected:
  IndexTreeTest() {
    const fs::path path = folder_.Path() / "new.mdb";
    static_cast<void>(Database::Create(path, "", {{"T", {{"n", kLong}}, {{.name = "n", .columns = {{"n"}}}}}},
                                       pager::NativeFiles(), GetParam()));
    file_ = File::Open(path, {}, pager::NativeFiles());
    const CatalogEntry entry = FindTable(file_, "T");
    state_ = file_->Table(entry.page, entry.name);
  }

  IndexPage Load(std::uint32_t number) const {
    const pager::PageRef page = file_->Read(number);
    return {file_->Layout(), number, IndexPageView(file_->Layout(), state_->Page(), number, page.Bytes())};
  }
  void Store(std::uint32_t number, const IndexPage& page) const {
    const pager::PageEdit edit = file_->Change(number);
    page.Store(state_->Page(), edit.Bytes());
  }

  testing_support::ScratchFolder folder_;
  std::shared_ptr<File> file_;
  std::shared_ptr<TableState> state_;
};

TEST_P(IndexTreeTest, GrowsAndShrinks) {
  const IndexTree& tree = state_->Indexes().at(0).Tree();
  unsigned seed = 0;
  std::uint32_t pages = 0;
  for (const Order order : {Order::kRandom, Order::kUp, Order::kDown, Order::kRandom}) {
    SCOPED_TRACE(static_cast<int>(order));
    pager::Statement statement(file_->Pages());
    TreeModel model(tree, ++seed);
    model.Insert(12'000, order);
    model.EraseAllBut(300, order == Order::kUp);
    model.Insert(3000, Order::kRandom);
    model.EraseAllBut(0, order == Order::kDown);
    EXPECT_TRUE(pages == 0 || order != Order::kRandom || file_->Pages().PageCount() <= pages * 2);
    pages = std::max(pages, file_->Pages().PageCount());
    statement.Commit();
  }
}

// A page with a single child has an entry for it, not only the tail.
TEST_P(IndexTreeTest, KeepsTheBoundOfAnOnlyChild) {
  const IndexTree& tree = state_->Indexes().at(0).Tree();
  pager::Statement statement(file_->Pages());
  TreeModel model(tree, 1);
  model.Insert(40'000, Order::kUp);
  const auto last_above_leaves = [&] {
    IndexPage page = Load(state_->Definition().real_indexes[0].root);
    while (page.links.level > 1) {
      page = Load(page.Child(page.ChildCount() - 1));
    }
    return page;
  };
  ASSERT_GT(Load(state_->Definition().real_indexes[0].root).links.level, 1);
  while (last_above_leaves().ChildCount() > 1) {
    model.EraseLast();
  }
  model.Insert(1, Order::kUp);
  model.Insert(300, Order::kUp);
}

// Other writers may leave a leaf in its place when its last entry goes.
TEST_P(IndexTreeTest, LivesWithEmptyLeaves) {
  const IndexTree& tree = state_->Indexes().at(0).Tree();
  pager::Statement statement(file_->Pages());
  TreeModel(tree, 1).Insert(5000, Order::kUp);
  std::uint32_t leaf = state_->Definition().real_indexes[0].root;
  while (!Load(leaf).IsLeaf()) {
    leaf = Load(leaf).Child(0);
  }
  for (int i = 0; i < 8; ++i) {
    IndexPage page = Load(leaf);
    while (i % 3 != 2 && page.Count() > 0) {
      page.Erase(0);
    }
    Store(leaf, page);
    leaf = page.links.next;
  }
  TreeModel model(tree, 2);
  model.Insert(3000, Order::kRandom);
  model.EraseAllBut(0, false);
}

// Other writers may leave the last leaves to be found from the leaf before them only.
TEST_P(IndexTreeTest, TakesLeavesInThatNothingLeadsTo) {
  const IndexTree& tree = state_->Indexes().at(0).Tree();
  const std::uint32_t root = state_->Definition().real_indexes[0].root;
  pager::Statement statement(file_->Pages());
  {
    const std::uint32_t lost = file_->TakePage();
    IndexPage first(file_->Layout(), {.next = lost});
    IndexPage second(file_->Layout(), {.previous = root});
    first.Insert(0, AsBytes("1111-row"));
    second.Insert(0, AsBytes("2222-row"));
    Store(root, first);
    Store(lost, second);
  }
  ASSERT_NE(tree.Check(), std::vector<std::string>());
  EXPECT_TRUE(tree.Insert(AsBytes("3333-row")));
  EXPECT_EQ(tree.Check(), std::vector<std::string>());
  TreeModel(tree, 1).EraseAllBut(0, false);

  TreeModel(tree, 2).Insert(12'000, Order::kUp);
  std::uint32_t above = root;
  while (Load(above).links.level > 1) {
    above = Load(above).Child(Load(above).ChildCount() - 1);
  }
  IndexPage parent = Load(above);
  ASSERT_GT(parent.Count(), 2u);
  for (int lost = 0; lost < 2; ++lost) {
    parent.links.tail = parent.Child(parent.Count() - 1);
    parent.Erase(parent.Count() - 1);
  }
  Store(above, parent);
  Entry last;
  for (IndexWalk walk(tree, {}); walk.Next();) {
    last = AsText(walk.Entry());
  }
  ASSERT_NE(tree.Check(), std::vector<std::string>());
  EXPECT_TRUE(tree.Erase(AsBytes(last)));
  EXPECT_EQ(tree.Check(), std::vector<std::string>());
  TreeModel model(tree, 3);
  model.Insert(3000, Order::kRandom);
  model.EraseAllBut(0, true);
}

INSTANTIATE_TEST_SUITE_P(Formats, IndexTreeTest, testing::ValuesIn(kFormats), FormatName);

std::string ErrorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const ValueError& error) {
    return error.what();
  }
  return "no error";
}

TEST(Index, RefusesBeforeAnythingChanges) {
  const testing_support::ScratchFolder folder;
  Database database = Database::Create(folder.Path() / "new.mdb", "",
                                       {{"T",
                                         {{"no", kText, 10}, {"n", kLong}, {"day", kDateTime}},
                                         {{.name = "PrimaryKey", .columns = {{"no"}}, .primary_key = true},
                                          {.name = "n", .columns = {{"n"}, {"day"}}, .unique = true}}}});
  Table table = database.OpenTable("T");
  Statement statement(database);
  table.Insert(std::vector<Value>{"A1"sv, {}, {}});
  table.Insert(std::vector<Value>{"A2"sv, {}, {}});  // empty is not equal to empty
  table.Insert(std::vector<Value>{"A3"sv, std::int64_t{1}, 1.5});
  const Rows rows = RowsOf(table);
  const std::vector<std::pair<std::vector<Value>, std::string>> refused{
      {{"a1 "sv, {}, {}}, "the same value in the index PrimaryKey"},
      {{{}, {}, {}}, "PrimaryKey does not allow an empty value"},
      {{"A4"sv, std::int64_t{1}, 1.5}, "the same value in the index n"},
      {{"\xE3\x81\x82"sv, {}, {}}, "character U+3042"},
      {{"\xF0\xA0\x80\x8B"sv, {}, {}}, "character U+D840"},
  };
  for (const auto& [row, reason] : refused) {
    const std::string error = ErrorOf([&, &values = row] { table.Insert(values); });
    EXPECT_NE(error.find(reason), std::string::npos) << error;
  }
  table.Insert(std::vector<Value>{"A4"sv, std::int64_t{1}, 1.25});
  statement.Commit();
  EXPECT_EQ(RowsOf(table).size(), rows.size() + 1);
  EXPECT_EQ(Health(database), "sound");
}

// Access judges by them which index to use.
TEST(Index, CountsDifferentKeys) {
  for (const NewFile& format : kFormats) {
    const testing_support::ScratchFolder folder;
    const fs::path path = folder.Path() / "new.mdb";
    {
      Database database = Database::Create(path, "",
                                           {{"T",
                                             {{"n", kLong}, {"no", kText, 9}},
                                             {{.name = "n", .columns = {{"n"}}, .unique = true},
                                              {.name = "no", .columns = {{"no"}}},
                                              {.name = "some", .columns = {{"no", true}}, .ignore_nulls = true}}}},
                                           pager::NativeFiles(), format);
      Table table = database.OpenTable("T");
      for (std::int64_t i = 0; i < 700; ++i) {
        const std::string no = std::string("A").append(std::to_string(i / 10));
        table.Insert(std::vector<Value>{i < 2 ? Value() : Value(i), i < 2 ? Value() : Value(std::string_view(no))});
      }
      // Of the 70 texts 20 go, and half of the rows of the others; the two rows without values stay.
      for (Cursor cursor = table.Scan(); cursor.Next();) {
        if (const std::int64_t n = cursor.Integer(0); n >= 500 || (n > 1 && n % 2 == 1)) {
          EXPECT_TRUE(table.Delete(cursor.Row()));
        }
      }
    }
    const auto file = File::Open(path, {}, pager::NativeFiles());
    const std::uint32_t page = FindTable(file, "T").page;
    std::vector<std::uint32_t> keys;
    for (const RealIndex& index :
         ParseDefinition(file->Layout(), file->Text(0), page, ReadDefinitionPages(*file, page)).real_indexes) {
      keys.push_back(index.keys);
    }
    EXPECT_EQ(keys, (std::vector<std::uint32_t>{250, 51, 50}));
  }
}

TEST(Index, RefusesValuesThatFillHalfAPage) {
  const testing_support::ScratchFolder folder;
  const IndexSchema::Part a{"a"}, b{"b"}, c{"c"};
  Database database = Database::Create(
      folder.Path() / "new.mdb", "",
      {{"T", {{"a", kText, 255}, {"b", kText, 255}, {"c", kText, 255}}, {{.name = "abc", .columns = {a, b, c}}}}});
  Table table = database.OpenTable("T");
  std::string text(255, '~');           // two bytes of key each
  const std::string hyphens(255, '-');  // four
  const auto row = [&](std::string_view last) {
    return std::vector<Value>{std::string_view(text), std::string_view(text), last};
  };
  EXPECT_NE(ErrorOf([&] { table.Insert(row(hyphens)); }).find("too long"), std::string::npos);
  for (int i = 0; i < 40; ++i) {
    text[100] = static_cast<char>('a' + i % 26);
    table.Insert(row("x"));
  }
  EXPECT_EQ(Health(database), "sound");
}

TEST(Index, StaysRightInEncodedFiles) {
  const testing_support::ScratchFolder folder;
  const fs::path path = CopyOfSample("db-enc.mdb", folder.Path());
  if (path.empty()) {
    GTEST_SKIP() << kNoSamples;
  }
  Rows rows;
  {
    Database database = Database::Open(path, {});
    Table table = database.OpenTable("Table1");
    for (std::int64_t i = 0; i < 1000; ++i) {
      table.Insert(std::vector<Value>{{}, "text"sv, i});
    }
    rows = RowsOf(table);
    EXPECT_EQ(rows.size(), 1002u);
  }
  const Database database = Database::Open(path, {});
  EXPECT_EQ(RowsOf(database.OpenTable("Table1")), rows);
  EXPECT_EQ(Health(database), "sound");
}

TEST(Index, WalksWhileRowsComeAndGo) {
  const testing_support::ScratchFolder folder;
  Database database =
      Database::Create(folder.Path() / "new.mdb", "",
                       {{"T", {{"no", kText, 10}, {"n", kLong}}, {{.name = "no", .columns = {{"no"}, {"n", true}}}}}});
  Table table = database.OpenTable("T");
  std::mt19937 random(3);
  std::set<std::int64_t> expected;
  for (int i = 0; i < 5000; ++i) {
    const std::string no(1, static_cast<char>('A' + random() % 4));
    table.Insert(std::vector<Value>{std::string_view(no), std::int64_t{i}});
    if (no == "B") {
      expected.insert(-i);
    }
  }
  const std::vector<Value> b{"b "sv};
  const auto walked = [&](bool in_one_statement) {
    std::set<std::int64_t> seen;
    const auto statement = in_one_statement ? std::make_unique<Statement>(database) : nullptr;
    for (Cursor cursor = table.Walk(0, b); cursor.Next();) {
      const std::int64_t n = cursor.Integer(1);
      EXPECT_TRUE(seen.empty() || *seen.rbegin() < -n) << "out of order";
      seen.insert(-n);
      if (n % 3 == 0) {
        EXPECT_TRUE(table.Delete(cursor.Row()));
        table.Insert(std::vector<Value>{"a"sv, std::int64_t{n}});
      }
    }
    if (statement != nullptr) {
      statement->Commit();
    }
    return seen;
  };
  EXPECT_EQ(walked(true), expected);
  std::erase_if(expected, [](std::int64_t n) { return n % 3 == 0; });
  EXPECT_EQ(walked(false), expected);
  EXPECT_FALSE(table.Walk(0, std::vector<Value>{"longer than ten"sv}).Next());
  EXPECT_THROW(table.Walk(0, std::vector<Value>{"\xE3\x81\x82"sv}), ValueError);
  EXPECT_EQ(Health(database), "sound");
}

TEST(Index, RelationshipsHold) {
  for (const char* sample : {"indexTestV1997.mdb", "indexTestV2000.mdb", "indexTestV2003.mdb"}) {
    SCOPED_TRACE(sample);
    const testing_support::ScratchFolder folder;
    const fs::path path = CopyOfSample(sample, folder.Path());
    if (path.empty()) {
      GTEST_SKIP() << kNoSamples;
    }
    Database database = Database::Open(path, {});
    Table from = database.OpenTable("Table1");
    Table to = database.OpenTable("Table2");
    const auto find = [](const Table& table, std::int64_t id) {
      const Equals condition{0, id};
      Cursor cursor = table.Scan({&condition, 1});
      EXPECT_TRUE(cursor.Next());
      return cursor.Row();
    };
    // Table1 refers by its second column to Table2, by its third to Table3.
    const std::vector<Value> orphan{std::int64_t{9}, std::int64_t{77}, std::int64_t{10}, "x"sv, std::int64_t{0}};
    EXPECT_NE(ErrorOf([&] { from.Insert(orphan); }).find("otherfk1"), std::string::npos);
    EXPECT_NE(ErrorOf([&] { to.Delete(find(to, 1)); }).find("delete those rows first"), std::string::npos);

    std::vector<Value> child = orphan;
    child[1] = std::int64_t{0};
    from.Insert(child);
    for (const std::int64_t id : {1, 2}) {
      EXPECT_TRUE(from.Delete(find(from, id)));
    }
    EXPECT_TRUE(to.Delete(find(to, 1)));
    EXPECT_NE(ErrorOf([&] { to.Delete(find(to, 2)); }).find("delete those rows first"), std::string::npos);
    EXPECT_EQ(RowsOf(from).size(), 3u);
    EXPECT_EQ(RowsOf(to).size(), 2u);
    EXPECT_EQ(Health(database), "sound");
  }
}

}  // namespace
}  // namespace marlevo::access
