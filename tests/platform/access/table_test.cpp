// Tables of files that the engine has made: values, refusals, growth and reuse of space, creation, code pages.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <tuple>
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

TEST_P(AccessTable, MapsGrowWithTheFileAndFreedPagesAreUsedAgain) {
  const ColumnSchema bytes{"a", kBinary, 255};
  Database database = Make({{"T", {{"n", kLong}, bytes, {"memo", kMemo}}}, {"Big", {{"a", kOle}}}, {"Other", {bytes}}});
  Table table = database.OpenTable("T");
  Table big = database.OpenTable("Big");
  // A page a row: past what the table's map, then the file's map can hold in their rows.
  const std::vector<std::byte> content(IsJet3() ? 2000 : 4000, std::byte{7});
  const int rows = IsJet3() ? 17000 : 33000;
  const std::string memo(500, 'm');
  std::uintmax_t size = 0;
  for (int turn = 0; turn < 2; ++turn) {
    InOneStatement(database, [&] {
      for (int i = 0; i < rows; ++i) {
        big.Insert(Row{Bytes(content)});
        if (i % 10 == 0) {
          const Value text = i % 50 == 0 ? Value(std::string_view(memo)) : Value();
          table.Insert(Row{i, Bytes(content).first(static_cast<std::size_t>(i) % 200), text});
        }
      }
    });
    EXPECT_EQ(Health(database), "sound");
    EXPECT_EQ(table.RowCount(), rows / 10u);
    size = turn == 0 ? SizeOf(database) : size;
    ASSERT_EQ(SizeOf(database), size) << "turn " << turn;
    InOneStatement(database, [&] {
      // All of them, but in another order each time.
      for (int rest = 0; rest < 3; ++rest) {
        for (Cursor cursor = table.Scan(); cursor.Next();) {
          EXPECT_TRUE((rest < 2 && cursor.Integer(0) % 3 != (turn + rest) % 3) || table.Delete(cursor.Row()));
        }
      }
      for (Cursor cursor = big.Scan(); turn == 0 && cursor.Next();) {
        big.Delete(cursor.Row());
      }
    });
  }
  EXPECT_GT(size, IsJet3() ? 16384u * 2048 : 32768u * 4096);
  Table other = database.OpenTable("Other");
  for (int i = 0; i < 200; ++i) {
    other.Insert(Row{Bytes(content).first(200)});
  }
  EXPECT_EQ(SizeOf(database), size);
  EXPECT_EQ(Health(database), "sound");
}

TEST_P(AccessTable, FillsTheGapsThatDeletedRowsLeave) {
  Database database = Make({{"T", {{"n", kLong}, {"text", kText, 100}}}});
  Table table = database.OpenTable("T");
  const std::string text(100, 'x');
  const auto insert = [&](int count) {
    for (int i = 0; i < count; ++i) {
      table.Insert(Row{i, std::string_view(text)});
    }
  };
  insert(1000);
  const std::uintmax_t size = SizeOf(database);
  for (Cursor cursor = table.Scan(); cursor.Next();) {
    EXPECT_TRUE(cursor.Integer(0) % 2 == 0 || table.Delete(cursor.Row()));
  }
  insert(450);
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

TEST_P(AccessTable, IsCreatedInTheCurrentFolderAndNeverOverAFile) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_.Path());
  const std::string error = ErrorOf([&] {
    Database::Create("4star.mdb", "", {{"T", {{"n", kLong}}}}).Flush();
    Database::Open("4star.mdb", {}).OpenTable("T").Insert(Row{1});
  });
  fs::current_path(before);
  EXPECT_EQ(error, "no error");
  const std::string content = ReadFile(file_);
  EXPECT_NE(ErrorOf([&] { Make({}); }), "no error");
  EXPECT_EQ(ReadFile(file_), content);
  fs::remove(file_);
  for (const auto& columns : {std::vector<ColumnSchema>(), {{"a", kText, 256}}, {{"a", kLong}, {"A", kLong}}}) {
    EXPECT_NE(ErrorOf([&] { Make({{"T", columns}}); }), "no error") << columns.size();
  }
  EXPECT_NE(ErrorOf([&] { Database::Create(file_, "more than twenty characters", {}); }), "no error");
  EXPECT_TRUE(fs::is_empty(folder_.Path()));
}

INSTANTIATE_TEST_SUITE_P(Formats, AccessTable, testing::ValuesIn(kFormats), FormatName);

using CodePageGuess = NewFileTest;

// A Jet 3 file of Chinese texts whose labels say Western. Without any evidence Chinese can be added.
TEST_F(CodePageGuess, KnowsChineseUnderTheWesternLabel) {
  using Texts = std::vector<std::string>;
  const auto open = [&](std::optional<int> code_page) {
    return Database::Open(file_, {.password = kPassword, .code_page = code_page}).OpenTable("T");
  };
  const std::tuple<std::string_view, std::optional<int>, Texts> cases[] = {
      {"¤ý¤p©ú", {}, {"'王小明'", "'陳'"}},  // the Western letters of the bytes that are a Chinese name
      {"¤ý¤p©ú", 1252, {"'¤ý¤p©ú'"}},
      {"Café", {}, {"'Café'"}},
      {"Smith", {}, {"'Smith'", "'陳'"}}};
  for (const auto& [name, code_page, texts] : cases) {
    fs::remove(file_);
    Make({{"T", {{"name", kText, 20}}}}, {.version = 3, .code_page = 1252}).OpenTable("T").Insert(Row{name});
    if (texts.size() == 2) {
      open(code_page).Insert(Row{"陳"sv});
    }
    EXPECT_EQ(TextsOf(open(code_page)), texts);
  }
}

}  // namespace
}  // namespace marlevo::access
