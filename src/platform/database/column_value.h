// Values between SQL and the columns of an Access file.
#pragma once

#include <sqlite3.h>

#include <string>

#include "platform/access/bytes/schema.h"
#include "platform/access/table/table.h"

namespace marlevo {

// What a column's values are for SQL. Yes/No is an integer, -1 or 0; money, dates and decimals are real numbers; a GUID
// is a text.
enum class SqlKind { kInteger, kReal, kText, kBytes };
SqlKind SqlKindOf(access::ColumnType type);

// The value as the column takes it: a number for a text column becomes its text, a text for a number column is taken as
// a number when the whole of it is one. What remains unfit is left to the engine, which refuses it. The result borrows
// from `value` and from `buffer`.
access::Value ColumnValue(sqlite3_value* value, access::ColumnType type, std::string& buffer);

// A cell of the current row as the result of a SQL expression.
void SetResult(sqlite3_context* result, access::Cursor& row, std::size_t column, access::ColumnType type);

}  // namespace marlevo
