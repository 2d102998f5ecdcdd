// Settings of the SQLite library that hold for the whole process.
#pragma once

namespace marlevo {

// Turns off SQLite's count of its own memory, which nobody reads and which takes a lock around every allocation: a
// sixth of the work of an INSERT. It is the first thing of SQLite that a process calls; later calls do nothing.
void SetUpSqlite();

}  // namespace marlevo
