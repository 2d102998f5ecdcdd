// Writes the rollback journal of one file: the originals of pages, which are durable before the file is touched.
//
// The order of calls: Prepare, then for each change Start; for each batch of pages AddOriginal and AddChecksum as often
// as needed, then EndBatch; at last Invalidate. The pages of a batch may be overwritten once EndBatch has returned, and
// Invalidate is called once the file is durable. After an error in AddOriginal, AddChecksum or EndBatch, only
// Invalidate, Close or Start may follow.
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

// Whether a file that has a journal's name is a journal, whole or not: it is empty, begins like a journal, or begins
// with zeros, as a power failure may leave it. Any other file belongs to another program and is neither changed nor
// removed.
bool LooksLikeJournal(DiskFile& file);

class Journal {
 public:
  Journal(FileSystem& files, std::filesystem::path path);

  // Opens the journal or makes an empty one. Throws when no journal can be written here.
  void Prepare();
  // The journal that Prepare has opened, also when somebody has removed its name since.
  DiskFile& Opened() { return *file_; }
  // `page_count`: the pages of the file before the change.
  void Start(std::uint32_t page_size, std::uint32_t page_count);
  // Whether the file had this page at Start. Later pages are cut off by an undo and need no original.
  bool Covers(std::uint32_t page) const { return page < PageCount(); }
  std::uint32_t PageCount() const { return static_cast<std::uint32_t>(has_original_.size()); }
  bool HasOriginal(std::uint32_t page) const { return has_original_[page]; }
  // `original`: the page's bytes in the file. Once for each page.
  void AddOriginal(std::uint32_t page, std::span<const std::byte> original);
  // `rewrite`: the bytes that will be written over the page.
  void AddChecksum(std::uint32_t page, std::span<const std::byte> rewrite);
  // When it returns, the batch is durable. Throws Fault::kChanged when the journal has lost its name, because the next
  // process finds a journal by its name only.
  void EndBatch();
  // When it returns, the journal is durably empty, and nobody will play it back.
  void Invalidate();
  // Removes an invalidated journal, but not another file that has taken its name.
  void Close() noexcept;

  const std::filesystem::path& Path() const { return path_; }

 private:
  void Add(RecordKind kind, std::uint32_t page, std::span<const std::byte> bytes);
  void WriteOut();
  bool HasItsName();

  FileSystem* files_;
  std::filesystem::path path_;
  std::unique_ptr<DiskFile> file_;
  std::vector<bool> has_original_;  // by page: whether the journal has its original
  std::vector<std::byte> buffer_;   // records that are not in the journal file yet; their place there is end_
  std::uint64_t end_ = 0;
  std::uint64_t hash_ = 0;  // of the last record
};

}  // namespace marlevo::pager
