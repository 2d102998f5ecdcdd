// Long random work on tables against a plain map of what must be in them, in both formats, also in files as other
// programs leave them. After every thousand turns the file is sound, and another reader of such files finds the same
// rows in it. MARLEVO_MODEL_TIMES makes the work so many times as long.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <numeric>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/access/database/database.h"
#include "platform/access/odd_index.h"
#include "platform/access/other_readers.h"
#include "platform/access/random_row.h"
#include "platform/access/table/loaded_table.h"

namespace marlevo::access {
namespace {

using enum ColumnType;
using namespace std::string_view_literals;
namespace fs = std::filesystem;

struct Scene {
  const char* name;
  const char* sample;  // of tests/data, or of other people's files; none: a new file of this kind
  NewFile kind;
  const char* table;
  const char* text;  // of the letters that the file can store
  int turns;
  int rows = 0;              // there before
  OddShape shape = nullptr;  // that the file gets before the work
};

void PrintTo(const Scene& scene, std::ostream* out) {
  *out << scene.name;
}

// What mdb-export prints for the table; nothing when it is not installed.
std::optional<std::string> MdbExport(const fs::path& file, const std::string& table) {
#ifdef _WIN32
  return std::nullopt;  // and Wine's shell does not say that it is not
#endif
  const fs::path out = file.parent_path() / "export.csv";
  std::ostringstream command;
  command << "MDB_JET3_CHARSET=CP950 mdb-export -T '%Y-%m-%d %H:%M:%S' " << file << " " << table << " > " << out;
  return std::system(command.str().c_str()) == 0 ? std::optional(ReadFile(out)) : std::nullopt;
}

// It has its own order of rows and its own way to print GUIDs, quotes what is no text, and prints nothing for empty
// texts, as for null.
std::string Comparable(const std::string& csv) {
  std::vector<std::string> lines;
  std::istringstream in(csv);
  for (std::string line; std::getline(in, line);) {
    std::erase(line, '"');
    if (line.size() > 37 && line.end()[-38] == '{') {
      line.erase(line.size() - 14, 1);
    }
    lines.push_back(line + '\n');
  }
  std::ranges::sort(lines);
  return std::accumulate(lines.begin(), lines.end(), std::string());
}

class AccessModel : public NewFileTest, public testing::WithParamInterface<Scene> {
 protected:
  void SetUp() override {
    if (GetParam().sample == nullptr) {
      const std::vector<ColumnSchema> plain{{"n", kLong},         {"yes", kBoolean}, {"text", kText, 60},
                                            {"u8", kByte},        {"memo", kMemo},   {"d", kDouble},
                                            {"more", kText, 255}, {"i16", kInteger}};
      const std::vector<ColumnSchema> keyed{{"a", kByte},         {"b", kByte},         {"n", kLong},
                                            {"yes", kBoolean},    {"text", kText, 30},  {"d", kDouble},
                                            {"i16", kInteger},    {"more", kText, 255}, {"day", kDateTime},
                                            {"money", kCurrency}, {"id", kGuid}};
      const std::vector<IndexSchema> indexes{{.name = "PrimaryKey", .columns = {{"n"}}, .primary_key = true},
                                             {.name = "ab", .columns = {{"a"}, {"b", true}}, .unique = true},
                                             {.name = "text", .columns = {{"text"}, {"yes"}}},
                                             {.name = "d", .columns = {{"d", true}}, .ignore_nulls = true},
                                             {.name = "day", .columns = {{"day"}, {"money", true}, {"yes", true}}},
                                             {.name = "id", .columns = {{"id", true}}, .unique = true},
                                             {.name = "more", .columns = {{"more", true}, {"i16"}}}};
      // Keys that differ at their end only, a few to a page.
      const std::vector<ColumnSchema> deep{{"same", kText, 255}, {"n", kLong}, {"text", kText, 60}};
      const IndexSchema deep_key{.name = "key", .columns = {{"same"}, {"n"}}, .primary_key = true};
      Make({{"Other", {{"n", kLong}}}, {"T", plain}, {"Keyed", keyed, indexes}, {"Deep", deep, {deep_key}}},
           GetParam().kind);
    } else {
      const char* others = std::getenv("MARLEVO_SAMPLES");
      const fs::path own = fs::path(TEST_DATA) / GetParam().sample;
      const fs::path sample = fs::exists(own)     ? own
                              : others != nullptr ? others / fs::path(GetParam().sample)
                                                  : fs::path();
      if (sample.empty()) {
        GTEST_SKIP() << kNoSamples;
      }
      fs::copy_file(sample, file_);
      fs::permissions(file_, fs::perms::owner_write, fs::perm_options::add);
    }
    Reopen();
    for (int i = 0; i < GetParam().rows; ++i) {
      InsertOne(0);
    }
    if (GetParam().shape != nullptr) {
      tables_.clear();
      database_.reset();
      GetParam().shape(file_, GetParam().table);
      Reopen();
    }
  }

  void Reopen() {
    tables_.clear();
    database_.reset();
    database_.emplace(NewFileTest::Reopen());
    for (const Database& connection : {*database_, NewFileTest::Reopen()}) {
      tables_.push_back(connection.OpenTable(GetParam().table));
    }
  }

  // As one of two connections sees it; in a statement as its own.
  Table& AnyTable() { return tables_[in_statement_ ? 0 : random_() % 2]; }

  // Nothing when the row was refused: longer than a page holds, a key that is taken or not known. `step`: whether the
  // number in the row's key is the next one up, or down; 0: any number.
  std::optional<RowId> InsertOne(int step) {
    const RandomRow random(AnyTable().Columns(), GetParam().text, true, random_);
    Row row = random.Values();
    const auto number = std::ranges::find(AnyTable().Columns(), "n", &Column::name) - AnyTable().Columns().begin();
    if (step != 0 && number < std::ssize(row)) {
      row[number] = step > 0 ? ++highest_ : --lowest_;
    }
    const std::string text = RowText(row);
    // The columns a and b are the first ones. Only when both are empty two rows may have the same.
    const std::string a_b = text.substr(0, text.find(' ', text.find(' ') + 1) + 1);
    const bool keyed = GetParam().table == "Keyed"sv;
    const bool taken = keyed && a_b != "- - " &&
                       std::ranges::any_of(model_, [&](const auto& other) { return other.second.starts_with(a_b); });
    try {
      const RowId id = AnyTable().Insert(row);
      EXPECT_FALSE(taken) << text;
      EXPECT_TRUE(model_.emplace(id, text).second);
      return id;
    } catch (const ValueError& error) {
      EXPECT_TRUE(error.Kind() != Fault::kDuplicate || taken || !keyed) << error.what();
      ++refused_;
      return std::nullopt;
    }
  }

  void Delete(RowId row) {
    EXPECT_EQ(model_.erase(row), 1u);
    EXPECT_TRUE(AnyTable().Delete(row));
    EXPECT_FALSE(AnyTable().Delete(row));
  }

  void DeleteOne() {
    if (!model_.empty()) {
      Delete(std::next(model_.begin(), static_cast<std::ptrdiff_t>(random_() % model_.size()))->first);
    }
  }

  // On all rows.
  Cursor AnyCursor() {
    const Table& table = AnyTable();
    const std::size_t index = random_() % (table.Indexes().size() + 1);
    const bool walks = index < table.Indexes().size() && table.Indexes()[index].complete;
    return walks ? table.Walk(index, {}) : table.Scan();
  }

  // From the end of the first index, so that its last pages go one by one.
  void CutOff(std::size_t count) {
    std::vector<RowId> rows;
    for (Cursor cursor = AnyTable().Indexes().empty() ? AnyTable().Scan() : AnyTable().Walk(0, {}); cursor.Next();) {
      rows.push_back(cursor.Row());
    }
    for (; count > 0 && !rows.empty(); --count, rows.pop_back()) {
      Delete(rows.back());
    }
  }

  // As another program may; whoever has the table open is told.
  void ChangeDesign() {
    Reopen();
    ChangeDefinition(file_, GetParam().table,
                     [](TableDefinition& table) { table.columns.back().flags ^= kColumnNullable; });
    for (Table& table : tables_) {
      EXPECT_THROW(table.Insert(Row(table.Columns().size())), AccessError);
      EXPECT_THROW(table.Scan(), AccessError);
    }
    Reopen();
  }

  // Deletes rows under a cursor, of four about so many, and as many others, whose room new rows take. The cursor shows
  // every row that stays, none that went, and may show the new ones.
  void ThinOut(std::size_t quarters) {
    std::set<RowId> seen;
    std::set<RowId> added;
    for (Cursor cursor = AnyCursor(); cursor.Next();) {
      const RowId row = cursor.Row();
      const Row cells = RowOf(cursor, AnyTable());
      const auto known = model_.find(row);
      ASSERT_TRUE(known != model_.end() && known->second == RowText(cells));
      EXPECT_TRUE(seen.insert(row).second || added.contains(row));
      if (random_() % 4 < quarters) {
        Delete(row);
        DeleteOne();
        if (const auto id = random_() % 2 == 0 ? InsertOne(0) : std::nullopt) {
          added.insert(*id);
        }
      }
    }
    EXPECT_TRUE(std::ranges::all_of(
        model_, [&](const auto& row) { return seen.contains(row.first) || added.contains(row.first); }));
  }

  // Inserts many rows, or deletes them under a cursor, as one statement, which may be given up.
  void Batch() {
    const Rows before = model_;
    Statement statement = database_->Begin();
    in_statement_ = true;
    EXPECT_THROW(NewFileTest::Reopen().Begin(), std::exception);
    if (const auto choice = random_() % 8; choice < 6) {
      for (int i = 0; i < 100; ++i) {
        InsertOne(static_cast<int>(choice % 3) - 1);
      }
    } else if (choice == 6) {
      ThinOut(1 + random_() % 3);
    } else {
      CutOff(random_() % 300);
    }
    if (random_() % 3 == 0) {
      model_ = before;
    } else {
      statement.Commit();
    }
    in_statement_ = false;
  }

  // Access judges by the count of different keys which index to use.
  void ExpectKeysCounted() {
    const auto file = OpenFile(file_);
    const auto table = LoadedTable::Open(file, FindTable(file, GetParam().table).page, "");
    const std::vector<RealIndex> counted =
        ParseDefinition(file->Layout(), file->CodecFor(0), table->Page(), ReadDefinitionPages(*file, table->Page()))
            .real_indexes;
    for (std::size_t i = 0; i < counted.size(); ++i) {
      std::set<std::string> keys;
      for (IndexWalk walk(table->Indexes()[i].Tree(), {}); walk.Next();) {
        keys.emplace(AsText(walk.Entry().first(walk.Entry().size() - kEntryRowSize)));
      }
      EXPECT_EQ(counted[i].keys, keys.size()) << table->Indexes()[i].Name();
    }
  }

  void ExpectSound() {
    database_->Flush();
    EXPECT_EQ(RowsOf(AnyTable()), model_);
    EXPECT_EQ(Health(*database_), "sound");
    if (GetParam().sample == nullptr) {
      ExpectKeysCounted();
    }
    if (const auto csv = MdbExport(file_, GetParam().table)) {
      EXPECT_EQ(Difference(Comparable(*csv), Comparable(CsvOf(AnyTable()))), "");
    } else {
      std::cout << "mdb-export did not run: the file was not read by another program\n";
    }
  }

  std::optional<Database> database_;
  std::vector<Table> tables_;
  bool in_statement_ = false;
  std::mt19937 random_{7};
  Rows model_;
  std::size_t refused_ = 0;
  std::int64_t highest_ = 1'000'000'000;
  std::int64_t lowest_ = highest_;
};

TEST_P(AccessModel, HoldsWhatWasPutIn) {
  model_ = RowsOf(AnyTable());
  const char* times = std::getenv("MARLEVO_MODEL_TIMES");
  const int turns = GetParam().turns * (times != nullptr ? std::atoi(times) : 1);
  for (int turn = 1; turn <= turns && !HasFailure(); ++turn) {
    const auto choice = random_() % 1000;
    if (choice < 580) {
      InsertOne(0);
    } else if (choice < 960) {
      DeleteOne();
    } else if (choice < 980) {
      Batch();
    } else if (choice < 982) {
      ThinOut(1);
    } else if (choice < 986) {
      Reopen();
    } else if (choice < 990) {
      database_->Flush();
    } else {
      ASSERT_EQ(RowsOf(AnyTable()), model_) << "turn " << turn;
      ASSERT_EQ(AnyTable().RowCount(), model_.size());
    }
    if (turn % 1000 == 0) {
      if (GetParam().sample == nullptr) {
        ChangeDesign();
      }
      Reopen();
      ExpectSound();
    }
  }
  std::cout << turns << " turns, " << model_.size() << " rows at the end, " << refused_ << " refused\n";
}

INSTANTIATE_TEST_SUITE_P(
    Scenes, AccessModel,
    testing::Values(Scene{"Jet4", nullptr, kFormats[0], "T", "é客", 9000},
                    Scene{"Jet3", nullptr, kFormats[1], "T", "客", 8000},
                    Scene{"Jet4Keyed", nullptr, kFormats[0], "Keyed", "é客-", 6000},
                    Scene{"Jet3Keyed", nullptr, kFormats[1], "Keyed", "A-b", 5000},
                    Scene{"Jet4Encoded", nullptr, {4, 1252, 0x1234ABCD}, "Keyed", "客", 3000},
                    Scene{"Jet3Encoded", nullptr, {3, 950, 0x1234ABCD}, "Keyed", "b", 3000},
                    Scene{"Jet4Deep", nullptr, kFormats[0], "Deep", "x", 6000, 2000},
                    Scene{"Jet3Deep", nullptr, kFormats[1], "Deep", "x", 6000, 2000},
                    Scene{"Jet4Lost", nullptr, kFormats[0], "Deep", "x", 2000, 400, LoseLastLeaves},
                    Scene{"Jet3Lost", nullptr, kFormats[1], "Deep", "x", 2000, 4, LoseLastLeaves},
                    Scene{"Jet4Empty", nullptr, kFormats[0], "Deep", "x", 2000, 400, AddEmptyLeaf},
                    Scene{"Jet3Empty", nullptr, kFormats[1], "Deep", "x", 2000, 400, AddEmptyLeaf},
                    Scene{"Jet4Short", nullptr, kFormats[0], "Deep", "x", 3000, 400, ShortenLeaves},
                    Scene{"Jet3Short", nullptr, kFormats[1], "Deep", "x", 3000, 400, ShortenLeaves},
                    Scene{"Jet4Map", nullptr, kFormats[0], "T", "x", 2000, 400, CallUsedPagesFree},
                    Scene{"Jet3Map", nullptr, kFormats[1], "Deep", "x", 2000, 400, CallUsedPagesFree},
                    Scene{"Jet4Moved", "indexed-jet4.mdb", {}, "CUSTOM_H", "客", 6000},
                    Scene{"Jet4Big", "indexed-jet4.mdb", {}, "CUSTOM_D", "戶", 3000},
                    Scene{"Jet3Sample", "indexed-jet3.mdb", {}, "CUSTOM_H", "客", 6000},
                    Scene{"Jet3Big", "indexed-jet3.mdb", {}, "CUSTOM_D", "A-b", 4000},
                    Scene{"Jet3Long", "long-rows-jet3.mdb", {}, "J", "x", 3000},
                    Scene{"Jet4Numeric", "fixedNumericTestV2000.mdb", {}, "test", "x", 3000},
                    Scene{"Jet3Foreign", "overflowTestV1997.mdb", {}, "Table1", "x", 2000},
                    Scene{"Jet4Foreign", "overflowTestV2000.mdb", {}, "Table1", "x", 2000}),
    [](const testing::TestParamInfo<Scene>& scene) { return std::string(scene.param.name); });

}  // namespace
}  // namespace marlevo::access
