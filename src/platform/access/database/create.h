// Makes a new file: first its header, its map of all pages and its system tables, then the user's tables. All of this
// happens inside one statement of the caller, who flushes afterwards. Until then no other program sees the file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access/bytes/schema.h"
#include "platform/access/bytes/table_definition.h"
#include "platform/access/database/system_tables.h"
#include "platform/access/storage/storage.h"

namespace marlevo::access {

class LoadedTable;

class Creator {
 public:
  // Writes the header, the map of all pages and the system tables into `file`, which has no pages yet.
  Creator(Storage& file, const NewFile& kind, std::string_view password);

  // Adds an empty table. The pages of its maps and of its indexes' roots are taken here. `properties`: see
  // properties.h. Throws AccessError when the name or a column is not possible.
  void AddTable(const std::string& name, TableDefinition definition, Bytes properties = {});

 private:
  void WriteHeaderPage(std::string_view password);
  void WriteMapOfFile();
  void WriteDefinition(std::uint32_t page, TableDefinition& definition);
  RowPointer NewMap();
  void Register(const SystemObject& object, Bytes properties = {});
  void Permit(const std::vector<Permission>& permissions);

  Storage& file_;
  const Format& format_;
  NewFile kind_;
  std::uint32_t map_page_ = 0;  // the page that got the last new map
  // The system tables MSysObjects and MSysACEs: which objects the file has, and who may use them.
  std::shared_ptr<LoadedTable> objects_;
  std::shared_ptr<LoadedTable> permissions_;
  double now_;
};

}  // namespace marlevo::access
