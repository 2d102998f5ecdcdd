// Writes the rollback journal of one file: originals of pages, durable before the file is touched.
//
// Start, then for every batch Keep/Announce and Seal; the file may be changed once Seal has returned. Retire ends it
// when the file is durable. After an error in Keep, Announce or Seal only Retire, Close or Start may follow.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

#include "platform/pager/disk_file.h"
#include "platform/pager/journal_format.h"

namespace marlevo::pager {

// Whether a file of a journal's name is a journal, whole or not: it is empty, begins like one, or begins with zeros, as
// after a power failure. Any other file is not this program's to change or remove.
bool LooksLikeJournal(DiskFile& file);

class Journal {
 public:
  Journal(FileSystem& files, std::filesystem::path path);

  // Makes sure that a journal can be written here, before anybody relies on it.
  void Prepare();
  // The open journal, also when somebody has removed its name. After Prepare.
  DiskFile& Opened() { return *file_; }
  // `page_count`: of the file before the change.
  void Start(std::size_t page_size, std::uint32_t page_count);
  // Pages that the file had at Start; others vanish with an undo and need no original.
  bool Covers(std::uint32_t page) const { return page < PageCount(); }
  std::uint32_t PageCount() const { return static_cast<std::uint32_t>(kept_.size()); }
  bool HasOriginal(std::uint32_t page) const { return kept_[page]; }
  // `original`: the page's bytes in the file.
  void AddOriginal(std::uint32_t page, std::span<const std::byte> original);
  // `rewrite`: what will be written over the page.
  void AddChecksum(std::uint32_t page, std::span<const std::byte> rewrite);
  // Throws Fault::kChanged when the journal has lost its name, by which alone the next process would find it.
  void EndBatch();
  // It is certain when this returns that nobody will play the journal back.
  void Invalidate();
  // Removes a retired journal, and no other file that has its name by now.
  void Close() noexcept;

  const std::filesystem::path& Path() const { return path_; }

 private:
  void Add(RecordKind kind, std::uint32_t page, std::span<const std::byte> bytes);
  void WriteOut();
  bool HasItsName();

  FileSystem* files_;
  std::filesystem::path path_;
  std::unique_ptr<DiskFile> file_;
  std::vector<bool> kept_;         // by page of the file before
  std::vector<std::byte> buffer_;  // not yet written, belongs at end_
  std::uint64_t end_ = 0;
  std::uint64_t hash_ = 0;  // of the last record
};

}  // namespace marlevo::pager
