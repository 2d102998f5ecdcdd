// The pages of one file, changed by statements that are all or nothing.
//
// In memory. Committed statements are seen by every later Read at once. They stay in memory until Flush, or until some
// MiB of them have gathered when a statement begins. A statement that outgrows that bound writes pages to the file
// before it ends; it can still be rolled back.
//
// On disk. After a kill, a full disk or a power failure the file holds the first n committed statements, whole ones,
// and at least all that came before the last Flush that returned. This is the work of a rollback journal beside the
// file, FILE-journal: before a page of the file is overwritten its original is durable there. The next Open plays a
// journal back that a crash has left. A journal of another file, or of another state of this one, is renamed to
// FILE-journal.foreign and changes nothing. When the journal does not fit but the file holds pages of the journaled
// change, the file is damaged: both are kept, and the file can only be read. A file of another program that has the
// journal's name is left alone, and the file can only be read beside it.
//
// Between processes. The process that opens a file first may write to it, until its last Pager of that file is gone.
// Other processes read; each Reading of theirs sees one flushed state. When such a process begins a statement it asks
// for the right to write again, and Begin throws while the first process is still there. A file that may not be written
// is opened for reading only. Programs that know nothing of these locks are noticed by what they do: Begin, the
// outermost Reading, every read of the file and every write to it compare the file with what it was when its pages were
// first read (name, identity, size, time), and a write compares each page with the one that its change was made from.
// When anything differs the call throws Fault::kChanged, what is committed but not in the file is lost, what the other
// program has written stays, and the Pager is over: every later call throws, and opening the file gives a new Pager. A
// file that another program shows to have open (PageFormat::sign_of_use) is not written.
//
// Memory use. 32 MiB of clean pages, and 8 MiB of changed ones, twice while they are written, whatever the file's size;
// pages that callers hold come on top. The file is read in blocks of 32 KiB and not mapped: a medium that fails has to
// give an error, not end the program, and encoded pages need memory of their own anyway.
//
// Errors. Every failure is a PagerError and leaves what was committed unharmed, except as said above; the call may be
// tried again.
//
// Not for use by several threads at once. Pages count from 0.
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
  std::size_t changed = std::size_t{8} << 20;  // for changed ones before they go to the file
};

// One page for reading. The bytes stay where they are and valid as long as this or a copy lives, even past the Pager.
// They are the page at the time of Read: a later statement changes a copy of its own. Only changes that the statement
// makes in whose midst the page was read show through.
class PageRef {
 public:
  PageRef() = default;
  explicit operator bool() const { return bytes_ != nullptr; }
  std::span<const std::byte> Bytes() const& { return {bytes_.get(), size_}; }
  std::span<const std::byte> Bytes() const&& = delete;  // the page would be gone before its bytes are read

 private:
  friend class Pager;
  PageRef(std::shared_ptr<const std::byte> bytes, std::size_t size) : bytes_(std::move(bytes)), size_(size) {}

  std::shared_ptr<const std::byte> bytes_;
  std::size_t size_ = 0;
};

// One page for changing. Hold it while writing: what is written through a span that outlives it may be lost. Not to be
// used after the statement has ended.
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
  // Sees the first 4096 bytes (fewer when the file is shorter) and says the format, or throws what Open shall throw.
  using Probe = std::function<PageFormat(std::span<const std::byte> head)>;

  // One Pager per file and process: while one lives, opening the same file gives it again (without asking `probe`).
  static std::shared_ptr<Pager> Open(const std::filesystem::path& path, const Probe& probe,
                                     FileSystem& files = NativeFiles(), Limits limits = {});
  // A new file of no pages, never over an existing one. It grows under the name FILE-new and gets its own with the
  // first Flush, so that nobody ever meets half a file. Without that Flush it vanishes.
  static std::shared_ptr<Pager> Create(const std::filesystem::path& path, PageFormat format,
                                       FileSystem& files = NativeFiles(), Limits limits = {});

  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;
  // Rolls an open statement back and flushes. An error has nowhere to go from here: call Flush before.
  ~Pager();

  std::uint32_t PageCount() const;
  std::size_t PageSize() const;
  // The file itself may not be written (rights, medium). Begin throws.
  bool ReadOnly() const;

  // As the current statement sees it. Throws for a page outside PageCount.
  PageRef Read(std::uint32_t page);

  bool InStatement() const;
  // At most one statement at a time. Compare Version after it: what others have written may come into view here.
  void Begin();
  // The page as it is now, to be changed. Once changed in a statement it keeps its place until no PageEdit or PageRef
  // holds it.
  PageEdit Change(std::uint32_t page);
  // A new zeroed page at the end; its number.
  std::uint32_t Append();
  // When this throws the statement is still open and can only be rolled back.
  void Commit();
  void Rollback() noexcept;

  // Grows whenever pages may differ from what was read before: with every Change and every rollback and, in a process
  // that does not write, with every outermost Reading, since others may have written before it. What somebody remembers
  // of the file, or holds a PageRef of, is true while the version is the same.
  std::uint64_t Version() const { return version_; }

  // Everything committed is durable when it returns.
  void Flush();
  // Undoes every committed statement that is not in the file yet, and the open one. For whoever does not want to try a
  // Flush again that failed for this reason.
  void Discard(Fault reason) noexcept;

  // The statements that are committed together between two flushes. They get into the file together, or are lost
  // together; then the batch says why.
  struct Batch {
    std::optional<Fault> lost;
  };
  // The one to which the next Commit adds its statement.
  std::shared_ptr<const Batch> CurrentBatch() const { return batch_; }

 private:
  friend class Reading;

  struct ChangedPage {
    std::shared_ptr<std::byte[]> bytes;
    bool in_statement;                  // changed by the open statement; otherwise committed
    std::optional<std::uint64_t> base;  // hash of the page in the file that this one was made from; none for a new page
  };
  struct Undo {
    std::uint32_t page;
    std::shared_ptr<std::byte[]> before;  // committed, not in the file yet; null: as in the file
  };
  struct OpenStatement {
    std::uint32_t page_count;  // before
    std::vector<Undo> undo;
    bool spilled;  // part of it may be in the file; everything from before is, and the journal is the way back
    bool failed;   // on the way to the file
  };

  Pager(std::unique_ptr<JournaledFile> file, Probe probe, Limits limits);

  // Does `work`. When it finds that another program has changed the file, this Pager is over.
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
  // Writes pages of the statement into the file. What is in there needs no place in memory.
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
  bool over_ = false;  // another program has changed the file ...
  bool lost_ = false;  // ... before committed statements got there
};

// While one lives all reads of this process belong to one state of the file, whatever another process flushes. Needed
// wherever two pages have to fit each other; may be nested. The writing process pays nothing for it; elsewhere it holds
// back the writer's Flush, so it lasts for one query, never for as long as an operator thinks.
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
