#include "platform/database/sqlite_setup.h"

#include <sqlite3.h>

namespace marlevo {

void SetUpSqlite() {
  // SQLite in use refuses, and goes on counting.
  [[maybe_unused]] static const int code = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

}  // namespace marlevo
