// Tables of files that the engine has made: values, refusals, reuse of space, scans under way, statements, errors of
// opening.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/database/database.h"

namespace marlevo::access {
namespace {

using enum ColumnType;
using namespace std::string_view_literals;
namespace fs = std::filesystem;

class AccessTable : public BothFormatsTest {
 protected:
  std::uintmax_t SizeOf(Database& database) const {
    database.Flush();
    return fs::file_size(file_);
  }
};

TEST_P(AccessTable, KeepsWhatFitsAndRefusesTheRest) {
  const double infinite = std::numeric_limits<double>::infinity();
  const Bytes bytes = std::as_bytes(std::span("\0\x01\xFFz", 4));
  const Bytes too_many = std::as_bytes(std::span("1234567", 7));
  const std::string_view accents = IsJet3() ? "αβγ"sv : "été"sv;
  const std::string_view rare = IsJet3() ? "龜ok"sv : "𠀋ok"sv;  // in UTF-16 a pair of units
  const std::string long_text(3000, 'x');
  std::string longer_text = "客";
  for (int i = 0; i < 9000; ++i) {
    longer_text += std::to_string(i);
  }
  struct Case {
    const char* column;
    ColumnType type;
    Row kept;  // null in the rows beyond
    Row refused;
    std::size_t length = 0;
  };
  const Case cases[] = {
      {"b", kBoolean, {true, false, true, false}, {}},
      {"u8", kByte, {255, 0}, {256, -1, 1.5, "1"sv}},
      {"i16", kInteger, {-32768, 32767.0}, {32768}},
      {"i32", kLong, {-2147483648LL, 2147483647}, {2147483648.0, 1e300, infinite}},
      {"money", kCurrency, {-900719925474.0991, 12.5}, {0.00001, 1e15, infinite}},
      {"f", kSingle, {0.5, 7}, {1e39}},
      {"d", kDouble, {1e300, -0.0}, {infinite, "1"sv}},
      {"t", kDateTime, {-1.25, 37000.75}, {}},
      {"bin", kBinary, {bytes, Bytes()}, {too_many, "ab"sv}, 6},
      {"text",
       kText,
       {"王小明"sv, ""sv, accents, rare},
       {"1234567"sv, "王小明先生您好"sv, "\xC0\x80"sv, "\xED\xA0\x80"sv, "\xFF"sv, "\xEF\xBB\xBFx"sv, 1},
       6},
      {"memo", kMemo, {"short"sv, std::string_view(long_text), std::string_view(longer_text), ""sv}, {"\xC3"sv}},
      {"ole", kOle, {bytes, bytes}, {}},
      {"id",
       kGuid,
       {"{00112233-4455-6677-8899-AABBCCDDEEFF}"sv, "{FFFFFFFF-0000-0000-0000-000000000001}"sv},
       {"{0}"sv, "{0011223344-55-6677-8899-AABBCCDDEEFF}"sv}},
  };
  std::vector<ColumnSchema> columns;
  std::vector<Row> rows(4);
  for (const Case& column : cases) {
    columns.push_back({column.column, column.type, column.length});
    for (std::size_t i = 0; i < rows.size(); ++i) {
      rows[i].push_back(i < column.kept.size() ? column.kept[i] : Value());
    }
  }
  std::vector<std::string> expected;
  {
    const Database database = Make({{"T", columns}});
    Table table = database.OpenTable("t");
    const auto refuses = [&](const Row& row) { EXPECT_THROW(table.Insert(row), ValueError) << RowText(row); };
    for (const Row& row : rows) {
      table.Insert(row);
      expected.push_back(RowText(row));
    }
    refuses(Row(3));
    InOneStatement(database, [&] {
      for (std::size_t i = 0; i < std::size(cases); ++i) {
        for (const Value& value : cases[i].refused) {
          Row row = rows[0];
          row[i] = value;
          refuses(row);
        }
      }
      table.Insert(rows[0]);
    });
    expected.push_back(expected[0]);
    EXPECT_EQ(TextsOf(table), expected);
    EXPECT_EQ(table.RowCount(), expected.size());
  }
  const Database database = Reopen();
  EXPECT_EQ(TextsOf(database.OpenTable("T")), expected);
  EXPECT_EQ(Health(database), "sound");
  Cursor cursor = database.OpenTable("T").Scan();
  ASSERT_TRUE(cursor.Next());
  EXPECT_EQ(cursor.Text(4), "-900719925474.0991");
  EXPECT_EQ(cursor.Real(3), -2147483648.0);
}

TEST_P(AccessTable, RefusesRowsThatNoPageHolds) {
  std::vector<ColumnSchema> columns;
  for (int i = 0; i < 20; ++i) {
    columns.push_back({std::to_string(i), kText, 255});
  }
  const Database database = Make({{"Wide", columns}});
  Table table = database.OpenTable("Wide");
  const std::string name(255, 'x');
  EXPECT_THROW(table.Insert(Row(20, std::string_view(name))), ValueError);
  Row most(20);
  std::fill_n(most.begin(), IsJet3() ? 7 : 15, std::string_view(name));
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
    InOneStatement(database, [&] {
      for (int i = 0; i < 500; ++i) {
        table.Insert(Row{i, "some text"sv, i % 5 == 0 ? Value(std::string_view(memo)) : Value()});
      }
    });
    // All of them, but in another order each time.
    for (int rest = 0; rest < 3; ++rest) {
      for (Cursor cursor = table.Scan(); cursor.Next();) {
        if (rest == 2 || cursor.Integer(0) % 3 == (turn + rest) % 3) {
          EXPECT_TRUE(table.Delete(cursor.Row()));
        }
      }
    }
    size = turn == 0 ? SizeOf(database) : size;
    ASSERT_EQ(SizeOf(database), size) << "turn " << turn;
  }
  EXPECT_EQ(table.RowCount(), 0u);
  Table other = database.OpenTable("Other");
  for (int i = 0; i < 200; ++i) {
    other.Insert(Row{std::string_view(memo).substr(0, 200)});
  }
  EXPECT_EQ(SizeOf(database), size);
  EXPECT_EQ(Health(database), "sound");
}

// Every fourth row takes itself and the second one after it away, and lets another come.
TEST_P(AccessTable, ShowsNoRowThatWentWhileItWasRead) {
  constexpr std::int64_t kRows = 2000;
  Database database = Make({{"T", {{"n", kLong}, {"text", kText, 50}}, {{.name = "n", .columns = {{"n"}}}}}});
  Table table = database.OpenTable("T");
  for (const bool by_index : {false, true}) {
    for (const bool in_statement : {false, true}) {
      std::vector<RowId> ids;
      for (std::int64_t n = 0; n < kRows; ++n) {
        ids.push_back(table.Insert(Row{n, "abcdefghij"sv}));
      }
      const auto walk = [&] {
        std::int64_t seen = 0;
        for (Cursor cursor = by_index ? table.Walk(0, {}) : table.Scan(); cursor.Next();) {
          const std::int64_t n = cursor.Integer(0);
          ASSERT_NE(n % 4, 2) << by_index << in_statement;
          seen += n >= 0 ? 1 : 0;
          if (n >= 0 && n % 4 == 0) {
            EXPECT_TRUE(table.Delete(cursor.Row()));
            EXPECT_TRUE(table.Delete(ids[static_cast<std::size_t>(n) + 2]));
            table.Insert(Row{-1, "abc"sv});
          }
        }
        EXPECT_EQ(seen, kRows * 3 / 4);
        for (Cursor cursor = table.Scan(); cursor.Next();) {
          EXPECT_TRUE(table.Delete(cursor.Row()));
        }
      };
      if (in_statement) {
        InOneStatement(database, walk);
      } else {
        walk();
      }
      EXPECT_EQ(RowsOf(table).size(), 0u);
      EXPECT_EQ(Health(database), "sound");
    }
  }
}

TEST_P(AccessTable, ConditionsMeanEquality) {
  const Database database =
      Make({{"T", {{"i16", kInteger}, {"u8", kByte}, {"d", kDouble}, {"b", kBoolean}, {"text", kText, 9}}}});
  Table table = database.OpenTable("T");
  for (int i = 0; i < 600; ++i) {
    table.Insert(Row{i % 3 == 0 ? Value() : Value(i - 300), i % 7, i % 5 / 2.0, i % 2 == 0, "x"sv});
  }
  const std::pair<std::vector<Equals>, int> cases[] = {
      {{{0, -299}}, 1},      {{{0, 0}}, 0},  // null, although its bytes are zero
      {{{0, 65536 + 1}}, 0}, {{{1, 3}}, 86}, {{{1, 3 + 256}}, 0}, {{{2, 1}}, 120}, {{{3, 1}, {1, 0}}, 43},
  };
  for (const auto& [conditions, expected] : cases) {
    int rows = 0;
    for (Cursor cursor = table.Scan(conditions); cursor.Next(); ++rows) {
    }
    EXPECT_EQ(rows, expected) << conditions[0].column << " = " << conditions[0].value;
  }
}

TEST_P(AccessTable, MapsGrowWithTheFile) {
  Database database = Make({{"T", {{"n", kLong}, {"a", kBinary, 255}}}, {"Big", {{"a", kOle}}}});
  Table table = database.OpenTable("T");
  Table big = database.OpenTable("Big");
  // A page a row: past what the table's map, then the file's map can hold in their rows.
  const std::vector<std::byte> content(IsJet3() ? 2000 : 4000, std::byte{7});
  const int rows = IsJet3() ? 17000 : 33000;
  const auto fill = [&](bool with_table) {
    InOneStatement(database, [&] {
      for (int i = 0; i < rows; ++i) {
        big.Insert(Row{Bytes(content)});
        if (with_table && i % 1000 == 0) {
          table.Insert(Row{i, Bytes(content).first(200)});
        }
      }
    });
    EXPECT_EQ(Health(database), "sound");
  };
  fill(true);
  EXPECT_EQ(table.RowCount(), IsJet3() ? 17u : 33u);
  const std::uintmax_t size = SizeOf(database);
  EXPECT_GT(size, IsJet3() ? 16384u * 2048 : 32768u * 4096);
  InOneStatement(database, [&] {
    for (Cursor cursor = big.Scan(); cursor.Next();) {
      big.Delete(cursor.Row());
    }
  });
  fill(false);
  EXPECT_EQ(SizeOf(database), size);
}

// Of a file that has almost as many pages as its format allows, most of them nobody's.
TEST_P(AccessTable, StopsAtTheLargestSize) {
  static_cast<void>(Make({{"T", {{"n", kLong}, {"text", kText, 255}}, {{.name = "n", .columns = {{"n"}}}}}}));
  const std::uintmax_t most = (IsJet3() ? 1ull : 2ull) << 30;
  fs::resize_file(file_, most - (IsJet3() ? 60 * 2048 : 60 * 4096));
  Database database = Reopen();
  Table table = database.OpenTable("T");
  const std::string text(250, 'x');
  const auto insert = [&](int count) {
    InOneStatement(database, [&] {
      for (int i = 0; i < count; ++i) {
        table.Insert(Row{i, std::string_view(text)});
      }
    });
  };
  std::size_t rows = 0;
  std::string error = ErrorOf([&] {
    for (; rows < 20'000; rows += 100) {
      insert(100);
    }
  });
  EXPECT_NE(error.find(IsJet3() ? "1 GiB" : "2 GiB"), std::string::npos) << error;
  const Rows before = RowsOf(table);
  EXPECT_EQ(before.size(), rows);
  EXPECT_NE(ErrorOf([&] { insert(1000); }), "no error");
  EXPECT_EQ(RowsOf(table), before);
  EXPECT_LE(SizeOf(database), most);

  for (auto row = before.begin(); row != std::next(before.begin(), 300); ++row) {
    EXPECT_TRUE(table.Delete(row->first));
  }
  insert(200);
  EXPECT_EQ(RowsOf(table).size(), rows - 100);
  // The pages that nobody has are no fault of the writer.
  for (const std::string& fault : database.FindFaults()) {
    ASSERT_NE(fault.find("used by nobody"), std::string::npos) << fault;
  }
}

TEST_P(AccessTable, WaitsForAccessToCloseTheFile) {
  static_cast<void>(Make({{"T", {{"n", kLong}}}}));
  const fs::path lock = folder_.Path() / "4star.ldb";
  Database database = Reopen();
  Table table = database.OpenTable("T");
  for (const std::size_t rows : {0u, 1u}) {
    std::unique_ptr<pager::DiskFile> held = pager::NativeFiles().Create(lock);
    held->Lock(pager::LockKind::kWriter, pager::LockMode::kExclusive, false);
    const auto change = [&] { rows == 0 ? static_cast<void>(table.Insert(Row{1})) : database.Flush(); };
    EXPECT_NE(ErrorOf(change).find("close it there"), std::string::npos);
    EXPECT_EQ(RowsOf(table).size(), rows);
    held.reset();
    change();
    EXPECT_FALSE(fs::exists(lock));
  }
}

TEST_P(AccessTable, TakesNamesWithoutAFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_.Path());
  const std::string error = ErrorOf([] {
    Database::Create("new.mdb", "", {{"T", {{"n", kLong}}}}).Flush();
    Database::Open("new.mdb", {}).OpenTable("T").Insert(Row{1});
  });
  fs::current_path(before);
  EXPECT_EQ(error, "no error");
  EXPECT_TRUE(fs::exists(folder_.Path() / "new.mdb"));
}

TEST_P(AccessTable, NeverCreatesOverAFile) {
  std::ofstream(file_) << "letters";
  EXPECT_NE(ErrorOf([&] { Make({}); }), "no error");
  EXPECT_EQ(fs::file_size(file_), 7u);
  fs::remove(file_);
  for (const std::vector<ColumnSchema>& columns :
       {std::vector<ColumnSchema>(), {{"a", kText, 256}}, {{"a", kLong}, {"A", kLong}}}) {
    EXPECT_NE(ErrorOf([&] { Make({{"T", columns}}); }), "no error") << columns.size();
  }
  EXPECT_NE(ErrorOf([&] { Database::Create(file_, "more than twenty characters", {}); }), "no error");
  EXPECT_TRUE(fs::is_empty(folder_.Path()));
}

INSTANTIATE_TEST_SUITE_P(Formats, AccessTable, testing::ValuesIn(kFormats), FormatName);

}  // namespace
}  // namespace marlevo::access
