#include "platform/access/database/database.h"

#include "platform/access/database/catalog.h"
#include "platform/access/database/check.h"
#include "platform/access/database/code_page_guess.h"
#include "platform/access/storage/storage.h"
#include "platform/access/table/loaded_table.h"

namespace marlevo::access {

Database::Database(std::shared_ptr<Storage> file) : file_(std::move(file)) {}

Database Database::Open(const std::filesystem::path& path, const OpenOptions& options, pager::FileSystem& files) {
  const std::shared_ptr<Storage> file = Storage::Open(path, options, files);
  SettleCodePage(file);
  return Database(file);
}

std::vector<std::string> Database::Tables() const {
  const pager::Reading reading(file_->Pages());
  std::vector<std::string> names;
  for (CatalogEntry& entry : ReadCatalog(file_)) {
    if (IsUserTable(entry)) {
      names.push_back(std::move(entry.name));
    }
  }
  return names;
}

Table Database::OpenTable(std::string_view name) const {
  const pager::Reading reading(file_->Pages());
  const CatalogEntry entry = FindTable(file_, name);
  const std::shared_ptr<LoadedTable> table = LoadedTable::Open(file_, entry.page, entry.name);
  try {
    table->SetRules(StoredProperties(file_, entry));
  } catch (const AccessError& error) {
    table->RefuseWriting(std::string(": ") + error.what());
  }
  return Table(table);
}

void Database::Flush() {
  file_->Flush();
}

void Database::Discard(Fault reason) noexcept {
  file_->Discard(reason);
}

std::vector<std::string> Database::FindFaults() const {
  return CheckFile(file_);
}

}  // namespace marlevo::access
