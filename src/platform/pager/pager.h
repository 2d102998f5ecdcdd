// The pages of one file, changed by statements that are all or nothing.
//
// Within the process: committed statements are seen by every later Read at once; they stay in memory until Flush, or
// until some MiB of them have gathered at the begin of a statement. A statement that outgrows that bound goes through
// to the file before it ends; it can still be rolled back. On the disk: after a kill, a full disk or a power failure
// the file holds the first n committed statements, whole ones, and at least all that came before the last Flush that
// returned. That is the work of a rollback journal beside the file, FILE-journal: before a page of the file is
// overwritten its original is durable there. A journal that a crash has left is played back by the next Open; one that
// does not fit the file is set aside as FILE-journal.foreign and changes nothing. Between processes: the process that
// opens a file first may write to it, until its last Pager of that file is gone. Others read; each Reading of theirs
// sees one flushed state. Their first statement asks for the right again and throws when the first process is still
// there. A file that may not be written is opened for reading only.
//
// Memory: 32 MiB of clean pages, 8 MiB of changed ones and their originals, whatever the file's size; pages that
// callers hold come on top. The file is read in blocks of 32 KiB and not mapped: a medium that fails has to give an
// error, not end the program, and encoded pages need their own memory anyway.
//
// Every failure is a PagerError and leaves what was committed unharmed; the call may be tried again. Not for use by
// several threads at once. Pages count from 0.
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

#include "platform/pager/file.h"
#include "platform/pager/page_format.h"
#include "platform/pager/pager_error.h"

namespace marlevo::pager {

class BlockCache;
class PagedFile;

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
  // failed Flush again.
  void Discard() noexcept;

 private:
  friend class Reading;

  struct ChangedPage {
    std::shared_ptr<std::byte[]> bytes;
    bool in_statement;  // changed by the open statement; otherwise committed
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

  Pager(std::unique_ptr<PagedFile> file, Limits limits);

  void BeginReading();
  void EndReading() noexcept;
  void ForgetPages();
  void LoadBlock(std::uint32_t first_page, std::span<std::byte> block);
  void RequirePage(std::uint32_t page) const;
  void RequireStatement() const;
  void SpillIfFull();
  void FlushCommitted();
  // Writes pages of the statement into the file. What is in there needs no place in memory.
  void WriteThrough(std::vector<std::uint32_t> numbers);

  std::unique_ptr<PagedFile> file_;
  Limits limits_;
  std::unique_ptr<BlockCache> clean_;
  std::unordered_map<std::uint32_t, ChangedPage> changed_;
  std::optional<OpenStatement> statement_;
  std::uint32_t page_count_ = 0;
  std::size_t readings_ = 0;
  std::uint64_t version_ = 0;
};

// A statement as a scope: rolled back unless committed.
class Statement {
 public:
  explicit Statement(Pager& pager) : pager_(pager) { pager_.Begin(); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() {
    if (open_) pager_.Rollback();
  }
  void Commit() {
    pager_.Commit();
    open_ = false;
  }

 private:
  Pager& pager_;
  bool open_ = true;
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
