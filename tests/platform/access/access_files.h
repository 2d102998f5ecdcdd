// What the tests of the Access file engine share: rows as short texts, files to work on.
#pragma once

#include <gtest/gtest.h>

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "platform/access/cell_of.h"
#include "platform/access/database/database.h"
#include "support/scratch_folder.h"

namespace marlevo::access {

using Row = std::vector<Value>;

inline std::string HexText(Bytes bytes) {
  std::string text;
  for (const std::byte byte : bytes) {
    for (const unsigned digit : {std::to_integer<unsigned>(byte) >> 4, std::to_integer<unsigned>(byte) & 15}) {
      text += "0123456789abcdef"[digit];
    }
  }
  return text;
}

inline std::string CellText(const Value& value) {
  struct Visitor {
    std::string operator()(std::monostate) const { return "-"; }
    std::string operator()(bool boolean) const { return boolean ? "yes" : "no"; }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(double number) const {
      char text[40];
      return {text, std::to_chars(text, std::end(text), number).ptr};
    }
    std::string operator()(std::string_view text) const { return std::string(1, '\'').append(text).append(1, '\''); }
    std::string operator()(Bytes bytes) const { return std::string("x").append(HexText(bytes)); }
  };
  return std::visit(Visitor{}, value);
}

inline std::string RowText(const Row& row) {
  std::string text;
  for (const Value& value : row) {
    text.append(text.empty() ? "" : " ").append(CellText(value));
  }
  return text;
}

using Rows = std::map<RowId, std::string>;

inline Rows RowsOf(const Table& table) {
  Rows rows;
  for (Cursor cursor = table.Scan(); cursor.Next();) {
    const std::string row = RowText(RowOf(cursor, table));
    EXPECT_TRUE(rows.emplace(cursor.Row(), row).second) << "a row came up twice: " << row;
  }
  return rows;
}

// The rows' texts in the order of the scan.
inline std::vector<std::string> TextsOf(const Table& table) {
  std::vector<std::string> texts;
  for (const auto& [id, text] : RowsOf(table)) {
    texts.push_back(text);
  }
  return texts;
}

// "sound", or the faults.
inline std::string Health(const Database& database) {
  std::string faults;
  for (const std::string& fault : database.FindFaults()) {
    faults += fault + "\n";
  }
  return faults.empty() ? "sound" : faults;
}

template <typename Error = std::exception, typename Work>
std::string ErrorOf(const Work& work) {
  try {
    work();
  } catch (const Error& error) {
    return error.what();
  }
  return "no error";
}

template <typename Work>
void InOneStatement(const Database& database, const Work& work) {
  Statement statement = database.Begin();
  work();
  statement.Commit();
}

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline constexpr const char* kPassword = "qorvat";

// A folder, and a file of its own in it.
class NewFileTest : public testing::Test {
 protected:
  Database Make(const std::vector<TableSchema>& tables, const NewFile& kind = {}) const {
    return Database::Create(file_, kPassword, tables, pager::NativeFiles(), kind);
  }
  Database Reopen() const { return Database::Open(file_, {.password = kPassword, .code_page = {}}); }

  test::ScratchFolder folder_;
  std::filesystem::path file_ = folder_.Path() / "4star.mdb";
};

inline constexpr NewFile kFormats[] = {{.version = 4}, {.version = 3, .code_page = 950}};

class BothFormatsTest : public NewFileTest, public testing::WithParamInterface<NewFile> {
 protected:
  Database Make(const std::vector<TableSchema>& tables) const { return NewFileTest::Make(tables, GetParam()); }
  bool IsJet3() const { return GetParam().version == 3; }
};

inline std::string FormatName(const testing::TestParamInfo<NewFile>& format) {
  return "Jet" + std::to_string(format.param.version);
}

inline constexpr const char* kNoSamples = "MARLEVO_SAMPLES does not name the folder of sample databases";

}  // namespace marlevo::access
