// The file under a pager: reads its pages, changes them under the protection of the journal, and settles with other
// processes who may write and who has to wait.
//
// A change is Write, as often as needed, then Accept; Settle afterwards makes the journal void. Before Accept, Undo (or
// Settle) puts the file back to what it was before the first Write. Each of them may be repeated after an error. A
// crash is an Undo by the next process that owns the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "platform/pager/file.h"
#include "platform/pager/journal.h"
#include "platform/pager/page_format.h"

namespace marlevo::pager {

class PagedFile {
 public:
  // A page's number and its plain bytes.
  using Page = std::pair<std::uint32_t, std::shared_ptr<std::byte[]>>;

  // `final_path`: see Publish; empty for a file that has its name.
  PagedFile(FileSystem& files, std::filesystem::path path, std::unique_ptr<File> file,
            std::filesystem::path final_path);
  PagedFile(const PagedFile&) = delete;
  PagedFile& operator=(const PagedFile&) = delete;
  ~PagedFile();

  // Before anything that deals with pages.
  void Use(PageFormat format);
  const PageFormat& Format() const { return format_; }
  // The first bytes of the file, at most 4096.
  std::vector<std::byte> Head();

  // The owner is the one process that may write. Own tries to become it, which puts right what a crash has left.
  bool Own();
  bool Owned() const { return owned_; }
  FileId Id() { return file_->Id(); }
  const std::filesystem::path& Path() const { return path_; }
  bool Writable() const { return file_->Writable(); }
  // While shared the owner does not change the file. Waits for a change under way. May make this process the owner,
  // then nothing is shared.
  void Share();
  void Unshare() noexcept;

  // Whole pages in the file; for others than the owner, as of the last Share.
  std::uint32_t PageCount() const { return page_count_; }
  void ReadPages(std::uint32_t first, std::span<std::byte> bytes);

  // For the owner. Throws when the file cannot be changed safely.
  void PrepareToWrite();
  // Durable when it returns. `pages` in ascending order, at least one; the file grows as far as they reach.
  void Write(const std::vector<Page>& pages);
  void Accept() noexcept { stage_ = Stage::kSettled; }
  void Undo();
  void Settle();

  // Gives a new file, which stands settled under a name of its own until then, its final name.
  void Publish();

 private:
  enum class Stage {
    kIdle,
    kTouched,  // the file holds part of a change, the journal the way back
    kSettled,  // the file is whole and durable, the journal not yet void
  };

  void LockContent(LockMode mode);
  // A journal that has to be played back lies beside the file.
  bool FoundUnfinished();
  void Recover();
  void LookAtSize();
  void WriteJournal(const std::vector<Page>& pages);
  std::vector<std::byte> RawPage(std::uint32_t page);
  void EncodeTo(const Page& page, std::span<std::byte> raw) const;

  FileSystem& files_;
  std::filesystem::path path_;
  std::filesystem::path final_path_;
  std::unique_ptr<File> file_;
  Journal journal_;
  PageFormat format_;
  std::uint32_t page_count_ = 0;
  bool whole_pages_ = true;
  bool owned_ = false;
  bool shared_ = false;
  Stage stage_ = Stage::kIdle;
};

}  // namespace marlevo::pager
