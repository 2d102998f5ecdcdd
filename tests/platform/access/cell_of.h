// A cell of a cursor's row as a value of the column's natural kind.
#pragma once

#include <cstddef>

#include "platform/access/bytes/cell.h"
#include "platform/access/table/table.h"

namespace marlevo::access {

inline Value CellOf(Cursor& cursor, const Table& table, std::size_t column) {
  if (cursor.IsNull(column)) {
    return {};
  }
  const ColumnType type = table.Columns()[column].type;
  if (type == ColumnType::kBoolean) {
    return cursor.Integer(column) != 0;
  }
  if (IsNumber(type)) {
    return IsInteger(type) ? Value(cursor.Integer(column)) : Value(cursor.Real(column));
  }
  const bool text = type == ColumnType::kText || type == ColumnType::kMemo || type == ColumnType::kGuid;
  return text ? Value(cursor.Text(column)) : Value(cursor.Raw(column));
}

inline std::vector<Value> RowOf(Cursor& cursor, const Table& table) {
  std::vector<Value> row;
  for (std::size_t i = 0; i < table.Columns().size(); ++i) {
    row.push_back(CellOf(cursor, table, i));
  }
  return row;
}

}  // namespace marlevo::access
