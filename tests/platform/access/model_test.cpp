// Long random work on tables against a plain map of what must be in them, in both formats; another reader of such files
// has the last word.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/database.h"
#include "support/scratch_folder.h"

namespace marlevo::access {
namespace {

namespace fs = std::filesystem;

struct Scene {
  const char* name;
  const char* sample;  // none: a new file of this kind
  NewFile kind;
  const char* table;
  const char* text;  // of the letters that the file can store
  int turns;
};

void PrintTo(const Scene& scene, std::ostream* out) {
  *out << scene.name;
}

// One row of values that lives as long as this.
class RandomRow {
 public:
  RandomRow(const std::vector<Column>& columns, const std::string& letters, std::mt19937& random) : random_(random) {
    texts_.reserve(columns.size());
    for (const Column& column : columns) {
      row_.push_back(random() % 6 == 0 && column.type != ColumnType::kBoolean ? Value() : Make(column, letters));
    }
  }

  const std::vector<Value>& Values() const { return row_; }

 private:
  std::int64_t Number(std::int64_t below) {
    return static_cast<std::int64_t>(random_() % static_cast<std::uint64_t>(below));
  }

  std::string_view Text(const std::string& letters, std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
      if (random_() % 8 == 0) {
        text += letters;
      } else {
        text += static_cast<char>('a' + random_() % 26);
      }
    }
    return texts_.emplace_back(text);
  }

  Value Make(const Column& column, const std::string& letters) {
    // A letter takes up to three bytes of the column, so that a third of the length always fits.
    const auto length = static_cast<std::int64_t>(column.length / 3 + 1);
    switch (column.type) {
      case ColumnType::kBoolean:
        return random_() % 2 == 0;
      case ColumnType::kByte:
        return Number(256);
      case ColumnType::kInteger:
        return Number(0x10000) - 0x8000;
      case ColumnType::kLong:
        return static_cast<std::int64_t>(static_cast<std::int32_t>(random_()));
      case ColumnType::kText:
        return Text(letters, static_cast<std::size_t>(Number(length)));
      case ColumnType::kMemo:
        return Text(letters, static_cast<std::size_t>(random_() % 4 == 0 ? Number(12000) : Number(90)));
      case ColumnType::kDateTime:
        return 30000 + static_cast<double>(Number(40)) / 4;
      case ColumnType::kGuid: {
        char id[40];
        std::snprintf(id, sizeof id, "{%08X-0000-1111-2222-%012X}", static_cast<unsigned>(random_()),
                      static_cast<unsigned>(random_()));
        return std::string_view(texts_.emplace_back(id));
      }
      default:
        return static_cast<double>(Number(2000) - 1000) / 2;
    }
  }

  std::mt19937& random_;
  std::vector<std::string> texts_;
  std::vector<Value> row_;
};

// The lines that mdb-export prints for the rows of the table; nothing when it is not installed.
std::optional<std::multiset<std::string>> MdbExport(const fs::path& file, const std::string& table) {
#ifdef _WIN32
  return std::nullopt;  // and Wine's shell does not say that it is not
#endif
  const fs::path out = file.parent_path() / "export.csv";
  std::ostringstream command;
  command << "MDB_JET3_CHARSET=CP950 mdb-export -H -T '%Y-%m-%d %H:%M:%S' " << file << " " << table << " > " << out;
  if (std::system(command.str().c_str()) != 0) {
    return std::nullopt;
  }
  std::ifstream in(out);
  std::multiset<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    lines.insert(line);
  }
  return lines;
}

// The same, made of what the engine reads. It prints nothing for empty texts, as for null.
std::multiset<std::string> CsvOf(const Table& table) {
  std::multiset<std::string> lines;
  for (Cursor cursor = table.Scan(); cursor.Next();) {
    std::string line;
    for (std::size_t i = 0; i < table.Columns().size(); ++i) {
      const Value value = cursor.Cell(i);
      line += i == 0 ? "" : ",";
      if (const auto* text = std::get_if<std::string_view>(&value)) {
        std::string shown(*text);
        if (table.Columns()[i].type == ColumnType::kGuid) {
          shown.erase(24, 1);  // its own way to print them
        }
        line += shown.empty() ? "" : '"' + shown + '"';
      } else if (const auto* boolean = std::get_if<bool>(&value)) {
        line += *boolean ? "1" : "0";
      } else if (const auto* real = std::get_if<double>(&value);
                 real != nullptr && table.Columns()[i].type == ColumnType::kDateTime) {
        line += '"' + DateText(*real) + '"';
      } else if (real != nullptr && table.Columns()[i].type == ColumnType::kCurrency) {
        char money[40];
        std::snprintf(money, sizeof money, "%.4f", *real);
        line += money;
      } else if (value.index() != 0) {
        line += CellText(value);
      }
    }
    lines.insert(line);
  }
  return lines;
}

class AccessModel : public testing::TestWithParam<Scene> {
 protected:
  void SetUp() override {
    if (GetParam().sample == nullptr) {
      file_ = folder_.Path() / "new.mdb";
      static_cast<void>(Database::Create(file_, "qorvat",
                                         {{"Other", {{"n", ColumnType::kLong}}},
                                          {"T",
                                           {{"n", ColumnType::kLong},
                                            {"yes", ColumnType::kBoolean},
                                            {"text", ColumnType::kText, 60},
                                            {"u8", ColumnType::kByte},
                                            {"memo", ColumnType::kMemo},
                                            {"d", ColumnType::kDouble},
                                            {"more", ColumnType::kText, 255},
                                            {"i16", ColumnType::kInteger}}},
                                          {"Keyed",
                                           {{"n", ColumnType::kLong},
                                            {"yes", ColumnType::kBoolean},
                                            {"text", ColumnType::kText, 30},
                                            {"d", ColumnType::kDouble},
                                            {"i16", ColumnType::kInteger},
                                            {"more", ColumnType::kText, 255},
                                            {"day", ColumnType::kDateTime},
                                            {"money", ColumnType::kCurrency},
                                            {"id", ColumnType::kGuid}},
                                           {{.name = "PrimaryKey", .columns = {{"n"}}, .primary_key = true},
                                            {.name = "u", .columns = {{"text"}, {"yes"}}, .unique = true},
                                            {.name = "d", .columns = {{"d", true}}, .ignore_nulls = true},
                                            {.name = "day", .columns = {{"day"}, {"money", true}, {"yes", true}}},
                                            {.name = "id", .columns = {{"id", true}}, .unique = true},
                                            {.name = "more", .columns = {{"more", true}, {"i16"}}}}}},
                                         pager::NativeFiles(), GetParam().kind));
    } else if (file_ = CopyOfSample(GetParam().sample, folder_.Path()); file_.empty()) {
      GTEST_SKIP() << kNoSamples;
    }
    Reopen();
  }

  void Reopen() {
    table_.reset();
    database_.reset();
    database_.emplace(Database::Open(file_, {.password = "qorvat", .code_page = {}}));
    table_.emplace(database_->OpenTable(GetParam().table));
  }

  void InsertOne() {
    const RandomRow row(table_->Columns(), GetParam().text, random_);
    RowId id{};
    try {
      id = table_->Insert(row.Values());
    } catch (const ValueError&) {
      ++refused_;  // longer than a page holds, a key that is taken or not known
      return;
    }
    EXPECT_TRUE(model_.emplace(id, RowText(row.Values())).second);
  }

  void DeleteOne() {
    if (!model_.empty()) {
      const auto victim = std::next(model_.begin(), static_cast<std::ptrdiff_t>(random_() % model_.size()));
      const RowId id = victim->first;
      model_.erase(victim);
      EXPECT_TRUE(table_->Delete(id));
      EXPECT_FALSE(table_->Delete(id));
    }
  }

  // Inserts or deletes many rows as one statement, which may be given up.
  void Batch() {
    const Rows before = model_;
    Statement statement(*database_);
    if (random_() % 4 != 0) {
      for (int i = 0; i < 100; ++i) {
        InsertOne();
      }
    } else {
      const auto kept = 1 + random_() % 3;
      for (Cursor cursor = table_->Scan(); cursor.Next();) {
        if (random_() % 4 >= kept) {
          model_.erase(cursor.Row());
          EXPECT_TRUE(table_->Delete(cursor.Row()));
        }
      }
    }
    if (random_() % 3 == 0) {
      model_ = before;
    } else {
      statement.Commit();
    }
  }

  testing_support::ScratchFolder folder_;
  fs::path file_;
  std::optional<Database> database_;
  std::optional<Table> table_;
  std::mt19937 random_{7};
  Rows model_;
  std::size_t refused_ = 0;
};

TEST_P(AccessModel, HoldsWhatWasPutIn) {
  model_ = RowsOf(*table_);
  ASSERT_EQ(table_->WriteRefusal(), "");
  for (int turn = 0; turn < GetParam().turns; ++turn) {
    const auto choice = random_() % 1000;
    if (choice < 580) {
      InsertOne();
    } else if (choice < 960) {
      DeleteOne();
    } else if (choice < 980) {
      Batch();
    } else if (choice < 984) {
      Reopen();
    } else if (choice < 988) {
      database_->Flush();
    } else {
      ASSERT_EQ(RowsOf(*table_), model_) << "turn " << turn;
      ASSERT_EQ(table_->RowCount(), model_.size());
    }
  }
  Reopen();
  EXPECT_EQ(RowsOf(*table_), model_);
  EXPECT_EQ(Health(*database_), "sound");
  std::cout << model_.size() << " rows at the end, " << refused_ << " refused\n";

  database_->Flush();
  if (const auto lines = MdbExport(file_, GetParam().table)) {
    const std::multiset<std::string> own = CsvOf(*table_);
    const auto [theirs, ours] = std::ranges::mismatch(*lines, own);
    EXPECT_TRUE(theirs == lines->end() && ours == own.end())
        << "mdb-export: " << (theirs == lines->end() ? "" : *theirs)
        << "\nthe engine: " << (ours == own.end() ? "" : *ours);
  } else {
    std::cout << "mdb-export did not run: the file was not read by another program\n";
  }
}

INSTANTIATE_TEST_SUITE_P(Scenes, AccessModel,
                         testing::Values(Scene{"Jet4", nullptr, kFormats[0], "T", "é客", 12000},
                                         Scene{"Jet3", nullptr, kFormats[1], "T", "客", 9000},
                                         Scene{"Jet4Keyed", nullptr, kFormats[0], "Keyed", "é客-", 6000},
                                         Scene{"Jet3Keyed", nullptr, kFormats[1], "Keyed", "A-b", 5000},
                                         Scene{"Jet4Encoded", nullptr, {4, 1252, 0x1234ABCD}, "Keyed", "客", 3000},
                                         Scene{"Jet3Encoded", nullptr, {3, 950, 0x1234ABCD}, "Keyed", "b", 3000},
                                         Scene{"Jet4Moved", "own-filled-jet4.mdb", {}, "CUSTOM_H", "客", 6000},
                                         Scene{"Jet4Big", "own-filled-jet4.mdb", {}, "CUSTOM_D", "戶", 3000},
                                         Scene{"Jet4KeyedMoved", "own-indexed-jet4.mdb", {}, "CUSTOM_H", "客", 6000},
                                         Scene{"Jet4KeyedBig", "own-indexed-jet4.mdb", {}, "CUSTOM_D", "戶", 3000},
                                         Scene{"Jet3KeyedSample", "mk-jet3-indexed.mdb", {}, "CUSTOM_H", "客", 6000},
                                         Scene{"Jet3KeyedBig", "mk-jet3-indexed.mdb", {}, "CUSTOM_D", "A-b", 4000},
                                         Scene{"Jet3Long", "mk-jet3-jump.mdb", {}, "J", "x", 3000}),
                         [](const testing::TestParamInfo<Scene>& scene) { return std::string(scene.param.name); });

}  // namespace
}  // namespace marlevo::access
