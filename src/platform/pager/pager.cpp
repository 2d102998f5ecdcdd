#include "platform/pager/pager.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <stdexcept>

#include "platform/pager/block_cache.h"
#include "platform/pager/paged_file.h"

namespace marlevo::pager {
namespace {

std::filesystem::path NewPath(const std::filesystem::path& path) {
  std::filesystem::path name = path;
  name += "-new";
  return name;
}

// The pagers of this process. The file system is part of the key, since its ids mean nothing to another.
std::weak_ptr<Pager>& Registered(FileSystem& files, FileId id) {
  static std::map<std::pair<FileSystem*, FileId>, std::weak_ptr<Pager>> pagers;
  std::erase_if(pagers, [](const auto& entry) { return entry.second.expired(); });
  return pagers[{&files, id}];
}

}  // namespace

std::shared_ptr<Pager> Pager::Open(const std::filesystem::path& path, const Probe& probe, FileSystem& files,
                                   Limits limits) {
  const std::filesystem::path name = files.Resolve(path);
  std::unique_ptr<File> opened = files.Open(name);
  if (!opened) throw PagerError(path, "does not exist", Fault::kMissing);
  const FileId id = opened->Id();
  if (std::shared_ptr<Pager> pager = Registered(files, id).lock()) return pager;

  auto file = std::make_unique<PagedFile>(files, name, std::move(opened), std::filesystem::path());
  if (!file->Own()) file->Share();
  file->Use(probe(file->Head()));
  file->Unshare();
  std::shared_ptr<Pager> pager(new Pager(std::move(file), limits));
  Registered(files, id) = pager;
  return pager;
}

std::shared_ptr<Pager> Pager::Create(const std::filesystem::path& path, PageFormat format, FileSystem& files,
                                     Limits limits) {
  const std::filesystem::path name = files.Resolve(path);
  if (files.Open(name)) throw PagerError(path, "exists already");
  const std::filesystem::path new_name = NewPath(name);
  if (const std::unique_ptr<File> left = files.Open(new_name)) {
    if (!left->Lock(LockKind::kWriter, LockMode::kExclusive, false)) {
      throw PagerError(path, "is being created by another program");
    }
    files.Remove(new_name);
  }
  files.Remove(JournalPath(new_name));
  auto file = std::make_unique<PagedFile>(files, new_name, files.Create(new_name), name);
  const FileId id = file->Id();
  if (!file->Own()) throw PagerError(path, "is being created by another program");
  file->Use(std::move(format));
  std::shared_ptr<Pager> pager(new Pager(std::move(file), limits));
  Registered(files, id) = pager;
  return pager;
}

Pager::Pager(std::unique_ptr<PagedFile> file, Limits limits)
    : file_(std::move(file)),
      limits_(limits),
      clean_(std::make_unique<BlockCache>(
          PageSize(), limits.clean / BlockCache::kBlockBytes,
          [this](std::uint32_t first_page, std::span<std::byte> block) { LoadBlock(first_page, block); })),
      page_count_(file_->PageCount()) {}

Pager::~Pager() {
  if (statement_) Rollback();
  try {
    Flush();
  } catch (const PagerError&) {
    // What the journal still holds is put right by the next Open.
  }
}

std::uint32_t Pager::PageCount() const {
  return page_count_;
}

std::size_t Pager::PageSize() const {
  return file_->Format().page_size;
}

bool Pager::ReadOnly() const {
  return !file_->Writable();
}

PageRef Pager::Read(std::uint32_t page) {
  if (readings_ == 0 && !file_->Owned()) {
    const Reading reading(*this);
    return Read(page);
  }
  RequirePage(page);
  if (!changed_.empty()) {
    if (const auto found = changed_.find(page); found != changed_.end()) {
      const std::shared_ptr<std::byte[]>& bytes = found->second.bytes;
      return {std::shared_ptr<const std::byte>(bytes, bytes.get()), PageSize()};
    }
  }
  return {clean_->Page(page), PageSize()};
}

bool Pager::InStatement() const {
  return statement_.has_value();
}

void Pager::Begin() {
  if (statement_) throw std::logic_error("a statement is open already");
  if (ReadOnly()) throw PagerError(file_->Path(), "may not be written", Fault::kDenied);
  if (!file_->Owned()) {
    if (!file_->Own()) {
      throw PagerError(file_->Path(), "is open for writing in another program", Fault::kInUse);
    }
    if (readings_ == 0) ForgetPages();
  }
  file_->PrepareToWrite();
  if (changed_.size() * PageSize() > limits_.changed / 2) FlushCommitted();
  statement_ = OpenStatement{page_count_, {}, false, false};
}

PageEdit Pager::Change(std::uint32_t page) {
  RequireStatement();
  RequirePage(page);
  ++version_;
  if (const auto found = changed_.find(page); found != changed_.end() && found->second.in_statement) {
    return {found->second.bytes, PageSize()};
  }
  SpillIfFull();
  const PageRef now = Read(page);
  auto bytes = std::make_shared_for_overwrite<std::byte[]>(PageSize());
  std::memcpy(bytes.get(), now.Bytes().data(), PageSize());
  if (!statement_->spilled) {
    const auto committed = changed_.find(page);
    statement_->undo.push_back({page, committed == changed_.end() ? nullptr : committed->second.bytes});
  }
  changed_[page] = {bytes, true};
  return {std::move(bytes), PageSize()};
}

std::uint32_t Pager::Append() {
  RequireStatement();
  SpillIfFull();
  auto bytes = std::make_shared<std::byte[]>(PageSize());
  if (!statement_->spilled) statement_->undo.push_back({page_count_, nullptr});
  changed_[page_count_] = {std::move(bytes), true};
  return page_count_++;
}

void Pager::Commit() {
  RequireStatement();
  const bool spilled = statement_->spilled;
  if (spilled) {
    std::vector<std::uint32_t> numbers;
    for (const auto& [number, page] : changed_) numbers.push_back(number);
    WriteThrough(std::move(numbers));
    file_->Accept();
  } else {
    for (const Undo& undo : statement_->undo) changed_[undo.page].in_statement = false;
  }
  statement_.reset();
  if (!spilled) return;
  try {
    file_->Settle();
  } catch (const PagerError&) {
    // The statement is done; the next Flush tries again and reports.
  }
}

void Pager::Rollback() noexcept {
  if (!statement_) return;
  const OpenStatement statement = std::move(*statement_);
  statement_.reset();
  page_count_ = statement.page_count;
  ++version_;
  if (!statement.spilled) {
    for (const Undo& undo : statement.undo) {
      if (undo.before) {
        changed_[undo.page] = {undo.before, false};
      } else {
        changed_.erase(undo.page);
      }
    }
    return;
  }
  changed_.clear();
  clean_->Clear();
  try {
    file_->Settle();
  } catch (const PagerError&) {
    // Nothing is read from the file before it has been put back: LoadBlock tries again and reports.
  }
}

void Pager::Flush() {
  // A process that does not own the file has nothing committed; before a statement spilled everything else was flushed.
  if (!file_->Owned() || (statement_ && statement_->spilled)) return;
  FlushCommitted();
  if (page_count_ > 0 && !statement_) file_->Publish();
}

void Pager::Discard() noexcept {
  Rollback();
  if (changed_.empty()) return;
  changed_.clear();
  page_count_ = file_->PageCount();
  ++version_;
}

void Pager::BeginReading() {
  if (readings_ == 0 && !file_->Owned()) {
    file_->Share();
    ForgetPages();
  }
  ++readings_;
}

void Pager::EndReading() noexcept {
  if (--readings_ == 0) file_->Unshare();
}

void Pager::ForgetPages() {
  clean_->Clear();
  page_count_ = file_->PageCount();
  ++version_;
}

void Pager::LoadBlock(std::uint32_t first_page, std::span<std::byte> block) {
  if (!statement_ || !statement_->spilled) file_->Undo();
  const std::size_t bytes = std::size_t{file_->PageCount() - first_page} * PageSize();
  file_->ReadPages(first_page, block.first(std::min(bytes, block.size())));
}

void Pager::RequirePage(std::uint32_t page) const {
  if (page < page_count_) return;
  throw PagerError(
      file_->Path(),
      "page " + std::to_string(page) + " is outside the file, which has " + std::to_string(page_count_) + " pages",
      Fault::kDamaged);
}

void Pager::RequireStatement() const {
  if (!statement_) throw std::logic_error("no statement is open");
  if (statement_->failed) throw PagerError(file_->Path(), "an error has broken the statement off");
}

void Pager::SpillIfFull() {
  if ((changed_.size() + 1) * PageSize() <= limits_.changed) return;
  if (!statement_->spilled) {
    statement_->failed = true;
    FlushCommitted();
    statement_->spilled = true;
  }
  std::vector<std::uint32_t> numbers;
  for (const auto& [number, page] : changed_) {
    if (page.bytes.use_count() == 1) numbers.push_back(number);
  }
  WriteThrough(std::move(numbers));
}

void Pager::FlushCommitted() {
  file_->Settle();
  std::vector<PagedFile::Page> pages;
  for (const auto& [number, page] : changed_) {
    if (!page.in_statement) pages.emplace_back(number, page.bytes);
  }
  if (statement_) {
    for (const Undo& undo : statement_->undo) {
      if (undo.before) pages.emplace_back(undo.page, undo.before);
    }
  }
  if (pages.empty()) return;
  std::ranges::sort(pages, {}, &PagedFile::Page::first);
  try {
    file_->Write(pages);
  } catch (const PagerError&) {
    try {
      file_->Settle();
    } catch (const PagerError&) {
      // The first error says more. The journal stays until the file has been put back.
    }
    throw;
  }
  file_->Accept();
  for (const auto& [number, bytes] : pages) clean_->Update(number, {bytes.get(), PageSize()});
  std::erase_if(changed_, [](const auto& entry) { return !entry.second.in_statement; });
  if (statement_) {
    for (Undo& undo : statement_->undo) undo.before = nullptr;
  }
  file_->Settle();
}

void Pager::WriteThrough(std::vector<std::uint32_t> numbers) {
  statement_->failed = true;
  std::ranges::sort(numbers);
  std::vector<PagedFile::Page> pages;
  for (const std::uint32_t number : numbers) pages.emplace_back(number, changed_[number].bytes);
  if (!pages.empty()) file_->Write(pages);
  for (const auto& [number, bytes] : pages) {
    clean_->Update(number, {bytes.get(), PageSize()});
    changed_.erase(number);
  }
  statement_->failed = false;
}

}  // namespace marlevo::pager
