// The database service: SQL on an Access file.
//
// A Connection is one opened file. Every user table of the file has its own name in SQL, with or without square
// brackets. SELECT, INSERT and DELETE are run, one statement a call, in SQLite's syntax, with texts in single quotes.
// "=" and ORDER BY on text columns take upper and lower case as equal; otherwise texts compare by character value. A
// statement is all or nothing. Several connections of one process on the same file see each other's completed
// statements at once.
//
// A value that does not fit its column (a number out of range or with a fraction in an integer column, a text that is
// too long or not a number in a number column, a character that the file's code page lacks) is refused, never cut or
// rounded.
//
// Every failure is a DatabaseError: subject is the file, what() the engine's own words. When the disk refuses a
// statement or a Flush, everything that was executed since the last Flush and is not on the disk yet is undone,
// whichever connection of this process executed it, so it can be done again without being stored twice. Example: a
// customer is inserted, then a ticket, and the Flush finds the disk full; now neither is stored, and the operator
// repeats both. The same holds when another program that does not know the locks of this one has changed, replaced or
// removed the file: the statement is refused (Fault::kChanged), what the other program wrote stays, and the next
// statement opens the file anew.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/base/operation_error.h"
#include "platform/database/connection_string.h"
#include "platform/database/recordset.h"

namespace marlevo {

// The outcome of Connection::Replace.
struct RowChange {
  bool found = false;                    // false: there is no such row, and nothing was done
  std::optional<DatabaseError> refusal;  // set: the old row is deleted; to be thrown once the window shows that
};

class Connection {
 public:
  // Opens the file that the connection string names (see connection_string.h).
  explicit Connection(const std::string& connection_string);
  Connection(Connection&& other) noexcept;
  Connection& operator=(Connection&& other) noexcept;
  // Closes the file. The destructor cannot report a failure; call Flush or Close before.
  ~Connection();

  // Runs one statement that gives no rows.
  void Execute(std::string_view sql);

  // Runs one SELECT.
  Recordset Open(std::string_view sql);

  // When it returns, everything executed so far, by this and by the process's other connections to the file, is on the
  // disk and survives a power failure. Call it before telling the operator that something is done.
  void Flush();

  // Runs `action`, which executes statements, and flushes, also when `action` throws: the statements before a refused
  // one are on the disk then.
  void FlushAfter(const std::function<void()>& action);

  // Changes the row that the SELECT `find` gives: runs the DELETE `remove`, then makes the INSERT and runs it, then
  // flushes. When the INSERT cannot be made or is refused, the row stays deleted, also on the disk. When the disk
  // refuses, the row is as before, and the DatabaseError is thrown.
  [[nodiscard]] RowChange Replace(std::string_view find, std::string_view remove,
                                  const std::function<std::string()>& make_insert);

  // How many characters a value of this column has at most: the length of a text column, the digits of an integer
  // column. Nothing for columns of other kinds. DatabaseError when there is no such column.
  std::optional<std::size_t> MostCharacters(std::string_view table, std::string_view column);
  // A function that tells whether the column has room for a text. An old file counts the bytes of its code page, two
  // for a Chinese character, instead of characters. The function may outlive the connection.
  std::function<bool(std::string_view text)> RoomIn(std::string_view table, std::string_view column);

  // Flushes, then closes the file. Every later call but Close throws DatabaseError.
  void Close();

 private:
  class Engine;

  // Does `work` with the engine. Errors of `work` become DatabaseErrors.
  template <typename Work>
  auto WithEngine(const char* attempted, Work work);
  void OpenAnewIfOutdated();

  DataSource source_;
  std::unique_ptr<Engine> engine_;
  bool outdated_ = false;  // another program has changed the file, so that the engine can do nothing more
};

// What opening the file would be refused for; nothing when it can be opened.
std::optional<DatabaseError> RefusalToOpen(const std::string& connection_string);

}  // namespace marlevo
