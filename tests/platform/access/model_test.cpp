// Long random work on tables against a plain map of what must be in them, in both formats; another reader of such files
// has the last word.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "platform/access/database.h"
#include "platform/access/other_readers.h"

namespace marlevo::access {
namespace {

using enum ColumnType;
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
      row_.push_back(random() % 6 == 0 && column.type != kBoolean ? Value() : Make(column, letters));
    }
  }

  const Row& Values() const { return row_; }

 private:
  std::int64_t Number(std::int64_t below) {
    return static_cast<std::int64_t>(random_() % static_cast<std::uint64_t>(below));
  }

  std::string_view Text(const std::string& letters, std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
      text += random_() % 8 == 0 ? letters : std::string(1, static_cast<char>('a' + random_() % 26));
    }
    return texts_.emplace_back(text);
  }

  Value Make(const Column& column, const std::string& letters) {
    // A letter takes up to three bytes of the column, so that a third of the length always fits.
    const auto length = static_cast<std::int64_t>(column.length / 3 + 1);
    switch (column.type) {
      case kBoolean:
        return random_() % 2 == 0;
      case kByte:
        return Number(256);
      case kInteger:
        return Number(0x10000) - 0x8000;
      case kLong:
        return static_cast<std::int64_t>(static_cast<std::int32_t>(random_()));
      case kText:
        return Text(letters, static_cast<std::size_t>(Number(length)));
      case kMemo:
        return Text(letters, static_cast<std::size_t>(random_() % 4 == 0 ? Number(12000) : Number(90)));
      case kDateTime:
        return 30000 + static_cast<double>(Number(40)) / 4;
      case kGuid: {
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
  Row row_;
};

// What mdb-export prints for the table; nothing when it is not installed.
std::optional<Lines> MdbExport(const fs::path& file, const std::string& name, const Table& table) {
#ifdef _WIN32
  return std::nullopt;  // and Wine's shell does not say that it is not
#endif
  const fs::path out = file.parent_path() / "export.csv";
  std::ostringstream command;
  command << "MDB_JET3_CHARSET=CP950 mdb-export -T '%Y-%m-%d %H:%M:%S' " << file << " " << name << " > " << out;
  if (std::system(command.str().c_str()) != 0) {
    return std::nullopt;
  }
  Lines lines = LinesOf(ReadFile(out), table.Columns());
  for (std::string& line : lines) {
    if (line.ends_with("}\n")) {
      line.insert(line.size() - 14, 1, '-');  // its own way to print GUIDs
    }
  }
  return lines;
}

// It has its own order of rows, quotes what is no text, and prints nothing for empty texts, as for null.
Lines Comparable(Lines lines) {
  for (std::string& line : lines) {
    std::erase(line, '"');
  }
  std::ranges::sort(lines);
  return lines;
}

class AccessModel : public NewFileTest, public testing::WithParamInterface<Scene> {
 protected:
  void SetUp() override {
    if (GetParam().sample == nullptr) {
      const std::vector<ColumnSchema> plain{{"n", kLong},         {"yes", kBoolean}, {"text", kText, 60},
                                            {"u8", kByte},        {"memo", kMemo},   {"d", kDouble},
                                            {"more", kText, 255}, {"i16", kInteger}};
      const std::vector<ColumnSchema> keyed{{"n", kLong},       {"yes", kBoolean},    {"text", kText, 30},
                                            {"d", kDouble},     {"i16", kInteger},    {"more", kText, 255},
                                            {"day", kDateTime}, {"money", kCurrency}, {"id", kGuid}};
      const std::vector<IndexSchema> indexes{{.name = "PrimaryKey", .columns = {{"n"}}, .primary_key = true},
                                             {.name = "u", .columns = {{"text"}, {"yes"}}, .unique = true},
                                             {.name = "d", .columns = {{"d", true}}, .ignore_nulls = true},
                                             {.name = "day", .columns = {{"day"}, {"money", true}, {"yes", true}}},
                                             {.name = "id", .columns = {{"id", true}}, .unique = true},
                                             {.name = "more", .columns = {{"more", true}, {"i16"}}}};
      Make({{"Other", {{"n", kLong}}}, {"T", plain}, {"Keyed", keyed, indexes}}, GetParam().kind);
    } else if (file_ = CopyOfSample(GetParam().sample, folder_.Path()); file_.empty()) {
      GTEST_SKIP() << kNoSamples;
    }
    Reopen();
  }

  void Reopen() {
    table_.reset();
    database_.reset();
    database_.emplace(NewFileTest::Reopen());
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
  if (const auto lines = MdbExport(file_, GetParam().table, *table_)) {
    EXPECT_EQ(Difference(Comparable(*lines), Comparable(LinesOf(*table_))), "");
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
