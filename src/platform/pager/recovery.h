// Reads a journal that was found beside a file: whether it stands for an unfinished change of this very file, and puts
// the file back.
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
  // `journal` must outlive it.
  explicit Recovery(DiskFile& journal);

  // Whether there is anything to undo: false for an empty, torn or strange journal, whose change never reached the
  // file.
  bool Unfinished() const { return sealed_; }
  // Whether `file` is in a state that the journaled change can have left behind. False for another file, or when
  // somebody has put other content in its place since.
  bool Fits(DiskFile& file) const;
  // Whether `file` holds a page of the journaled change, whole or torn. A file that does and does not fit was changed
  // by somebody else in the midst of the change.
  bool IsCarriedBy(DiskFile& file) const;
  // Puts those pages back for which `wanted` is true. It is told of each whether the page is in such a state.
  using Wanted = std::function<bool(std::uint32_t page, bool known)>;
  void RestorePages(DiskFile& file, const Wanted& wanted) const;
  // The file as it was before, durable. May be repeated after an error.
  void PlayBack(DiskFile& file) const;

 private:
  struct Record {
    std::uint32_t page;
    RecordKind kind;
    std::uint64_t offset;  // of its bytes in the journal
  };

  // Of one page, the original first.
  using PageRecords = std::span<const Record>;

  std::vector<PageRecords> Pages() const;
  std::size_t BytesOf(RecordKind kind) const;
  std::vector<std::byte> OriginalOf(PageRecords records) const;
  bool IsKnown(PageRecords records, DiskFile& file) const;
  std::size_t StrangeSectors(PageRecords records, std::span<const std::byte> now) const;

  DiskFile& journal_;
  JournalHeader header_ = {};
  bool sealed_ = false;
  std::vector<Record> records_;  // of complete batches; by page, the original before its rewrites
};

}  // namespace marlevo::pager
