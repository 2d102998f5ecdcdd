#include "platform/access/database/database.h"

#include <algorithm>

#include "platform/access/bytes/file_header.h"
#include "platform/access/database/catalog.h"
#include "platform/access/database/check.h"
#include "platform/access/database/code_page_guess.h"
#include "platform/access/storage/storage.h"
#include "platform/access/table/loaded_table.h"
#include "platform/pager/read_only_files.h"

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

void Database::CopyTo(const std::filesystem::path& copy, pager::FileSystem& files) const {
  const pager::Reading reading(file_->Pages());
  const pager::PageRef head = file_->Read(0);
  const std::uint32_t encoding_key = ParseHeader(head.Bytes()).encoding_key;
  const std::uint32_t count = file_->Pages().PageCount();
  {
    const std::unique_ptr<pager::DiskFile> written = files.Create(copy);
    std::vector<std::byte> bytes(file_->Pages().PageSize());
    for (std::uint32_t page = 0; page < count; ++page) {
      const pager::PageRef original = file_->Read(page);
      std::ranges::copy(original.Bytes(), bytes.begin());
      if (page != 0 && encoding_key != 0) {
        ApplyPageKey(encoding_key, page, bytes);
      }
      written->WriteAt(std::uint64_t{page} * bytes.size(), bytes);
    }
    written->Sync();
  }
  pager::ReadOnlyFiles read_only(files);
  const Database written = Open(copy, {.password = {}, .code_page = {}, .any_password = true}, read_only);
  bool equal = written.file_->Pages().PageCount() == count;
  for (std::uint32_t page = 0; equal && page < count; ++page) {
    const pager::PageRef original = file_->Read(page);
    const pager::PageRef copied = written.file_->Read(page);
    equal = std::ranges::equal(original.Bytes(), copied.Bytes());
  }
  if (!equal) {
    throw AccessError("the copy is not like the original", Fault::kDiskFailed);
  }
  if (const std::vector<std::string> faults = written.FindFaults(); !faults.empty()) {
    throw AccessError(faults.front(), Fault::kDamaged);
  }
}

}  // namespace marlevo::access
