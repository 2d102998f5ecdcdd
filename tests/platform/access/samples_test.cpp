// Databases written by Access itself and by other programs, against dumps of their tables by an independent reader. The
// folder is named by the environment variable MARLEVO_SAMPLES: FILE.mdb beside csv/FILE/TABLE.csv.

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/database.h"

namespace marlevo::access {
namespace {

namespace fs = std::filesystem;

struct CsvCell {
  std::string text;
  bool quoted = false;
};
using CsvRow = std::vector<CsvCell>;

std::vector<CsvRow> ParseCsv(const std::string& csv) {
  std::vector<CsvRow> rows;
  CsvRow row;
  CsvCell cell;
  for (std::size_t i = 0; i < csv.size(); ++i) {
    if (csv[i] == '"') {
      cell.quoted = true;
      for (++i; csv[i] != '"' || csv[i + 1] == '"'; ++i) {
        cell.text += csv[i];
        i += csv[i] == '"' ? 1 : 0;
      }
    } else if (csv[i] == ',' || csv[i] == '\n') {
      row.push_back(std::exchange(cell, {}));
      if (csv[i] == '\n') {
        rows.push_back(std::exchange(row, {}));
      }
    } else {
      cell.text += csv[i];
    }
  }
  return rows;
}

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream content;
  content << file.rdbuf();
  return content.str();
}

std::string HexText(Bytes bytes) {
  std::string text = "0x";
  for (const std::byte byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", std::to_integer<unsigned>(byte));
    text += digits;
  }
  return text;
}

// What the dump should say for a cell; numbers in the dump's own words when they are the same number.
CsvCell Expected(Cursor& cursor, const Column& column, std::size_t i, const CsvCell& dumped) {
  if (cursor.IsNull(i)) {
    return {};
  }
  switch (column.type) {
    case ColumnType::kText:
    case ColumnType::kMemo:
    case ColumnType::kGuid:
      return {std::string(cursor.Text(i)), true};
    case ColumnType::kDateTime:
      return {DateText(cursor.Real(i)), false};
    case ColumnType::kBinary:
    case ColumnType::kOle:
      return {HexText(cursor.Raw(i)), false};
    default: {
      double number = 0;
      std::from_chars(dumped.text.data(), dumped.text.data() + dumped.text.size(), number);
      const double own = cursor.Real(i);
      const bool same =
          column.type == ColumnType::kSingle ? static_cast<float>(number) == static_cast<float>(own) : number == own;
      return {same && !dumped.text.empty() ? dumped.text : std::to_string(own), false};
    }
  }
}

// Differences between table and dump, the first few.
std::string Compare(const Table& table, const std::vector<CsvRow>& dump) {
  std::string differences;
  Cursor cursor = table.Scan();
  std::size_t row = 1;
  for (; cursor.Next(); ++row) {
    for (std::size_t i = 0; row < dump.size() && i < table.Columns().size(); ++i) {
      const CsvCell& dumped = dump[row].at(i);
      const CsvCell own = Expected(cursor, table.Columns()[i], i, dumped);
      if ((own.text != dumped.text || own.quoted != dumped.quoted) && differences.size() < 2000) {
        differences += "row " + std::to_string(row) + " " + table.Columns()[i].name + ": " + own.text.substr(0, 200) +
                       " / " + dumped.text.substr(0, 200) + "\n";
      }
    }
  }
  if (row != dump.size()) {
    differences += std::to_string(row - 1) + " rows instead of " + std::to_string(dump.size() - 1) + "\n";
  }
  return differences;
}

OpenOptions OptionsFor(const std::string& file) {
  OpenOptions options;
  if (file == "V2000_with-password") {
    options.password = "password";
  } else if (file.starts_with("own-") || file.starts_with("mk-")) {
    options.password = "qorvat";
  } else if (file == "uc_charsetGBK") {
    options.code_page = 936;  // its own label says 1252
  }
  return options;
}

class Samples : public testing::Test {
 protected:
  void SetUp() override {
    const char* folder = std::getenv("MARLEVO_SAMPLES");
    if (folder == nullptr) {
      GTEST_SKIP() << kNoSamples;
    }
    folder_ = folder;
  }

  fs::path folder_;
};

TEST_F(Samples, EveryTableReadsAsDumped) {
  std::size_t files = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
    if (entry.path().extension() != ".mdb") {
      continue;
    }
    ++files;
    const std::string name = entry.path().stem().string();
    SCOPED_TRACE(name);
    const Database database = Database::Open(entry.path(), OptionsFor(name));
    EXPECT_EQ(Health(database), "sound");
    std::vector<std::string> dumped;
    const fs::path dumps = folder_ / "csv" / name;
    if (fs::exists(dumps)) {
      for (const fs::directory_entry& dump : fs::directory_iterator(dumps)) {
        dumped.push_back(dump.path().stem().string());
      }
    }
    std::vector<std::string> tables = database.Tables();
    std::ranges::sort(tables);
    std::ranges::sort(dumped);
    ASSERT_EQ(tables, dumped);
    for (const std::string& table_name : tables) {
      const std::vector<CsvRow> dump = ParseCsv(ReadFile(dumps / (table_name + ".csv")));
      const Table table = database.OpenTable(table_name);
      ASSERT_EQ(table.Columns().size(), dump[0].size()) << table_name;
      for (std::size_t i = 0; i < dump[0].size(); ++i) {
        EXPECT_EQ(table.Columns()[i].name, dump[0][i].text);
      }
      EXPECT_EQ(Compare(table, dump), "") << table_name;
      EXPECT_EQ(table.RowCount(), dump.size() - 1) << table_name;
      std::cout << name << " " << table_name << ": " << dump.size() - 1 << " rows\n";
    }
  }
  EXPECT_GE(files, 20u);
}

}  // namespace
}  // namespace marlevo::access
