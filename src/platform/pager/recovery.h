// Reads a journal that was found beside a file, says whether it belongs to an unfinished change of this very file, and
// puts the file back to what it was before that change.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "platform/pager/disk_file.h"
#include "platform/pager/journal_format.h"

namespace marlevo::pager {

class Recovery {
 public:
  // `journal` must outlive this object.
  explicit Recovery(DiskFile& journal);

  // Whether there is anything to undo. False for a journal that is empty, is not one, or broke off inside its first
  // batch: then its change never reached the file.
  bool Unfinished() const { return has_batch_; }
  // Whether the journaled change can have left `file` as it is now. False for another file, and when somebody has
  // written other content into it since.
  bool Fits(DiskFile& file) const;
  // Whether `file` holds a page of the journaled change, whole or torn. When Fits is false and this is true, another
  // program has written to the file after the change had begun.
  bool IsCarriedBy(DiskFile& file) const;
  // Puts back the originals of the pages for which `wanted` returns true. `known` says whether the journaled change can
  // have left the page as it is now.
  using Wanted = std::function<bool(std::uint32_t page, bool known)>;
  void RestorePages(DiskFile& file, const Wanted& wanted) const;
  // Puts the whole file back to what it was before the change; durable when it returns. May be repeated after an error.
  void PlayBack(DiskFile& file) const;

 private:
  struct Record {
    std::uint32_t page;
    RecordKind kind;
    std::uint64_t offset;  // of its bytes in the journal
  };

  // The records of one page, the original first.
  using PageRecords = std::span<const Record>;

  std::vector<PageRecords> Pages() const;
  std::size_t BytesOf(RecordKind kind) const;
  std::vector<std::byte> OriginalOf(PageRecords records) const;
  bool IsKnown(PageRecords records, DiskFile& file) const;
  std::size_t StrangeSectors(PageRecords records, std::span<const std::byte> now) const;

  DiskFile& journal_;
  JournalHeader header_ = {};
  bool has_batch_ = false;       // at least one batch is complete
  std::vector<Record> records_;  // of complete batches, sorted by page, the original of a page before its rewrites
};

}  // namespace marlevo::pager
