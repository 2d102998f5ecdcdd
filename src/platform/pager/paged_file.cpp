#include "platform/pager/paged_file.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <stdexcept>

#include "platform/pager/recovery.h"

namespace marlevo::pager {
namespace {

constexpr std::size_t kHeadBytes = 4096;
// Pages that follow each other are written together, up to this much.
constexpr std::size_t kRunBytes = std::size_t{1} << 18;

}  // namespace

PagedFile::PagedFile(FileSystem& files, std::filesystem::path path, std::unique_ptr<File> file,
                     std::filesystem::path final_path)
    : files_(files),
      path_(std::move(path)),
      final_path_(std::move(final_path)),
      file_(std::move(file)),
      journal_(files, JournalPath(path_)) {}

PagedFile::~PagedFile() {
  if (stage_ != Stage::kIdle) return;  // The journal is needed by whoever opens the file next.
  journal_.Close();
  if (final_path_.empty() || path_ == final_path_) return;
  try {
    files_.Remove(path_);
  } catch (const PagerError&) {
    // The next file of that name replaces it.
  }
}

void PagedFile::Use(PageFormat format) {
  if (!std::has_single_bit(format.page_size) || format.page_size < kMinPageBytes || format.page_size > kMaxPageBytes) {
    throw std::logic_error("no such page size");
  }
  format_ = std::move(format);
  LookAtSize();
}

std::vector<std::byte> PagedFile::Head() {
  std::vector<std::byte> head(kHeadBytes);
  head.resize(file_->ReadAt(0, head));
  return head;
}

bool PagedFile::Own() {
  if (owned_) return true;
  if (!file_->Writable() || !file_->Lock(LockKind::kWriter, LockMode::kExclusive, false)) return false;
  if (shared_) {
    // Nobody has changed the file since Share, and it was whole then.
    Unshare();
  } else {
    try {
      LockContent(LockMode::kExclusive);
      Recover();
    } catch (...) {
      file_->Unlock(LockKind::kContent);
      file_->Unlock(LockKind::kWriter);
      throw;
    }
    file_->Unlock(LockKind::kContent);
    LookAtSize();
  }
  owned_ = true;
  return true;
}

void PagedFile::Share() {
  while (!owned_) {
    LockContent(LockMode::kShared);
    shared_ = true;
    try {
      if (!FoundUnfinished()) break;
    } catch (...) {
      Unshare();
      throw;
    }
    // An owner changes the file only while nobody shares it, so this one is dead. Either the file gets well here or
    // another process is just about it, and the next round waits for that one.
    Unshare();
    if (!file_->Writable()) {
      throw PagerError(path_,
                       "was left in the middle of a change and cannot be repaired, because it may not be written",
                       Fault::kDenied);
    }
    Own();
  }
  LookAtSize();
}

void PagedFile::Unshare() noexcept {
  if (shared_) file_->Unlock(LockKind::kContent);
  shared_ = false;
}

void PagedFile::ReadPages(std::uint32_t first, std::span<std::byte> bytes) {
  const std::size_t size = format_.page_size;
  if (const std::size_t n = file_->ReadAt(std::uint64_t{first} * size, bytes); n != bytes.size()) {
    throw PagerError(path_,
                     "ends inside page " + std::to_string(first + n / size) + " of " + std::to_string(page_count_),
                     Fault::kDamaged);
  }
  if (!format_.crypt) return;
  for (std::size_t at = 0; at < bytes.size(); at += size) {
    const auto page = static_cast<std::uint32_t>(first + at / size);
    if (page != 0) format_.crypt(page, bytes.subspan(at, size));
  }
}

void PagedFile::PrepareToWrite() {
  if (!whole_pages_) {
    throw PagerError(path_, "is not made of whole pages and can only be read", Fault::kDamaged);
  }
  journal_.Prepare();
}

void PagedFile::Write(const std::vector<Page>& pages) {
  if (stage_ == Stage::kIdle) {
    LockContent(LockMode::kExclusive);
    stage_ = Stage::kSettled;  // the file is still whole: if the journal breaks off it is only made void
    journal_.Start(format_.page_size, page_count_);
  }
  WriteJournal(pages);
  stage_ = Stage::kTouched;

  const std::size_t size = format_.page_size;
  std::vector<std::byte> run;
  for (auto from = pages.begin(); from != pages.end();) {
    auto to = from;
    run.clear();
    while (to != pages.end() && to->first == from->first + (to - from) && run.size() < kRunBytes) {
      run.resize(run.size() + size);
      EncodeTo(*to, std::span(run).last(size));
      ++to;
    }
    file_->WriteAt(std::uint64_t{from->first} * size, run);
    from = to;
  }
  file_->Sync();
  page_count_ = std::max(page_count_, pages.back().first + 1);
}

void PagedFile::Undo() {
  if (stage_ != Stage::kTouched) return;
  const std::unique_ptr<File> journal = files_.Open(journal_.Path());
  if (!journal) {
    throw PagerError(journal_.Path(), "is gone, and with it the way back from a broken change", Fault::kDamaged);
  }
  const Recovery recovery(*journal);
  if (!recovery.Unfinished()) {
    throw PagerError(journal_.Path(), "is damaged and cannot undo a broken change", Fault::kDamaged);
  }
  recovery.PlayBack(*file_);
  LookAtSize();
  stage_ = Stage::kSettled;
}

void PagedFile::Settle() {
  Undo();
  if (stage_ != Stage::kSettled) return;
  journal_.Retire();
  stage_ = Stage::kIdle;
  file_->Unlock(LockKind::kContent);
}

void PagedFile::Publish() {
  if (final_path_.empty()) return;
  if (path_ != final_path_) {
    journal_.Close();
    files_.Rename(path_, final_path_, false);
    path_ = final_path_;
    journal_ = Journal(files_, JournalPath(path_));
  }
  files_.SyncFolder(path_.parent_path());
  final_path_.clear();
}

void PagedFile::LockContent(LockMode mode) {
  file_->Lock(LockKind::kPending, mode, true);
  try {
    file_->Lock(LockKind::kContent, mode, true);
  } catch (...) {
    file_->Unlock(LockKind::kPending);
    throw;
  }
  file_->Unlock(LockKind::kPending);
}

bool PagedFile::FoundUnfinished() {
  const std::unique_ptr<File> journal = files_.Open(JournalPath(path_));
  if (!journal) return false;
  const Recovery recovery(*journal);
  return recovery.Unfinished() && recovery.Fits(*file_);
}

void PagedFile::Recover() {
  const std::filesystem::path path = JournalPath(path_);
  std::unique_ptr<File> journal = files_.Open(path);
  if (!journal) return;
  bool foreign = false;
  {
    const Recovery recovery(*journal);
    foreign = recovery.Unfinished() && !recovery.Fits(*file_);
    if (recovery.Unfinished() && !foreign) {
      recovery.PlayBack(*file_);
      journal->Truncate(0);
      journal->Sync();
    }
  }
  journal.reset();
  try {
    if (foreign) {
      std::filesystem::path aside = path;
      aside += ".foreign";
      files_.Rename(path, aside, true);
    } else {
      files_.Remove(path);
    }
  } catch (const PagerError&) {
    // It is void where it lies, and the file can be read beside it.
  }
}

void PagedFile::LookAtSize() {
  if (format_.page_size == 0) return;  // not yet known
  const std::uint64_t size = file_->Size();
  page_count_ = static_cast<std::uint32_t>(size / format_.page_size);
  whole_pages_ = size % format_.page_size == 0;
}

void PagedFile::WriteJournal(const std::vector<Page>& pages) {
  // The first page is always kept: it tells one file from another.
  if (journal_.Covers(0) && !journal_.Keeps(0)) journal_.Keep(0, RawPage(0));
  std::vector<std::byte> raw(format_.page_size);
  for (const Page& page : pages) {
    if (!journal_.Covers(page.first)) break;
    if (!journal_.Keeps(page.first)) journal_.Keep(page.first, RawPage(page.first));
    EncodeTo(page, raw);
    journal_.Announce(page.first, raw);
  }
  journal_.Seal();
}

std::vector<std::byte> PagedFile::RawPage(std::uint32_t page) {
  std::vector<std::byte> raw(format_.page_size);
  if (file_->ReadAt(std::uint64_t{page} * raw.size(), raw) != raw.size()) {
    throw PagerError(path_, "ends inside page " + std::to_string(page), Fault::kDamaged);
  }
  return raw;
}

void PagedFile::EncodeTo(const Page& page, std::span<std::byte> raw) const {
  std::memcpy(raw.data(), page.second.get(), raw.size());
  if (format_.crypt && page.first != 0) format_.crypt(page.first, raw);
}

}  // namespace marlevo::pager
