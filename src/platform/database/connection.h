// The database service: SQL on an Access file.
//
// A Connection is one opened file. Every user table of the file is there under its own name, with or without square
// brackets. What runs are SELECT, INSERT and DELETE, one statement a call, written as the SQLite library takes them,
// with texts in single quotes. "=" and ORDER BY on text columns take upper and lower case as equal; everything else
// goes by character value. A statement is all or nothing. Several connections of one process on the same file see each
// other's completed statements.
//
// A value that does not fit its column (a number out of range or with a fraction in an integer column, a text that is
// too long or not a number in a number column, a character that the file's code page lacks) is refused, never cut or
// rounded.
//
// Every failure is a DatabaseError: subject is the file, what() the engine's own words. When the disk refuses, what was
// executed since the last Flush and is not on the disk yet is undone with it, so it can be done again without being
// stored twice.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/database/connection_string.h"
#include "platform/database/recordset.h"

namespace marlevo {

class Connection {
 public:
  // Opens the file that the connection string names (see connection_string.h).
  explicit Connection(const std::string& connection_string);
  Connection(Connection&& other) noexcept;
  Connection& operator=(Connection&& other) noexcept;
  // Closes. It cannot report a failure, so it is no substitute for Flush.
  ~Connection();

  // Runs one statement that gives no rows.
  void Execute(std::string_view sql);

  // Runs one SELECT.
  Recordset Open(std::string_view sql);

  // When it returns, everything executed so far is on the disk and survives a power failure. Call it before telling the
  // operator that something is done.
  void Flush();

  // Flush, then gives the file back. Every later call but Close is a DatabaseError.
  void Close();

 private:
  class Session;

  Session& Opened(const char* attempted);

  std::unique_ptr<Session> session_;
};

}  // namespace marlevo
