// The tables of an Access file as tables of a SQLite connection.
//
// Each user table becomes an eponymous virtual table: SQLite knows it by its own name without a CREATE statement, and
// reads its definition when a statement first names it. Text columns have the collation of text_order.h. Conditions of
// the form column = number and text column = text are checked while the file's rows are walked, so that SQLite sees
// only the rows that meet them.
//
// A SQL statement that changes rows is one statement of the file. When the engine throws, SQLite gets only a result
// code; the exception is kept for the caller of SQLite (`failure`).
#pragma once

#include <sqlite3.h>

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "platform/access/database/database.h"

namespace marlevo {

// `database`, `failure` and `named` must outlive `sql`.
// `failure`: when a call of SQLite fails because of the engine, holds what the engine threw, unless `failure` held
// something already.
// `named`: the columns that the running INSERT names; the other columns get their default values. Nothing when the
// INSERT gives values for all columns. Throws std::runtime_error when SQLite refuses, and what the engine throws.
void AddAccessTables(sqlite3* sql, access::Database& database, std::exception_ptr& failure,
                     const std::optional<std::vector<std::string>>& named);

}  // namespace marlevo
