// The file under a pager: reads its pages, changes them under the protection of the journal, takes the locks that
// decide which process may write, and notices what programs that know nothing of these locks do to the file.
//
// Such a change by another program gives a PagerError of Fault::kChanged: from reading, when the file does not look any
// more as it did when its pages were read first; from Write, when a page to be overwritten, or one just written, is not
// what it has to be. What the other program has written stays; the caller can only GiveUp and open the file anew.
//
// A change is Write, as often as needed, then Accept; Settle afterwards makes the journal void. Before Accept, Undo (or
// Settle) puts the file back to what it was before the first Write. Each of them may be repeated after an error. A
// crash is an Undo by the next process that owns the file.
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
    std::shared_ptr<std::byte[]> bytes;  // plain
    // ContentHash of the plain page in the file that this one was made from; none for a new page.
    std::optional<std::uint64_t> base;
  };

  // `final_path`: see Publish; empty for a file that has its name.
  JournaledFile(FileSystem& files, std::filesystem::path path, std::unique_ptr<DiskFile> file,
                std::filesystem::path final_path);
  JournaledFile(const JournaledFile&) = delete;
  JournaledFile& operator=(const JournaledFile&) = delete;
  ~JournaledFile();

  // Before anything that deals with pages.
  void SetFormat(PageFormat format);
  const PageFormat& Format() const { return format_; }
  // The first bytes of the file, at most 4096.
  std::vector<std::byte> Head();

  // The owner is the one process that may write. Own tries to become it, which puts right what a crash has left.
  bool BecomeWriter();
  bool IsWriter() const { return owned_; }
  FileId Id() { return file_->Stamp().id; }
  const std::filesystem::path& Path() const { return path_; }
  bool Writable() const { return file_->Writable(); }
  // While shared the owner does not change the file. Waits for a change under way. May make this process the owner,
  // then nothing is shared.
  void LockForReading();
  void UnlockAfterReading() noexcept;

  // Throws when the file is not as it was when its pages could first be read: `RequireUnchanged` looks at the file that
  // is open, `RequireInPlace` also whether this is still the file of that name.
  void RequireUnchanged();
  void RequireInPlace();
  // Throws Fault::kInUse when another program shows that it has the file open. A sign that one has left behind goes.
  void RequireUnused();

  // Whole pages in the file; for others than the owner, as of the last Share.
  std::uint32_t PageCount() const { return page_count_; }
  void ReadPages(std::uint32_t first, std::span<std::byte> bytes);

  // For the owner. Throws when the file cannot be changed safely.
  void PrepareToWrite();
  // Durable when it returns. `pages` in ascending order, at least one; the file grows as far as they reach.
  void Write(const std::vector<Page>& pages);
  void MarkDone() noexcept { stage_ = Stage::kSettled; }
  void Undo();
  void FinishJournal();
  // Ends all work with the file: takes back what of an unfinished change still stands, and lets go of the locks.
  void GiveUp() noexcept;

  // Gives a new file, which stands settled under a name of its own until then, its final name.
  void Publish();

 private:
  enum class Stage {
    kIdle,
    kTouched,  // the file holds part of a change, the journal the way back
    kSettled,  // the file is whole and durable, the journal not yet void
  };

  void LockContent(LockMode mode);
  void LookAtSize();
  void WriteJournal(const std::vector<Page>& pages);
  void KeepOriginal(std::uint32_t page, std::optional<std::uint64_t> base);
  FileStamp Overwrite(const std::vector<Page>& pages);
  // Whether a page, or these bytes of it, are still what this change has found or put there.
  bool IsStanding(std::uint32_t page, std::span<const std::byte> raw) const;
  bool IsStanding(std::uint32_t page);
  std::uint64_t EndOfOthers(std::uint64_t size);
  std::vector<std::byte> RawPage(std::uint32_t page);
  void EncodeTo(const Page& page, std::span<std::byte> raw) const;
  PagerError Changed(const std::string& how) const { return {path_, how + " another program", Fault::kChanged}; }

  FileSystem& files_;
  std::filesystem::path path_;
  std::filesystem::path final_path_;
  std::unique_ptr<DiskFile> file_;
  Journal journal_;
  PageFormat format_;
  std::uint32_t page_count_ = 0;
  bool whole_pages_ = true;
  bool owned_ = false;
  bool shared_ = false;
  Stage stage_ = Stage::kIdle;
  // A crash has left the file half changed, and another program has changed it since: why it can only be read.
  std::string damage_;
  // As the pages that were read belong to; unknown while a change of this process is on its way into the file.
  std::optional<FileStamp> known_;
  // Of the change on its way: ContentHash of the pages, raw, that it has found or put there, and where those end.
  std::unordered_map<std::uint32_t, std::uint64_t> standing_;
  std::uint32_t reach_ = 0;
};

inline std::uint64_t ContentHash(std::span<const std::byte> page) {
  return Hash(0, page);
}

}  // namespace marlevo::pager
