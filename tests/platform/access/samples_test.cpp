// Databases written by Access itself and by other programs, against dumps of their tables by an independent reader. The
// folder is named by the environment variable MARLEVO_SAMPLES: FILE.mdb beside csv/FILE/TABLE.csv.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/access/database/database.h"
#include "platform/access/other_readers.h"

namespace marlevo::access {
namespace {

namespace fs = std::filesystem;

OpenOptions OptionsFor(const std::string& file) {
  OpenOptions options;
  if (file == "V2000_with-password") {
    options.password = "password";
  } else if (file.starts_with("own-") || file.starts_with("mk-")) {
    options.password = kPassword;
  } else if (file == "uc_charsetGBK") {
    options.code_page = 936;  // its own label says 1252
  }
  return options;
}

// Without the ".0" of whole numbers, which only the other reader prints.
std::string Comparable(std::string csv) {
  for (std::size_t at = 0; (at = csv.find(".0,", at)) != std::string::npos;) {
    csv.erase(at, 2);
  }
  return csv;
}

TEST(Samples, EveryTableReadsAsDumped) {
  const char* samples = std::getenv("MARLEVO_SAMPLES");
  if (samples == nullptr) {
    GTEST_SKIP() << kNoSamples;
  }
  const fs::path folder = samples;
  std::size_t files = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() != ".mdb") {
      continue;
    }
    ++files;
    const std::string name = entry.path().stem().string();
    SCOPED_TRACE(name);
    const Database database = Database::Open(entry.path(), OptionsFor(name));
    EXPECT_EQ(Health(database), "sound");
    const fs::path dumps = folder / "csv" / name;
    const std::vector<std::string> tables = database.Tables();
    const auto dumped = fs::exists(dumps) ? std::distance(fs::directory_iterator(dumps), {}) : 0;
    EXPECT_EQ(std::ssize(tables), dumped);
    for (const std::string& table_name : tables) {
      const Table table = database.OpenTable(table_name);
      const std::string dump = ReadFile(dumps / (table_name + ".csv"));
      EXPECT_EQ(Difference(Comparable(dump), Comparable(CsvOf(table))), "") << table_name;
      EXPECT_EQ(table.RowCount(), RowsOf(table).size()) << table_name;
      std::cout << name << " " << table_name << ": " << table.RowCount() << " rows\n";
    }
  }
  EXPECT_GE(files, 20u);
}

}  // namespace
}  // namespace marlevo::access
