// Reads a journal that was found beside a file: whether it stands for an unfinished change of this very file, and puts
// the file back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/pager/file.h"
#include "platform/pager/journal_format.h"

namespace marlevo::pager {

class Recovery {
 public:
  // `journal` must outlive it.
  explicit Recovery(File& journal);

  // Whether there is anything to undo: false for an empty, torn or strange journal, whose change never reached the
  // file.
  bool Unfinished() const { return sealed_; }
  // Whether `file` is in a state that the journaled change can have left behind. False for another file, or when
  // somebody has put other content in its place since.
  bool Fits(File& file) const;
  // The file as it was before, durable. May be repeated after an error.
  void PlayBack(File& file) const;

 private:
  struct Record {
    std::uint32_t page;
    RecordKind kind;
    std::uint64_t offset;  // of its bytes in the journal
  };

  std::size_t BytesOf(RecordKind kind) const;
  std::size_t StrangeSectors(std::span<const Record> records, File& file) const;

  File& journal_;
  JournalHeader header_ = {};
  bool sealed_ = false;
  std::vector<Record> records_;  // of complete batches; by page, the original before its rewrites
};

}  // namespace marlevo::pager
