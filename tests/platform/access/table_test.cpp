// Tables of files that the engine has made: values, refusals, reuse of space, scans under way, statements, errors of
// opening.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/database.h"
#include "support/scratch_folder.h"

namespace marlevo::access {
namespace {

using enum ColumnType;
using namespace std::string_view_literals;
namespace fs = std::filesystem;

std::string ErrorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "no error";
}

class AccessTable : public testing::TestWithParam<NewFile> {
 protected:
  Database Make(const std::vector<TableSchema>& tables) {
    return Database::Create(file_, "qorvat", tables, pager::NativeFiles(), GetParam());
  }
  bool IsJet3() const { return GetParam().version == 3; }
  Database Reopen() const { return Database::Open(file_, {.password = "qorvat", .code_page = {}}); }

  testing_support::ScratchFolder folder_;
  fs::path file_ = folder_.Path() / "4star.mdb";
};

TEST_P(AccessTable, KeepsValuesOfEveryType) {
  const std::vector<ColumnSchema> columns{{"b", kBoolean},      {"u8", kByte},      {"i16", kInteger}, {"i32", kLong},
                                          {"money", kCurrency}, {"f", kSingle},     {"d", kDouble},    {"t", kDateTime},
                                          {"bin", kBinary, 6},  {"text", kText, 6}, {"memo", kMemo},   {"ole", kOle},
                                          {"id", kGuid}};
  const auto bytes = std::as_bytes(std::span("\0\x01\xFFz", 4));
  const std::string_view accents = IsJet3() ? "αβγ"sv : "été"sv;
  const std::string_view rare = IsJet3() ? "龜ok"sv : "𠀋ok"sv;  // in UTF-16 a pair of units
  const std::string long_text(3000, 'x');
  std::string longer_text = "客";
  for (int i = 0; i < 9000; ++i) {
    longer_text += std::to_string(i);
  }
  const std::vector<std::vector<Value>> rows{
      {true, std::int64_t{255}, std::int64_t{-32768}, std::int64_t{-2147483648LL}, -900719925474.0991, 0.5, 1e300,
       -1.25, bytes, "王小明"sv, "short"sv, bytes, "{00112233-4455-6677-8899-AABBCCDDEEFF}"sv},
      {false, std::int64_t{0}, 32767.0, std::int64_t{2147483647}, 12.5, std::int64_t{7}, -0.0, 37000.75, Bytes(), ""sv,
       std::string_view(long_text), bytes, "{FFFFFFFF-0000-0000-0000-000000000001}"sv},
      {true, {}, {}, {}, {}, {}, {}, {}, {}, accents, std::string_view(longer_text), {}, {}},
      {false, {}, {}, {}, {}, {}, {}, {}, {}, rare, ""sv, {}, {}},
  };
  std::vector<std::string> expected;
  {
    Database database = Make({{"T", columns}});
    Table table = database.OpenTable("t");
    for (const std::vector<Value>& row : rows) {
      table.Insert(row);
      expected.push_back(RowText(row));
    }
    EXPECT_EQ(TextsOf(table), expected);
  }
  const Database database = Reopen();
  EXPECT_EQ(TextsOf(database.OpenTable("T")), expected);
  EXPECT_EQ(Health(database), "sound");
  Cursor cursor = database.OpenTable("T").Scan();
  ASSERT_TRUE(cursor.Next());
  EXPECT_EQ(cursor.Text(4), "-900719925474.0991");
}

TEST_P(AccessTable, RefusesValuesThatDoNotFit) {
  const std::vector<ColumnSchema> columns{{"u8", kByte},  {"i16", kInteger}, {"i32", kLong},     {"money", kCurrency},
                                          {"f", kSingle}, {"d", kDouble},    {"text", kText, 4}, {"bin", kBinary, 2},
                                          {"id", kGuid},  {"memo", kMemo}};
  Database database = Make({{"T", columns}});
  Table table = database.OpenTable("T");
  struct Case {
    std::size_t column;
    Value value;
  };
  const auto three_bytes = std::as_bytes(std::span("abc", 3));
  const double infinite = std::numeric_limits<double>::infinity();
  for (const Case& refused : std::vector<Case>{{0, std::int64_t{256}},
                                               {0, std::int64_t{-1}},
                                               {0, 1.5},
                                               {0, "1"sv},
                                               {1, std::int64_t{32768}},
                                               {2, 2147483648.0},
                                               {2, 1e300},
                                               {2, infinite},
                                               {3, 0.00001},
                                               {3, 1e15},
                                               {3, infinite},
                                               {4, 1e39},
                                               {5, infinite},
                                               {5, "1"sv},
                                               {6, "12345"sv},
                                               {6, "王小明先生"sv},
                                               {6, "\xC0\x80"sv},
                                               {6, "\xED\xA0\x80"sv},
                                               {6, "\xFF"sv},
                                               {6, "\xEF\xBB\xBFx"sv},
                                               {6, std::int64_t{1}},
                                               {7, three_bytes},
                                               {7, "ab"sv},
                                               {8, "{0}"sv},
                                               {8, "{0011223344-55-6677-8899-AABBCCDDEEFF}"sv},
                                               {9, "\xC3"sv}}) {
    std::vector<Value> row(columns.size());
    row[refused.column] = refused.value;
    EXPECT_THROW(table.Insert(row), ValueError) << columns[refused.column].name << " " << CellText(refused.value);
  }
  EXPECT_THROW(table.Insert(std::vector<Value>(3)), ValueError);
  {
    Statement statement(database);
    table.Insert(std::vector<Value>(columns.size()));
    std::vector<Value> too_much(columns.size());
    too_much[0] = 1.5;
    EXPECT_THROW(table.Insert(too_much), ValueError);
    table.Insert(std::vector<Value>(columns.size()));
    statement.Commit();
  }
  EXPECT_EQ(table.RowCount(), 2u);
  EXPECT_EQ(RowsOf(table).size(), 2u);
  EXPECT_EQ(Health(database), "sound");
}

TEST_P(AccessTable, RefusesRowsThatNoPageHolds) {
  std::vector<ColumnSchema> columns;
  for (int i = 0; i < 20; ++i) {
    columns.push_back({"c" + std::to_string(i), kText, 255});
  }
  Database database = Make({{"Wide", columns}});
  Table table = database.OpenTable("Wide");
  const std::string name(255, 'x');
  EXPECT_THROW(table.Insert(std::vector<Value>(20, std::string_view(name))), ValueError);
  std::vector<Value> most(20, std::string_view(name));
  most.resize(IsJet3() ? 7 : 15);
  most.resize(20);
  table.Insert(most);
  EXPECT_EQ(TextsOf(table), std::vector<std::string>{RowText(most)});
}

TEST_P(AccessTable, ReusesFreedSpace) {
  Database database =
      Make({{"T", {{"n", kLong}, {"text", kText, 50}, {"memo", kMemo}}}, {"Other", {{"text", kText, 255}}}});
  Table table = database.OpenTable("T");
  const std::string memo(500, 'm');
  std::uintmax_t size = 0;
  for (int turn = 0; turn < 100; ++turn) {
    {
      Statement statement(database);
      for (std::int64_t i = 0; i < 500; ++i) {
        table.Insert(std::vector<Value>{i, "some text"sv, i % 5 == 0 ? Value(std::string_view(memo)) : Value()});
      }
      statement.Commit();
    }
    // All of them, but in another order each time.
    for (std::int64_t rest = 0; rest < 3; ++rest) {
      Cursor cursor = table.Scan();
      while (cursor.Next()) {
        if (rest == 2 || cursor.Integer(0) % 3 == (turn + rest) % 3) {
          EXPECT_TRUE(table.Delete(cursor.Row()));
        }
      }
    }
    database.Flush();
    if (turn == 0) {
      size = fs::file_size(file_);
    }
    ASSERT_EQ(fs::file_size(file_), size) << "turn " << turn;
  }
  EXPECT_EQ(table.RowCount(), 0u);
  Table other = database.OpenTable("Other");
  for (int i = 0; i < 200; ++i) {
    other.Insert(std::vector<Value>{std::string_view(memo).substr(0, 200)});
  }
  database.Flush();
  EXPECT_EQ(fs::file_size(file_), size);
  EXPECT_EQ(Health(database), "sound");
}

TEST_P(AccessTable, ScansWhileRowsComeAndGo) {
  Database database = Make({{"T", {{"n", kLong}, {"text", kText, 50}}}});
  Table table = database.OpenTable("T");
  for (std::int64_t i = 0; i < 1000; ++i) {
    table.Insert(std::vector<Value>{i, "abcdefghij"sv});
  }
  // Deletes the current row and the one two further on, which must not come up any more.
  std::int64_t seen = 0;
  std::vector<RowId> ids;
  for (Cursor all = table.Scan(); all.Next();) {
    ids.push_back(all.Row());
  }
  for (Cursor cursor = table.Scan(); cursor.Next(); ++seen) {
    const auto n = static_cast<std::size_t>(cursor.Integer(0));
    ASSERT_EQ(cursor.Row(), ids[n]);
    ASSERT_NE(n % 4, 2u);
    if (n % 4 == 0) {
      EXPECT_TRUE(table.Delete(ids[n]));
      EXPECT_TRUE(table.Delete(ids[n + 2]));
      EXPECT_FALSE(table.Delete(ids[n + 2]));
    }
  }
  EXPECT_EQ(seen, 750);
  EXPECT_EQ(table.RowCount(), 500u);

  Statement statement(database);
  for (Cursor cursor = table.Scan(); cursor.Next();) {
    EXPECT_TRUE(table.Delete(cursor.Row()));
  }
  statement.Commit();
  EXPECT_EQ(RowsOf(table).size(), 0u);
  EXPECT_EQ(Health(database), "sound");
}

TEST_P(AccessTable, ConditionsMeanEquality) {
  Database database =
      Make({{"T", {{"i16", kInteger}, {"u8", kByte}, {"d", kDouble}, {"b", kBoolean}, {"text", kText, 9}}}});
  Table table = database.OpenTable("T");
  const auto count = [&table](const std::vector<Equals>& conditions) {
    std::size_t rows = 0;
    for (Cursor cursor = table.Scan(conditions); cursor.Next();) {
      ++rows;
    }
    return rows;
  };
  for (std::int64_t i = 0; i < 600; ++i) {
    table.Insert(std::vector<Value>{i % 3 == 0 ? Value() : Value(i - 300), i % 7, static_cast<double>(i % 5) / 2,
                                    i % 2 == 0, "x"sv});
  }
  EXPECT_EQ(count({{0, -299}}), 1u);
  EXPECT_EQ(count({{0, 0}}), 0u);  // null, although its bytes are zero
  EXPECT_EQ(count({{0, 65536 + 1}}), 0u);
  EXPECT_EQ(count({{1, 3}}), 86u);
  EXPECT_EQ(count({{1, 3 + 256}}), 0u);
  EXPECT_EQ(count({{2, 1}}), 120u);
  EXPECT_EQ(count({{3, 1}, {1, 0}}), 43u);
}

TEST_P(AccessTable, ConnectionsSeeEachOther) {
  Database first = Make({{"T", {{"n", kLong}}}});
  const Database second = Reopen();
  Table a = first.OpenTable("T");
  Table b = second.OpenTable("T");
  for (std::int64_t i = 0; i < 2000; ++i) {
    (i % 2 == 0 ? a : b).Insert(std::vector<Value>{i});
  }
  EXPECT_EQ(RowsOf(a), RowsOf(b));
  for (Cursor cursor = a.Scan(); cursor.Next();) {
    b.Delete(cursor.Row());
  }
  a.Insert(std::vector<Value>{std::int64_t{7}});
  EXPECT_EQ(TextsOf(b), std::vector<std::string>{"7"});
  {
    Statement statement(first);
    a.Insert(std::vector<Value>{std::int64_t{8}});
    EXPECT_NE(ErrorOf([&] { b.Insert(std::vector<Value>{std::int64_t{9}}); }), "no error");
  }
  EXPECT_EQ(TextsOf(b), std::vector<std::string>{"7"});
  EXPECT_EQ(Health(second), "sound");
}

TEST_P(AccessTable, MapsGrowWithTheFile) {
  Database database = Make({{"T", {{"n", kLong}, {"a", kBinary, 255}}}, {"Big", {{"a", kOle}}}});
  Table table = database.OpenTable("T");
  Table big = database.OpenTable("Big");
  // A page a row: past what the table's map, then the file's map can hold in their rows.
  const std::vector<std::byte> content(IsJet3() ? 2000 : 4000, std::byte{7});
  const int rows = IsJet3() ? 17000 : 33000;
  Statement statement(database);
  for (std::int64_t i = 0; i < rows; ++i) {
    big.Insert(std::vector<Value>{Bytes(content)});
    if (i % 1000 == 0) {
      table.Insert(std::vector<Value>{i, Bytes(content).first(200)});
    }
  }
  statement.Commit();
  EXPECT_EQ(table.RowCount(), IsJet3() ? 17u : 33u);
  EXPECT_EQ(Health(database), "sound");
  database.Flush();
  const std::uintmax_t size = fs::file_size(file_);
  EXPECT_GT(size, IsJet3() ? 16384u * 2048 : 32768u * 4096);
  {
    Statement emptying(database);
    for (Cursor cursor = big.Scan(); cursor.Next();) {
      big.Delete(cursor.Row());
    }
    emptying.Commit();
  }
  {
    Statement refilling(database);
    for (int i = 0; i < rows; ++i) {
      big.Insert(std::vector<Value>{Bytes(content)});
    }
    refilling.Commit();
  }
  EXPECT_EQ(Health(database), "sound");
  database.Flush();
  EXPECT_EQ(fs::file_size(file_), size);
}

// Of a file that has almost as many pages as its format allows, most of them nobody's.
TEST_P(AccessTable, StopsAtTheLargestSize) {
  static_cast<void>(Make({{"T", {{"n", kLong}, {"text", kText, 255}}, {{.name = "n", .columns = {{"n"}}}}}}));
  const std::uintmax_t most = (IsJet3() ? 1ull : 2ull) << 30;
  const std::size_t page = IsJet3() ? 2048 : 4096;
  fs::resize_file(file_, most - 60 * page);
  Database database = Reopen();
  Table table = database.OpenTable("T");
  const std::string text(250, 'x');
  const auto insert = [&](std::int64_t count) {
    Statement statement(database);
    for (std::int64_t i = 0; i < count; ++i) {
      table.Insert(std::vector<Value>{i, std::string_view(text)});
    }
    statement.Commit();
  };
  std::size_t rows = 0;
  std::string error = "no error";
  for (; error == "no error" && rows < 20'000; rows += error == "no error" ? 100 : 0) {
    error = ErrorOf([&] { insert(100); });
  }
  EXPECT_NE(error.find(IsJet3() ? "1 GiB" : "2 GiB"), std::string::npos) << error;
  const Rows before = RowsOf(table);
  EXPECT_EQ(before.size(), rows);
  EXPECT_NE(ErrorOf([&] { insert(1000); }), "no error");
  EXPECT_EQ(RowsOf(table), before);
  database.Flush();
  EXPECT_LE(fs::file_size(file_), most);

  for (std::size_t i = 0; i < 300; ++i) {
    EXPECT_TRUE(table.Delete(std::next(before.begin(), static_cast<std::ptrdiff_t>(i))->first));
  }
  insert(200);
  EXPECT_EQ(RowsOf(table).size(), rows - 100);
  // The pages that nobody has are no fault of the writer.
  for (const std::string& fault : database.Check()) {
    ASSERT_NE(fault.find("used by nobody"), std::string::npos) << fault;
  }
}

TEST_P(AccessTable, WaitsForAccessToCloseTheFile) {
  static_cast<void>(Make({{"T", {{"n", kLong}}}}));
  const fs::path lock = folder_.Path() / "4star.ldb";
  fs::create_directories(lock / "held");
  Database database = Reopen();
  Table table = database.OpenTable("T");
  const std::vector<Value> row{std::int64_t{1}};
  EXPECT_NE(ErrorOf([&] { table.Insert(row); }).find("close it there"), std::string::npos);
  EXPECT_EQ(RowsOf(table).size(), 0u);
  fs::remove_all(lock);
  std::ofstream(lock) << "left behind";
  table.Insert(row);
  EXPECT_FALSE(fs::exists(lock));
}

TEST_P(AccessTable, OpensOnlyWhatItUnderstands) {
  static_cast<void>(Make({{"T", {{"n", kLong}}}}));
  std::string good;
  {
    std::ifstream file(file_, std::ios::binary);
    good.assign(std::istreambuf_iterator<char>(file), {});
  }
  const auto open = [&](const std::string& content, const std::string& password = "qorvat") {
    std::ofstream(file_, std::ios::binary) << content;
    return ErrorOf([&] {
      const Database database = Database::Open(file_, {.password = password, .code_page = {}});
      static_cast<void>(RowsOf(database.OpenTable("T")));
    });
  };
  const std::size_t page = IsJet3() ? 2048 : 4096;
  const auto with = [&good](std::size_t at, const std::string& bytes) {
    std::string changed = good;
    return changed.replace(at, bytes.size(), bytes);
  };
  EXPECT_EQ(open(good), "no error");
  EXPECT_EQ(open(good, "Qorvat"), "the password is not that of the database");
  EXPECT_EQ(open(good, ""), "the password is not that of the database");
  for (const std::string& bad :
       {std::string(), std::string("hello"), std::string(5000, '\0'), with(4, "Standard ACE DB"),
        with(4, "MSISAM Database"), with(0x14, "\x02"), good.substr(0, page), good.substr(0, 2 * page),
        good.substr(0, 9 * page), with(2 * page, std::string(page, '\0')), with(2 * page, std::string(page, '\xFF'))}) {
    EXPECT_NE(open(bad), "no error") << bad.size();
  }
}

TEST_P(AccessTable, TakesNamesWithoutAFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_.Path());
  const std::string error = ErrorOf([] {
    Database::Create("new.mdb", "", {{"T", {{"n", kLong}}}}).Flush();
    static_cast<void>(Database::Open("new.mdb", {}).OpenTable("T").Insert(std::vector<Value>{std::int64_t{1}}));
  });
  fs::current_path(before);
  EXPECT_EQ(error, "no error");
  EXPECT_TRUE(fs::exists(folder_.Path() / "new.mdb"));
}

TEST_P(AccessTable, NeverCreatesOverAFile) {
  std::ofstream(file_) << "letters";
  EXPECT_NE(ErrorOf([&] { static_cast<void>(Make({})); }), "no error");
  EXPECT_EQ(fs::file_size(file_), 7u);
  fs::remove(file_);
  EXPECT_NE(ErrorOf([&] { static_cast<void>(Make({{"T", {}}})); }), "no error");
  EXPECT_NE(ErrorOf([&] { static_cast<void>(Make({{"T", {{"a", kText, 256}}}})); }), "no error");
  EXPECT_NE(ErrorOf([&] { static_cast<void>(Make({{"T", {{"a", kLong}, {"A", kLong}}}})); }), "no error");
  EXPECT_NE(ErrorOf([&] { static_cast<void>(Database::Create(file_, "more than twenty characters", {})); }),
            "no error");
  EXPECT_TRUE(fs::is_empty(folder_.Path()));
}

INSTANTIATE_TEST_SUITE_P(Formats, AccessTable, testing::ValuesIn(kFormats), FormatName);

}  // namespace
}  // namespace marlevo::access
