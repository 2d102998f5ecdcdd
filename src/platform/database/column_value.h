// Converts values between SQL and the columns of an Access file.
#pragma once

#include <sqlite3.h>

#include <string>
#include <string_view>

#include "platform/access/bytes/schema.h"
#include "platform/access/table/table.h"

namespace marlevo {

// The SQL type of a column's values. Yes/No is an integer, -1 or 0; money, dates and decimals are real numbers; a GUID
// is a text.
enum class SqlKind { kInteger, kReal, kText, kBytes };
SqlKind SqlKindOf(access::ColumnType type);

// A text or blob that SQLite hands over: `size` bytes. The second form is of a value that is a text.
std::string_view TextAt(const void* bytes, int size);
std::string_view TextOf(sqlite3_value* value);

// The value in the type of the column: a number for a text column becomes its text, and a text for a number column
// becomes a number if the whole text is one. A value that still does not fit stays as it is, and the engine refuses it.
// The result refers to memory of `value` and `buffer`.
access::Value ColumnValue(sqlite3_value* value, access::ColumnType type, std::string& buffer);

// A cell of the current row as the result of a SQL expression.
void SetResult(sqlite3_context* result, access::Cursor& row, std::size_t column, access::ColumnType type);

}  // namespace marlevo
