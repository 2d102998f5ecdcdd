// The tables of an Access file as tables of a SQLite connection.
//
// Each user table becomes an eponymous virtual table: it is there under its own name without any CREATE statement, and
// its definition is read when a statement first names it. Text columns carry the text order (text_order.h). Conditions
// of the form column = number and text column = text are checked while the file's rows are walked, so that SQLite sees
// the rows that qualify only.
//
// A SQL statement that changes rows is one statement of the file. Of an error of the engine SQLite gets a result code
// only; the exception is left with the caller of SQLite.
#pragma once

#include <sqlite3.h>

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "platform/access/database/database.h"

namespace marlevo {

// `database`, `failure` and `named` must outlive `sql`. `named`: the columns that the INSERT being run names; the
// others get their default values. Nothing when it gives values for all columns. Whenever a call of SQLite fails
// because of the engine, `failure` holds what the engine threw, unless it held something already. Throws
// std::runtime_error when SQLite refuses, and what the engine throws.
void AddAccessTables(sqlite3* sql, access::Database& database, std::exception_ptr& failure,
                     const std::optional<std::vector<std::string>>& named);

}  // namespace marlevo
