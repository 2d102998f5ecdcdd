#include "platform/database/sqlite_setup.h"

#include <sqlite3.h>

namespace marlevo {

void SetUpSqlite() {
  // When SQLite has been used before, it refuses the setting and goes on counting, which does no harm.
  [[maybe_unused]] static const int code = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

}  // namespace marlevo
