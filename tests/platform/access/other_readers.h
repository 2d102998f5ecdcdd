// Tables as other readers of such files print them: CSV with a header, then a line a row.
#pragma once

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "platform/access/access_files.h"

namespace marlevo::access {

using Lines = std::vector<std::string>;

inline std::string DateText(double serial) {
  const double day = std::trunc(serial);
  const long long seconds = std::llround(std::abs(serial - day) * 86400);
  const std::chrono::year_month_day date =
      std::chrono::sys_days(std::chrono::year{1899} / 12 / 30) + std::chrono::days(std::lround(day) + seconds / 86400);
  const long long second = seconds % 86400;
  char text[80];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u %02lld:%02lld:%02lld", int{date.year()}, unsigned{date.month()},
                unsigned{date.day()}, second / 3600, second / 60 % 60, second % 60);
  return text;
}

// The same words for the same number.
inline std::string NumberText(const Column& column, double number) {
  return CellText(column.type == ColumnType::kSingle ? static_cast<float>(number) : number);
}

// Of a text only the quote before it stays.
inline Lines LinesOf(const std::string& csv, const std::vector<Column>& columns) {
  Lines lines;
  std::string line;
  std::string cell;
  std::size_t column = 0;
  for (std::size_t i = 0; i < csv.size(); ++i) {
    if (csv[i] == '"') {
      cell = '"';
      for (++i; csv[i] != '"' || csv[i + 1] == '"'; ++i) {
        cell += csv[i];
        i += csv[i] == '"' ? 1 : 0;
      }
    } else if (csv[i] != ',' && csv[i] != '\n') {
      cell += csv[i];
    } else {
      double number = 0;
      const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), number);
      const bool is_number = error == std::errc() && end == cell.data() + cell.size();
      line += (is_number ? NumberText(columns.at(column), number) : cell) + csv[i];
      cell.clear();
      ++column;
      if (csv[i] == '\n') {
        lines.push_back(std::exchange(line, {}));
        column = 0;
      }
    }
  }
  return lines;
}

inline std::string PrintedCell(Cursor& cursor, std::size_t i, const Column& column) {
  if (cursor.IsNull(i)) {
    return {};
  }
  switch (column.type) {
    case ColumnType::kText:
    case ColumnType::kMemo:
    case ColumnType::kGuid:
      return std::string(1, '"').append(cursor.Text(i));
    case ColumnType::kDateTime:
      return DateText(cursor.Real(i));
    case ColumnType::kBinary:
    case ColumnType::kOle:
      return std::string("0x").append(HexText(cursor.Raw(i)));
    default:
      return NumberText(column, cursor.Real(i));
  }
}

inline Lines LinesOf(const Table& table) {
  const std::vector<Column>& columns = table.Columns();
  const auto separator = [&](const Column& column) { return &column == &columns.back() ? '\n' : ','; };
  Lines lines(1);
  for (const Column& column : columns) {
    lines[0].append(1, '"').append(column.name) += separator(column);
  }
  for (Cursor cursor = table.Scan(); cursor.Next();) {
    lines.emplace_back();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      lines.back().append(PrintedCell(cursor, i, columns[i])) += separator(columns[i]);
    }
  }
  return lines;
}

// The first lines that differ; "" when none do.
inline std::string Difference(const Lines& theirs, const Lines& ours) {
  const auto [their, our] = std::ranges::mismatch(theirs, ours);
  return their == theirs.end() && our == ours.end()
             ? ""
             : "the other reader: " + (their == theirs.end() ? "no more\n" : *their) +
                   "the engine: " + (our == ours.end() ? "no more\n" : *our);
}

}  // namespace marlevo::access
