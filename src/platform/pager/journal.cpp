#include "platform/pager/journal.h"

#include <random>
#include <utility>

namespace marlevo::pager {
namespace {

constexpr std::size_t kBufferBytes = std::size_t{1} << 20;

std::uint64_t RandomSalt() {
  std::random_device device;
  return (std::uint64_t{device()} << 32) | device();
}

}  // namespace

bool LooksLikeJournal(DiskFile& file) {
  std::uint64_t mark = 0;
  file.ReadAt(0, std::as_writable_bytes(std::span(&mark, 1)));
  return mark == kJournalMagic || mark == 0;
}

Journal::Journal(FileSystem& files, std::filesystem::path path) : files_(&files), path_(std::move(path)) {}

void Journal::Prepare() {
  if (file_) {
    return;
  }
  std::unique_ptr<DiskFile> file = files_->Open(path_);
  if (!file) {
    file = files_->Create(path_);
    files_->SyncFolder(path_.parent_path());
  }
  if (!LooksLikeJournal(*file)) {
    throw PagerError(path_, "is not a journal of this program and stands in the place of one", Fault::kNotOurs);
  }
  if (!file->Writable()) {
    throw PagerError(path_, "may not be written", Fault::kDenied);
  }
  file_ = std::move(file);
}

void Journal::Start(std::uint32_t page_size, std::uint32_t page_count) {
  JournalHeader header{kJournalMagic, RandomSalt(), page_size, page_count, 0};
  header.hash = HeaderHash(header);
  hash_ = header.hash;
  has_original_.assign(page_count, false);
  buffer_.assign(kJournalHeaderBytes, std::byte{0});
  std::memcpy(buffer_.data(), &header, sizeof header);
  end_ = 0;
}

void Journal::AddOriginal(std::uint32_t page, std::span<const std::byte> original) {
  Add(RecordKind::kOriginal, page, original);
  has_original_[page] = true;
}

void Journal::AddChecksum(std::uint32_t page, std::span<const std::byte> rewrite) {
  std::vector<std::uint64_t> sectors;
  for (std::size_t at = 0; at < rewrite.size(); at += kSectorBytes) {
    sectors.push_back(Hash(0, rewrite.subspan(at, kSectorBytes)));
  }
  Add(RecordKind::kRewrite, page, std::as_bytes(std::span(sectors)));
}

void Journal::EndBatch() {
  Add(RecordKind::kBatchEnd, 0, {});
  WriteOut();
  file_->Sync();
  if (!HasItsName()) {
    throw PagerError(path_, "was removed or replaced by another program", Fault::kChanged);
  }
}

void Journal::Invalidate() {
  file_->Truncate(0);
  file_->Sync();
}

void Journal::Close() noexcept {
  if (!file_) {
    return;
  }
  try {
    const bool own = HasItsName();
    file_.reset();
    if (own) {
      files_->Remove(path_);
    }
  } catch (const PagerError&) {
    // A leftover empty journal is harmless.
  }
  file_.reset();
}

bool Journal::HasItsName() {
  const std::optional<FileStamp> found = files_->Look(path_);
  return found && found->id == file_->Stamp().id;
}

void Journal::Add(RecordKind kind, std::uint32_t page, std::span<const std::byte> bytes) {
  hash_ = RecordHash(hash_, kind, page, bytes);
  const RecordHead head{kind, page, hash_};
  const std::span<const std::byte> head_bytes = std::as_bytes(std::span(&head, 1));
  buffer_.insert(buffer_.end(), head_bytes.begin(), head_bytes.end());
  buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
  if (buffer_.size() >= kBufferBytes) {
    WriteOut();
  }
}

void Journal::WriteOut() {
  file_->WriteAt(end_, buffer_);
  end_ += buffer_.size();
  buffer_.clear();
}

}  // namespace marlevo::pager
