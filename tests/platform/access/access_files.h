// What the tests of the Access file engine share: rows as short texts, files to work on.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "platform/access/database.h"

namespace marlevo::access {

inline std::string CellText(const Value& value) {
  struct Visitor {
    std::string operator()(std::monostate) const { return "-"; }
    std::string operator()(bool boolean) const { return boolean ? "yes" : "no"; }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(double number) const {
      char text[40];
      std::snprintf(text, sizeof text, "%.17g", number);
      return text;
    }
    std::string operator()(std::string_view text) const { return std::string(1, '\'').append(text).append(1, '\''); }
    std::string operator()(Bytes bytes) const {
      std::string text = "x";
      for (const std::byte byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", std::to_integer<unsigned>(byte));
        text += digits;
      }
      return text;
    }
  };
  return std::visit(Visitor{}, value);
}

inline std::string RowText(const std::vector<Value>& row) {
  std::string text;
  for (const Value& value : row) {
    text += text.empty() ? "" : " ";
    text += CellText(value);
  }
  return text;
}

inline std::string DateText(double serial) {
  const double day = std::trunc(serial);
  const long long seconds = std::llround(std::abs(serial - day) * 86400);
  const std::chrono::sys_days date =
      std::chrono::sys_days(std::chrono::year{1899} / 12 / 30) + std::chrono::days(std::lround(day) + seconds / 86400);
  const std::chrono::year_month_day ymd(date);
  const long long second = seconds % 86400;
  char text[80];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u %02lld:%02lld:%02lld", int{ymd.year()}, unsigned{ymd.month()},
                unsigned{ymd.day()}, second / 3600, second / 60 % 60, second % 60);
  return text;
}

using Rows = std::map<RowId, std::string>;

inline Rows RowsOf(const Table& table) {
  Rows rows;
  Cursor cursor = table.Scan();
  while (cursor.Next()) {
    std::string text;
    for (std::size_t i = 0; i < table.Columns().size(); ++i) {
      text += text.empty() ? "" : " ";
      text += CellText(cursor.Cell(i));
    }
    EXPECT_TRUE(rows.emplace(cursor.Row(), text).second) << "a row came up twice: " << text;
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

// For tests that run in both formats.
inline constexpr NewFile kFormats[] = {{.version = 4}, {.version = 3, .code_page = 950}};

inline std::string FormatName(const testing::TestParamInfo<NewFile>& format) {
  return "Jet" + std::to_string(format.param.version);
}

// "sound", or the faults.
inline std::string Health(const Database& database) {
  std::string faults;
  for (const std::string& fault : database.Check()) {
    faults += fault + "\n";
  }
  return faults.empty() ? "sound" : faults;
}

// A copy of a sample database to write to; empty when the samples are not at hand.
inline std::filesystem::path CopyOfSample(const std::string& name, const std::filesystem::path& folder) {
  const char* samples = std::getenv("MARLEVO_SAMPLES");
  if (samples == nullptr) {
    return {};
  }
  const std::filesystem::path copy = folder / name;
  std::filesystem::copy_file(std::filesystem::path(samples) / name, copy);
  std::filesystem::permissions(copy, std::filesystem::perms::owner_write, std::filesystem::perm_options::add);
  return copy;
}

inline constexpr const char* kNoSamples = "MARLEVO_SAMPLES does not name the folder of sample databases";

}  // namespace marlevo::access
