// The file under a pager: reads its pages, changes them under the protection of the journal, takes the locks that
// decide which process may write, and notices when programs that do not know these locks change the file.
//
// The order of a change:
//   1. Write, as often as needed. Each Write puts originals and checksums into the journal, syncs the journal, and only
//      then overwrites the pages and syncs the file.
//   2. MarkDone: from here on the change stays.
//   3. FinishJournal makes the journal void.
// Before MarkDone, Undo or FinishJournal puts the file back to what it was before the first Write. Example: Write(3),
// Write(7), FinishJournal leaves pages 3 and 7 as they were; Write(3), Write(7), MarkDone, FinishJournal keeps both
// changes. After an error each of these calls may be repeated. When the process dies before step 3, the next process
// that becomes the writer does an Undo: a change whose journal is not void yet is not kept.
//
// A change by another program gives a PagerError of Fault::kChanged: from reading, when the file no longer looks as it
// did when its pages were read first; from Write, when a page to be overwritten, or one just written, has other content
// than expected. What the other program has written stays. The caller can only GiveUp and open the file anew.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/pager/disk_file.h"
#include "platform/pager/journal.h"
#include "platform/pager/page_format.h"

namespace marlevo::pager {

class JournaledFile {
 public:
  struct Page {
    std::uint32_t number;
    std::shared_ptr<std::byte[]> bytes;  // not encoded
    // ContentHash of the page in the file, decoded, that this one was made from; none for a new page.
    std::optional<std::uint64_t> base;
  };

  // `final_path`: the name that Publish gives to a new file; empty for a file that has its name already.
  JournaledFile(FileSystem& files, std::filesystem::path path, std::unique_ptr<DiskFile> file,
                std::filesystem::path final_path);
  JournaledFile(const JournaledFile&) = delete;
  JournaledFile& operator=(const JournaledFile&) = delete;
  ~JournaledFile();

  // To be called before anything that deals with pages.
  void SetFormat(PageFormat format);
  const PageFormat& Format() const { return format_; }
  // The first bytes of the file, at most 4096.
  std::vector<std::byte> Head();

  // The writer is the one process that may change the file. BecomeWriter returns false when another process is the
  // writer; otherwise it plays back what a crash has left.
  bool BecomeWriter();
  bool IsWriter() const { return is_writer_; }
  FileId Id() { return file_->Stamp().id; }
  const std::filesystem::path& Path() const { return path_; }
  bool Writable() const { return file_->Writable(); }
  // Keeps the writer from changing the file until UnlockAfterReading; waits for a change under way. When a crash has
  // left the file half changed, this process becomes the writer to repair it, and then needs no lock for reading.
  void LockForReading();
  void UnlockAfterReading() noexcept;

  // Both throw when the file is not as it was when its pages were first read. RequireUnchanged looks at the file that
  // is open; RequireInPlace also looks whether the file of that name is still this one.
  void RequireUnchanged();
  void RequireInPlace();
  // Throws Fault::kInUse when another program shows that it has the file open (PageFormat::sign_of_use). Removes a sign
  // that a program has left behind.
  void RequireUnused();

  // Whole pages in the file. In a process that is not the writer: at the last LockForReading.
  std::uint32_t PageCount() const { return page_count_; }
  void ReadPages(std::uint32_t first, std::span<std::byte> bytes);

  // The calls from here to GiveUp are for the writer. PrepareToWrite throws when the file cannot be changed safely.
  void PrepareToWrite();
  // When it returns, the pages are durable. `pages` in ascending order, at least one; the file grows to hold them all.
  void Write(const std::vector<Page>& pages);
  void MarkDone() noexcept { stage_ = Stage::kDone; }
  void Undo();
  void FinishJournal();
  // Ends all work with the file: undoes an unfinished change where no other program has overwritten it, and releases
  // the locks.
  void GiveUp() noexcept;

  // Gives a new file its final name. No change is under way then.
  void Publish();

 private:
  enum class Stage {
    kIdle,     // no change is under way
    kTouched,  // the file holds a change, or part of one, that the journal can undo
    kDone,     // the file is whole and durable, the journal is not void yet
  };

  void LockContent(LockMode mode);
  void LookAtSize();
  void WriteJournal(const std::vector<Page>& pages);
  void AddOriginalOnce(std::uint32_t page, std::optional<std::uint64_t> base);
  FileStamp Overwrite(const std::vector<Page>& pages);
  std::uint32_t PageAt(std::uint64_t offset) const { return static_cast<std::uint32_t>(offset / format_.page_size); }
  // Whether the page, or `raw` as its bytes in the file, is still what the change under way has found or written there.
  bool IsExpected(std::uint32_t page, std::span<const std::byte> raw) const;
  bool IsExpected(std::uint32_t page);
  std::uint64_t PagesToKeep(std::uint64_t size);
  std::vector<std::byte> RawPage(std::uint32_t page);
  void EncodeTo(const Page& page, std::span<std::byte> raw) const;
  PagerError Changed(const std::string& how) const { return {path_, how + " another program", Fault::kChanged}; }

  FileSystem& files_;
  std::filesystem::path path_;
  std::filesystem::path final_path_;
  std::unique_ptr<DiskFile> file_;
  Journal journal_;
  PageFormat format_;
  std::filesystem::path sign_of_use_;  // empty when other programs keep none
  std::uint32_t page_count_ = 0;
  bool whole_pages_ = true;
  bool is_writer_ = false;
  bool locked_for_reading_ = false;
  Stage stage_ = Stage::kIdle;
  // Not empty: a crash has left the file half changed, and another program has changed it since. Says why the file can
  // only be read.
  std::string damage_;
  // The stamp that the file has as long as no other program writes to it; none while this process is writing, or after
  // its writing failed.
  std::optional<FileStamp> known_;
  // The change under way: by page, ContentHash of the bytes that it has found in the file or has written there since;
  // and how many pages the file has with what was written.
  std::unordered_map<std::uint32_t, std::uint64_t> expected_;
  std::uint32_t new_page_count_ = 0;
};

inline std::uint64_t ContentHash(std::span<const std::byte> page) {
  return Hash(0, page);
}

}  // namespace marlevo::pager
