#include "platform/pager/journaled_file.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "platform/pager/leftover_journal.h"
#include "platform/pager/recovery.h"

namespace marlevo::pager {
namespace {

constexpr std::size_t kHeadBytes = 4096;
// Pages that follow each other are written together, in runs of about this many bytes.
constexpr std::size_t kRunBytes = std::size_t{1} << 18;

}  // namespace

JournaledFile::JournaledFile(FileSystem& files, std::filesystem::path path, std::unique_ptr<DiskFile> file,
                             std::filesystem::path final_path)
    : files_(files),
      path_(std::move(path)),
      final_path_(std::move(final_path)),
      file_(std::move(file)),
      journal_(files, JournalPath(path_)) {}

JournaledFile::~JournaledFile() {
  if (stage_ != Stage::kIdle) {
    return;  // Whoever opens the file next needs the journal.
  }
  journal_.Close();
  if (final_path_.empty() || path_ == final_path_) {
    return;
  }
  try {
    files_.Remove(path_);
  } catch (const PagerError&) {
    // Pager::Create removes such a file before it makes the next one.
  }
}

void JournaledFile::SetFormat(PageFormat format) {
  if (!std::has_single_bit(format.page_size) || format.page_size < kMinPageBytes || format.page_size > kMaxPageBytes) {
    throw std::logic_error("no such page size");
  }
  format_ = std::move(format);
  sign_of_use_.clear();
  if (!format_.sign_of_use.empty()) {
    (sign_of_use_ = path_).replace_extension(format_.sign_of_use);
  }
  LookAtSize();
}

std::vector<std::byte> JournaledFile::Head() {
  std::vector<std::byte> head(kHeadBytes);
  head.resize(file_->ReadAt(0, head));
  return head;
}

bool JournaledFile::BecomeWriter() {
  if (is_writer_) {
    return true;
  }
  if (!file_->Writable() || !file_->Lock(LockKind::kWriter, LockMode::kExclusive, false)) {
    return false;
  }
  try {
    // A process that holds the lock for reading has seen in LockForReading that no half change is in the file, and no
    // other process can begin one. Without that lock the content has to be locked before a journal is played back.
    if (!locked_for_reading_) {
      LockContent(LockMode::kExclusive);
    }
    damage_ = RecoverFile(files_, path_, *file_);
  } catch (...) {
    if (!locked_for_reading_) {
      file_->Unlock(LockKind::kContent);
    }
    file_->Unlock(LockKind::kWriter);
    throw;
  }
  file_->Unlock(LockKind::kContent);
  if (!std::exchange(locked_for_reading_, false)) {
    LookAtSize();
    known_ = file_->Stamp();
  }
  is_writer_ = true;
  return true;
}

void JournaledFile::LockForReading() {
  while (!is_writer_) {
    LockContent(LockMode::kShared);
    locked_for_reading_ = true;
    try {
      if (!IsHalfChanged(files_, path_, *file_)) {
        break;
      }
    } catch (...) {
      UnlockAfterReading();
      throw;
    }
    // A living writer changes the file only while nobody has the lock for reading, so the writer of this half change is
    // dead. Either this process repairs the file now, or another one is repairing it and the next round waits for that.
    UnlockAfterReading();
    if (!file_->Writable()) {
      throw PagerError(path_,
                       "was left in the middle of a change and cannot be repaired, because it may not be written",
                       Fault::kDenied);
    }
    BecomeWriter();
  }
  LookAtSize();
  if (!is_writer_) {
    known_ = file_->Stamp();
  }
}

void JournaledFile::UnlockAfterReading() noexcept {
  if (locked_for_reading_) {
    file_->Unlock(LockKind::kContent);
  }
  locked_for_reading_ = false;
}

void JournaledFile::ReadPages(std::uint32_t first, std::span<std::byte> bytes) {
  const std::size_t size = format_.page_size;
  const std::size_t n = file_->ReadAt(std::uint64_t{first} * size, bytes);
  RequireUnchanged();
  if (n != bytes.size()) {
    throw PagerError(path_,
                     "ends inside page " + std::to_string(first + n / size) + " of " + std::to_string(page_count_),
                     Fault::kDamaged);
  }
  if (!format_.crypt) {
    return;
  }
  for (std::size_t at = 0; at < bytes.size(); at += size) {
    const std::uint32_t page = first + PageAt(at);
    if (page != 0) {
      format_.crypt(page, bytes.subspan(at, size));
    }
  }
}

void JournaledFile::RequireUnchanged() {
  if (known_ && file_->Stamp() != *known_) {
    throw Changed("was changed by");
  }
}

void JournaledFile::RequireInPlace() {
  const std::optional<FileStamp> found = files_.Look(path_);
  if (!found) {
    throw Changed("was removed by");
  }
  if (found->id != file_->Stamp().id) {
    throw Changed("was replaced by");
  }
  RequireUnchanged();
}

void JournaledFile::RequireUnused() {
  // Every statement comes here, and looking takes half as long as trying to remove.
  if (!sign_of_use_.empty() && files_.Look(sign_of_use_) && !files_.RemoveUnused(sign_of_use_)) {
    throw PagerError(sign_of_use_, "shows that another program has the file open; close it there and try again",
                     Fault::kInUse);
  }
}

void JournaledFile::PrepareToWrite() {
  if (!damage_.empty()) {
    throw PagerError(path_, damage_, Fault::kDamaged);
  }
  if (!whole_pages_) {
    throw PagerError(path_, "is not made of whole pages and can only be read", Fault::kDamaged);
  }
  journal_.Prepare();
}

void JournaledFile::Write(const std::vector<Page>& pages) {
  if (stage_ == Stage::kIdle) {
    LockContent(LockMode::kExclusive);
    stage_ = Stage::kDone;  // the file is still whole: if writing the journal fails, nothing has to be undone
    expected_.clear();
    new_page_count_ = page_count_;
    journal_.Start(format_.page_size, page_count_);
  }
  WriteJournal(pages);
  RequireUnused();
  RequireInPlace();
  stage_ = Stage::kTouched;
  known_.reset();
  known_ = Overwrite(pages);
  file_->Sync();
  // Some systems set the time of a write only with the sync, so a new stamp alone does not mean another program. If all
  // pages just written are still there, the new stamp is taken as known: another program, if there was one, has written
  // other pages, and those are read anew. Otherwise the old stamp stays, and the next look at the file throws.
  const FileStamp synced = file_->Stamp();
  if (synced != *known_ && std::ranges::all_of(pages, [&](const Page& page) { return IsExpected(page.number); })) {
    known_ = synced;
  }
  page_count_ = new_page_count_;
}

FileStamp JournaledFile::Overwrite(const std::vector<Page>& pages) {
  const std::size_t size = format_.page_size;
  std::vector<DiskFile::Piece> pieces;
  for (const Page& page : pages) {
    const std::uint64_t offset = std::uint64_t{page.number} * size;
    if (pieces.empty() || pieces.back().offset + pieces.back().bytes.size() != offset ||
        pieces.back().bytes.size() >= kRunBytes) {
      pieces.push_back({offset, {}});
      pieces.back().bytes.reserve(kRunBytes);
    }
    std::vector<std::byte>& run = pieces.back().bytes;
    run.resize(run.size() + size);
    EncodeTo(page, std::span(run).last(size));
  }
  const auto unchanged = [&](const DiskFile::Piece& piece, std::span<const std::byte> now) {
    std::uint32_t page = PageAt(piece.offset);
    const std::uint32_t end = PageAt(piece.offset + piece.bytes.size());
    for (; now.size() >= size && IsExpected(page, now.first(size)); ++page) {
      now = now.subspan(size);
    }
    // When the file ends inside the piece, the page at its end has to be a new one.
    return now.empty() && (page == end || !expected_.contains(page));
  };
  new_page_count_ = std::max(new_page_count_, pages.back().number + 1);
  std::optional<FileStamp> stamp;
  try {
    stamp = file_->Overwrite(pieces, unchanged);
  } catch (const PagerError&) {
    // The disk has failed while these pages were written: their content is unknown now.
    for (const Page& page : pages) {
      expected_.erase(page.number);
    }
    throw;
  }
  if (!stamp) {
    new_page_count_ = page_count_;
    throw Changed("was changed by");
  }
  for (const DiskFile::Piece& piece : pieces) {
    for (std::size_t at = 0; at < piece.bytes.size(); at += size) {
      expected_[PageAt(piece.offset + at)] = ContentHash(std::span(piece.bytes).subspan(at, size));
    }
  }
  return *stamp;
}

bool JournaledFile::IsExpected(std::uint32_t page, std::span<const std::byte> raw) const {
  const auto found = expected_.find(page);
  if (found != expected_.end()) {
    return found->second == ContentHash(raw);
  }
  // The change has not written this page yet. A new page that lies before one already written reads as zeros.
  return std::ranges::all_of(raw, [](std::byte byte) { return byte == std::byte{0}; });
}

bool JournaledFile::IsExpected(std::uint32_t page) {
  std::vector<std::byte> raw(format_.page_size);
  return file_->ReadAt(std::uint64_t{page} * raw.size(), raw) == raw.size() && IsExpected(page, raw);
}

void JournaledFile::Undo() {
  if (stage_ != Stage::kTouched) {
    return;
  }
  const Recovery recovery(journal_.Opened());
  if (!recovery.Unfinished()) {
    throw PagerError(journal_.Path(), "is damaged and cannot undo a broken change", Fault::kDamaged);
  }
  const std::uint64_t size = file_->Size();
  const std::uint64_t whole = PagesToKeep(size) * format_.page_size;
  known_.reset();
  bool strange = false;
  recovery.RestorePages(*file_, [&](std::uint32_t page, bool known) {
    if (expected_.contains(page)) {
      known = IsExpected(page);
    }
    // The page is overwritten now. If the disk fails at it, its content is unknown, and the next Undo asks the journal.
    if (known) {
      expected_.erase(page);
    }
    strange = strange || !known;
    return known;
  });
  if (whole < size) {
    file_->Truncate(whole);
  }
  file_->Sync();
  known_ = file_->Stamp();
  LookAtSize();
  stage_ = Stage::kDone;
  if (strange || page_count_ != journal_.PageCount()) {
    throw Changed("was overwritten at the same time by");
  }
}

// How many pages an Undo leaves in a file of `size` bytes: the pages from before the change and, behind them,
// everything up to the last page that another program has written. New pages of the change go, also those whose writing
// failed and which may look like anything.
std::uint64_t JournaledFile::PagesToKeep(std::uint64_t size) {
  for (std::uint32_t end = PageAt(size); end > journal_.PageCount(); --end) {
    const std::uint32_t page = end - 1;
    if (page >= new_page_count_ || (expected_.contains(page) && !IsExpected(page))) {
      return end;
    }
  }
  return journal_.PageCount();
}

void JournaledFile::FinishJournal() {
  Undo();
  if (stage_ != Stage::kDone) {
    return;
  }
  journal_.Invalidate();
  stage_ = Stage::kIdle;
  file_->Unlock(LockKind::kContent);
}

void JournaledFile::GiveUp() noexcept {
  // The first attempt may throw that another program has written to the file; by then the change is undone, and the
  // second attempt makes the journal void.
  for (int attempt = 0; attempt < 2 && stage_ != Stage::kIdle; ++attempt) {
    try {
      FinishJournal();
    } catch (const PagerError&) {
      // Whoever opens the file next finds the journal.
    }
  }
  if (stage_ == Stage::kIdle) {
    journal_.Close();
  }
  for (const LockKind lock : {LockKind::kContent, LockKind::kWriter}) {
    file_->Unlock(lock);
  }
  is_writer_ = locked_for_reading_ = false;
}

void JournaledFile::Publish() {
  if (final_path_.empty()) {
    return;
  }
  if (path_ != final_path_) {
    journal_.Close();
    files_.Rename(path_, final_path_, false);
    path_ = final_path_;
    journal_ = Journal(files_, JournalPath(path_));
  }
  files_.SyncFolder(path_.parent_path());
  final_path_.clear();
}

void JournaledFile::LockContent(LockMode mode) {
  file_->Lock(LockKind::kPending, mode, true);
  try {
    file_->Lock(LockKind::kContent, mode, true);
  } catch (...) {
    file_->Unlock(LockKind::kPending);
    throw;
  }
  file_->Unlock(LockKind::kPending);
}

void JournaledFile::LookAtSize() {
  if (format_.page_size == 0) {
    return;  // not yet known
  }
  const std::uint64_t size = file_->Size();
  page_count_ = PageAt(size);
  whole_pages_ = size % format_.page_size == 0;
}

void JournaledFile::WriteJournal(const std::vector<Page>& pages) {
  std::vector<std::byte> raw(format_.page_size);
  // The journal always has the original of page 0, by which recovery tells one file from another.
  if (pages.front().number != 0) {
    AddOriginalOnce(0, std::nullopt);
  }
  for (const Page& page : pages) {
    if (!journal_.Covers(page.number)) {
      break;
    }
    AddOriginalOnce(page.number, page.base.value());
    EncodeTo(page, raw);
    journal_.AddChecksum(page.number, raw);
  }
  journal_.EndBatch();
}

// `base`: ContentHash that the page must have, if that is known.
void JournaledFile::AddOriginalOnce(std::uint32_t page, std::optional<std::uint64_t> base) {
  if (!journal_.Covers(page) || journal_.HasOriginal(page)) {
    return;
  }
  const std::vector<std::byte> raw = RawPage(page);
  if (base) {
    std::vector<std::byte> plain = raw;
    if (format_.crypt && page != 0) {
      format_.crypt(page, plain);
    }
    if (ContentHash(plain) != *base) {
      throw Changed("was changed by");
    }
  }
  journal_.AddOriginal(page, raw);
  expected_[page] = ContentHash(raw);
}

std::vector<std::byte> JournaledFile::RawPage(std::uint32_t page) {
  std::vector<std::byte> raw(format_.page_size);
  if (file_->ReadAt(std::uint64_t{page} * raw.size(), raw) != raw.size()) {
    throw Changed("was cut by");
  }
  return raw;
}

void JournaledFile::EncodeTo(const Page& page, std::span<std::byte> raw) const {
  std::memcpy(raw.data(), page.bytes.get(), raw.size());
  if (format_.crypt && page.number != 0) {
    format_.crypt(page.number, raw);
  }
}

}  // namespace marlevo::pager
