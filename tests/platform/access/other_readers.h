// Tables as other readers of such files print them.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <string>

#include "platform/access/access_files.h"

namespace marlevo::access {

// Of a day from 1970 on.
inline std::string DateText(double serial) {
  const std::time_t time = std::llround((serial - 25569) * 86400);
  char text[40];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", std::gmtime(&time));
  return text;
}

inline std::string CsvCell(const Column& column, const Value& cell) {
  if (const auto* text = std::get_if<std::string_view>(&cell)) {
    std::string quoted = "\"";
    for (const char character : *text) {
      quoted.append(character == '"' ? 2 : 1, character);
    }
    return quoted + '"';
  }
  if (const auto* boolean = std::get_if<bool>(&cell)) {
    return *boolean ? "1" : "0";
  }
  if (const auto* bytes = std::get_if<Bytes>(&cell)) {
    return std::string("0x").append(HexText(*bytes));
  }
  if (const auto* real = std::get_if<double>(&cell); real != nullptr && column.type == ColumnType::kDateTime) {
    return DateText(*real);
  } else if (real != nullptr && column.type == ColumnType::kCurrency) {
    char money[40];
    std::snprintf(money, sizeof money, "%.4f", *real);
    return money;
  }
  return cell.index() == 0 ? "" : CellText(cell);
}

// The columns' names, then a line a row.
inline std::string CsvOf(const Table& table) {
  std::string csv;
  const std::vector<Column>& columns = table.Columns();
  for (const Column& column : columns) {
    csv.append(csv.empty() ? "\"" : ",\"").append(column.name) += '"';
  }
  for (Cursor cursor = table.Scan(); cursor.Next();) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      csv.append(i == 0 ? "\n" : ",").append(CsvCell(columns[i], CellOf(cursor, table, i)));
    }
  }
  return csv + '\n';
}

// "", or both from the first difference on.
inline std::string Difference(const std::string& theirs, const std::string& ours) {
  const auto same = static_cast<std::size_t>(std::ranges::mismatch(theirs, ours).in1 - theirs.begin());
  return theirs == ours ? "" : theirs.substr(same, 300) + "\n/ " + ours.substr(same, 300);
}

}  // namespace marlevo::access
