// Makes a new file, part by part: its frame, then its tables. All of it happens inside one statement of the caller, who
// flushes afterwards: until then nobody meets the file.
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
  // Writes header, map of the file and system tables into `file`, which has no pages yet.
  Creator(Storage& file, const NewFile& kind, std::string_view password);

  // An empty table. Its maps and the roots of its indexes get their pages here. `properties`: what the catalog keeps of
  // it (see properties.h). Throws AccessError when the name or a column cannot be.
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
  std::uint32_t map_page_ = 0;  // where the last map was put
  // The two system tables that say which objects there are and who may use them.
  std::shared_ptr<LoadedTable> objects_;
  std::shared_ptr<LoadedTable> permissions_;
  double now_;
};

}  // namespace marlevo::access
