// The pages of one file, changed by statements that are all or nothing. Pages count from 0. A Pager is not for use by
// several threads at once.
//
// In memory. As soon as a statement is committed, every later Read sees it. Its pages stay in memory until Flush, or
// until a statement begins while more than half of Limits::changed is in use. A statement that needs more than
// Limits::changed writes pages to the file before it ends; it can still be rolled back.
//
// On disk. After a kill, a full disk or a power failure the file holds the first n committed statements, whole ones,
// and at least all that came before the last Flush that returned. Example: A and B are committed, Flush returns, C is
// committed, and the power fails. The file then holds A and B, or A, B and C, and never half of C. This is the work of
// a rollback journal beside the file, FILE-journal: before a page of the file is overwritten, its original is durable
// in the journal. The next Open plays back a journal that a crash has left:
//   - A journal of another file, or of another state of this one, changes nothing; it is renamed to
//     FILE-journal.foreign.
//   - When the journal does not fit but the file holds pages of the journaled change, the file is damaged: both are
//     kept, and the file can only be read.
//   - A file of another program that has the journal's name is left alone, and the file beside it can only be read.
//
// Between processes. The first process that opens a file may write to it, until that process closes its last Pager of
// the file. Other processes read; each Reading of theirs sees one flushed state. When such a process begins a
// statement, it asks again for the right to write, and Begin throws while the first process still has that right. A
// file whose rights or medium forbid writing is opened for reading only.
//
// Programs that do not know these locks. A change by such a program is noticed afterwards: Begin, the outermost
// Reading, every read of the file and every write to it compare name, identity, size and time of the file with what
// they were when its pages were first read, and a write also compares each page with the one that its change was made
// from. When anything differs, the call throws Fault::kChanged. What the other program has written stays, statements
// that are committed but not in the file are lost, and every later call to this Pager throws; opening the file gives a
// new Pager. A file that another program shows to have open (PageFormat::sign_of_use) is not written.
//
// Memory use. 32 MiB of clean pages, and 8 MiB of changed ones, twice while they are written, whatever the file's size.
// Pages that callers hold come on top. The file is read in blocks of 64 KiB and not mapped into memory: a medium that
// fails has to give an error instead of ending the program, and encoded pages need memory of their own anyway.
//
// Errors. Every failure is a PagerError and leaves what was committed unharmed, except for Fault::kChanged as said
// above. The call may be tried again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/pager/disk_file.h"
#include "platform/pager/page_format.h"
#include "platform/pager/pager_error.h"

namespace marlevo::pager {

class BlockCache;
class JournaledFile;

// How much memory may be used, in bytes.
struct Limits {
  std::size_t clean = std::size_t{32} << 20;   // for pages as they are in the file
  std::size_t changed = std::size_t{8} << 20;  // for changed pages until they are written to the file
};

// One page for reading. The bytes stay where they are and valid as long as this or a copy lives, even past the Pager.
// They are the page at the time of Read: a later statement changes a copy of its own. If the page was read during an
// open statement that had changed it, later changes of that same statement are visible through it. Example: Read gives
// `a`; a statement changes the page and Read gives `b`; the statement changes the page again. `a` still has the bytes
// from before the statement, `b` has those of the second change.
class PageRef {
 public:
  PageRef() = default;
  explicit operator bool() const { return bytes_ != nullptr; }
  std::span<const std::byte> Bytes() const& { return {bytes_.get(), size_}; }
  // Of a temporary PageRef: the page would be gone before its bytes are read.
  std::span<const std::byte> Bytes() const&& = delete;

 private:
  friend class Pager;
  PageRef(std::shared_ptr<const std::byte> bytes, std::size_t size) : bytes_(std::move(bytes)), size_(size) {}

  std::shared_ptr<const std::byte> bytes_;
  std::size_t size_ = 0;
};

// One page for changing. Keep the PageEdit as long as you write through its span: without it the page may go to the
// file early, and what is written into the span afterwards is lost. Not to be used after the statement has ended.
class PageEdit {
 public:
  PageEdit() = default;
  explicit operator bool() const { return bytes_ != nullptr; }
  std::span<std::byte> Bytes() const& { return {bytes_.get(), size_}; }
  std::span<std::byte> Bytes() const&& = delete;

 private:
  friend class Pager;
  PageEdit(std::shared_ptr<std::byte[]> bytes, std::size_t size) : bytes_(std::move(bytes)), size_(size) {}

  std::shared_ptr<std::byte[]> bytes_;
  std::size_t size_ = 0;
};

class Pager {
 public:
  // Is given the first 4096 bytes, fewer when the file is shorter. Returns the format of the file's pages, or throws
  // what Open shall throw.
  using Probe = std::function<PageFormat(std::span<const std::byte> head)>;

  // A process has one Pager for each file: while it lives, opening the same file gives that Pager again, and `probe` is
  // not called.
  static std::shared_ptr<Pager> Open(const std::filesystem::path& path, const Probe& probe,
                                     FileSystem& files = NativeFiles(), Limits limits = {});
  // Makes a file without pages; throws when there is a file of that name. Until the first Flush the new file is called
  // FILE-new, so that nobody ever meets half a file; without that Flush it vanishes.
  static std::shared_ptr<Pager> Create(const std::filesystem::path& path, PageFormat format,
                                       FileSystem& files = NativeFiles(), Limits limits = {});

  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;
  // Rolls an open statement back and flushes. The destructor cannot report an error; call Flush before.
  ~Pager();

  std::uint32_t PageCount() const;
  std::size_t PageSize() const;
  // Whether rights or medium forbid writing to the file. Then Begin throws.
  bool ReadOnly() const;

  // The page with the changes of the open statement. Throws for a page outside PageCount.
  PageRef Read(std::uint32_t page);

  bool InStatement() const;
  // At most one statement is open at a time. Compare Version afterwards: when this process becomes the writer here,
  // what other processes have written comes into view.
  void Begin();
  // Gives a copy of the page, to be changed. A second Change in the same statement gives the same bytes, as long as
  // some PageEdit or PageRef holds them; otherwise the page may have gone to the file in the meantime and is read
  // again.
  PageEdit Change(std::uint32_t page);
  // Adds a zeroed page at the end and returns its number.
  std::uint32_t Append();
  // When this throws the statement is still open and can only be rolled back.
  void Commit();
  void Rollback() noexcept;

  // Grows whenever pages may differ from what was read before: with every Change, every rollback and every write to the
  // file. In a process that does not write, the version also grows with every outermost Reading, because another
  // process may have written before that Reading. As long as the version is the same, whatever a caller remembers of
  // the file's pages is true. Example: a scan remembers the version with the page that it walks over; when the version
  // has grown, the scan reads that page again.
  std::uint64_t Version() const { return version_; }

  // When Flush returns, everything committed is durable, whoever has committed it: connections of one process share the
  // Pager of their file. Example: connection A stores a customer, connection B a ticket, and B flushes: now the
  // customer is durable too. When that Flush fails and B calls Discard, both are lost, and A learns of it from its
  // Batch.
  void Flush();
  // Undoes the open statement and every committed statement that is not in the file yet. For a caller whose Flush has
  // failed for `reason` and who does not want to try again.
  void Discard(Fault reason) noexcept;

  // The statements that are committed between two flushes. They get into the file together or are lost together. Who
  // remembers the batch of a statement can ask it later whether that statement was lost.
  struct Batch {
    std::optional<Fault> lost;  // why the statements are lost; none while they are not
  };
  // The batch to which the next Commit adds its statement.
  std::shared_ptr<const Batch> CurrentBatch() const { return batch_; }

 private:
  friend class Reading;

  struct ChangedPage {
    std::shared_ptr<std::byte[]> bytes;
    bool in_statement;                  // true: the open statement has changed it; false: the change is committed
    std::optional<std::uint64_t> base;  // ContentHash of the page in the file that this one was made from, if any
  };
  // What a rollback does with a page that the open statement has changed or appended.
  struct Undo {
    std::uint32_t page;
    // The committed page, when that is not in the file yet; null: the changed page is dropped, the file has the old
    // one.
    std::shared_ptr<std::byte[]> before;
  };
  struct OpenStatement {
    std::uint32_t page_count;  // before the statement
    std::vector<Undo> undo;
    // Pages of the statement may be in the file. Every statement before it is in the file as well, and a rollback plays
    // the journal back.
    bool spilled;
    bool failed;  // pages of the statement could not be written: only a rollback is left
  };

  Pager(std::unique_ptr<JournaledFile> file, Probe probe, Limits limits);

  // Does `work`. When `work` throws Fault::kChanged, this Pager is over (see over_).
  template <typename Work>
  void Watching(Work work);
  void GiveUp() noexcept;
  void RequireUsable() const;
  bool IsCurrent();
  void BecomeWriter();
  void BeginReading();
  void EndReading() noexcept;
  void ForgetPages();
  void ForgetCleanPages();
  void LoadBlock(std::uint32_t first_page, std::span<std::byte> block);
  void RequirePage(std::uint32_t page) const;
  void RequireStatement() const;
  void SpillIfFull();
  void LoseBatch(Fault reason) noexcept;
  void FlushCommitted();
  // Writes these pages of the open statement to the file and frees their memory.
  void WriteThrough(std::vector<std::uint32_t> numbers);

  std::unique_ptr<JournaledFile> file_;
  Probe probe_;
  Limits limits_;
  std::unique_ptr<BlockCache> clean_;
  std::unordered_map<std::uint32_t, ChangedPage> changed_;
  std::optional<OpenStatement> statement_;
  std::uint32_t page_count_ = 0;
  std::size_t readings_ = 0;
  std::uint64_t version_ = 0;
  std::shared_ptr<Batch> batch_ = std::make_shared<Batch>();
  bool over_ = false;  // another program has changed the file: every later call throws
  bool lost_ = false;  // when that happened, committed statements were not in the file yet
};

// While a Reading lives, all reads of this process belong to one state of the file, whatever another process flushes.
// Needed wherever two pages have to fit each other, such as an index page and the row that it names; may be nested. In
// the writing process a Reading costs nothing. In any other process it holds back the writer's Flush, so a Reading
// lasts for one query, never for as long as an operator thinks.
class Reading {
 public:
  explicit Reading(Pager& pager) : pager_(pager) { pager_.BeginReading(); }
  Reading(const Reading&) = delete;
  Reading& operator=(const Reading&) = delete;
  ~Reading() { pager_.EndReading(); }

 private:
  Pager& pager_;
};

}  // namespace marlevo::pager
