#include "platform/pager/pager.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "platform/pager/block_cache.h"
#include "platform/pager/journaled_file.h"

namespace marlevo::pager {

Pager::Pager(std::unique_ptr<JournaledFile> file, Probe probe, Limits limits)
    : file_(std::move(file)),
      probe_(std::move(probe)),
      limits_(limits),
      clean_(std::make_unique<BlockCache>(
          PageSize(), limits.clean / BlockCache::kBlockBytes,
          [this](std::uint32_t first_page, std::span<std::byte> block) { LoadBlock(first_page, block); })),
      page_count_(file_->PageCount()) {}

Pager::~Pager() {
  if (statement_) {
    Rollback();
  }
  try {
    Flush();
  } catch (const PagerError&) {
    // The next Open plays the journal back.
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
  if (readings_ == 0 && !file_->IsWriter()) {
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

template <typename Work>
void Pager::Watching(Work work) {
  try {
    work();
  } catch (const PagerError& error) {
    if (error.Kind() == Fault::kChanged) {
      GiveUp();
    }
    throw;
  }
}

void Pager::GiveUp() noexcept {
  over_ = true;
  if (statement_) {
    *statement_ = {.page_count = 0, .undo = {}, .spilled = false, .failed = true};
  }
  if (!changed_.empty()) {
    lost_ = true;
    LoseBatch(Fault::kChanged);
  }
  changed_.clear();
  clean_->Clear();
  ++version_;
  file_->GiveUp();
}

void Pager::RequireUsable() const {
  if (over_) {
    throw PagerError(file_->Path(), "was changed by another program and has to be opened again", Fault::kChanged);
  }
}

bool Pager::IsCurrent() {
  try {
    const Reading reading(*this);
    return true;
  } catch (const PagerError& error) {
    if (error.Kind() == Fault::kChanged) {
      return false;
    }
    throw;
  }
}

void Pager::BecomeWriter() {
  if (file_->IsWriter()) {
    return;
  }
  if (!file_->BecomeWriter()) {
    throw PagerError(file_->Path(), "is open for writing in another program", Fault::kInUse);
  }
  // The process that wrote before may have put a file of another format in place of this one.
  PageFormat format = probe_(file_->Head());
  if (format.page_size != PageSize()) {
    throw PagerError(file_->Path(), "has other pages than before", Fault::kChanged);
  }
  file_->SetFormat(std::move(format));
  if (readings_ == 0) {
    ForgetPages();
  }
}

void Pager::Begin() {
  if (statement_) {
    throw std::logic_error("a statement is open already");
  }
  RequireUsable();
  if (ReadOnly()) {
    throw PagerError(file_->Path(), "may not be written", Fault::kDenied);
  }
  Watching([&] {
    BecomeWriter();
    file_->PrepareToWrite();
    file_->RequireUnused();
    // Looking up the file's name costs a call of the system. Once for each batch is enough here, because Write looks
    // again before anything is overwritten.
    if (changed_.empty()) {
      file_->RequireInPlace();
    } else {
      file_->RequireUnchanged();
    }
    if (changed_.size() * PageSize() > limits_.changed / 2) {
      FlushCommitted();
    }
  });
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
  const auto committed = changed_.find(page);
  const bool clean = committed == changed_.end();
  if (!statement_->spilled) {
    statement_->undo.push_back({page, clean ? nullptr : committed->second.bytes});
  }
  changed_[page] = {bytes, true, clean ? ContentHash(now.Bytes()) : committed->second.base};
  return {std::move(bytes), PageSize()};
}

std::uint32_t Pager::Append() {
  RequireStatement();
  SpillIfFull();
  auto bytes = std::make_shared<std::byte[]>(PageSize());
  if (!statement_->spilled) {
    statement_->undo.push_back({page_count_, nullptr});
  }
  changed_[page_count_] = {std::move(bytes), true, std::nullopt};
  return page_count_++;
}

void Pager::Commit() {
  RequireStatement();
  const bool spilled = statement_->spilled;
  if (spilled) {
    std::vector<std::uint32_t> numbers;
    for (const auto& [number, page] : changed_) {
      numbers.push_back(number);
    }
    Watching([&] { WriteThrough(std::move(numbers)); });
    file_->MarkDone();
    batch_ = std::make_shared<Batch>();
  } else {
    for (const Undo& undo : statement_->undo) {
      changed_[undo.page].in_statement = false;
    }
  }
  statement_.reset();
  if (!spilled) {
    return;
  }
  try {
    file_->FinishJournal();
  } catch (const PagerError&) {
    // The statement is in the file. The next Flush tries again to make the journal void, and reports a failure.
  }
}

void Pager::Rollback() noexcept {
  if (!statement_) {
    return;
  }
  const OpenStatement statement = std::move(*statement_);
  statement_.reset();
  if (over_) {
    return;
  }
  page_count_ = statement.page_count;
  ++version_;
  if (!statement.spilled) {
    for (const Undo& undo : statement.undo) {
      if (undo.before) {
        changed_[undo.page].bytes = undo.before;
        changed_[undo.page].in_statement = false;
      } else {
        changed_.erase(undo.page);
      }
    }
    return;
  }
  changed_.clear();
  clean_->Clear();
  try {
    Watching([&] { file_->FinishJournal(); });
  } catch (const PagerError&) {
    // LoadBlock undoes the change before it reads anything from the file, and reports a failure.
  }
}

void Pager::Flush() {
  if (lost_) {
    RequireUsable();
  }
  // A process that is not the writer has nothing committed. An open statement that has spilled has flushed everything
  // before it.
  if (!file_->IsWriter() || (statement_ && statement_->spilled)) {
    return;
  }
  Watching([&] { FlushCommitted(); });
  if (page_count_ > 0 && !statement_) {
    file_->Publish();
  }
}

void Pager::Discard(Fault reason) noexcept {
  Rollback();
  if (changed_.empty()) {
    return;
  }
  LoseBatch(reason);
  changed_.clear();
  page_count_ = file_->PageCount();
  ++version_;
}

void Pager::LoseBatch(Fault reason) noexcept {
  batch_->lost = reason;
  batch_ = std::make_shared<Batch>();
}

void Pager::BeginReading() {
  if (readings_ == 0) {
    RequireUsable();
    Watching([&] {
      if (!file_->IsWriter()) {
        file_->LockForReading();
        ForgetPages();
      }
      if (!statement_) {
        file_->RequireInPlace();
      }
    });
  }
  ++readings_;
}

void Pager::EndReading() noexcept {
  if (--readings_ == 0) {
    file_->UnlockAfterReading();
  }
}

void Pager::ForgetPages() {
  ForgetCleanPages();
  page_count_ = file_->PageCount();
}

// After a write to the file. Blocks in memory may be outdated then, also those of other pages: a program that does not
// know the locks may have changed them at the same moment.
void Pager::ForgetCleanPages() {
  clean_->Clear();
  ++version_;
}

void Pager::LoadBlock(std::uint32_t first_page, std::span<std::byte> block) {
  RequireUsable();
  Watching([&] {
    if (!statement_ || !statement_->spilled) {
      file_->Undo();
    }
    const std::size_t bytes = std::size_t{file_->PageCount() - first_page} * PageSize();
    file_->ReadPages(first_page, block.first(std::min(bytes, block.size())));
  });
}

void Pager::RequirePage(std::uint32_t page) const {
  if (page < page_count_) {
    return;
  }
  throw PagerError(
      file_->Path(),
      "page " + std::to_string(page) + " is outside the file, which has " + std::to_string(page_count_) + " pages",
      Fault::kDamaged);
}

void Pager::RequireStatement() const {
  if (!statement_) {
    throw std::logic_error("no statement is open");
  }
  if (statement_->failed) {
    throw PagerError(file_->Path(), "an error has broken the statement off");
  }
}

void Pager::SpillIfFull() {
  if ((changed_.size() + 1) * PageSize() <= limits_.changed) {
    return;
  }
  Watching([&] {
    if (!statement_->spilled) {
      statement_->failed = true;
      FlushCommitted();
      statement_->spilled = true;
    }
    std::vector<std::uint32_t> numbers;
    for (const auto& [number, page] : changed_) {
      if (page.bytes.use_count() == 1) {
        numbers.push_back(number);
      }
    }
    WriteThrough(std::move(numbers));
  });
}

void Pager::FlushCommitted() {
  file_->FinishJournal();
  std::vector<JournaledFile::Page> pages;
  for (const auto& [number, page] : changed_) {
    if (!page.in_statement) {
      pages.push_back({number, page.bytes, page.base});
    }
  }
  if (statement_) {
    for (const Undo& undo : statement_->undo) {
      if (undo.before) {
        pages.push_back({undo.page, undo.before, changed_[undo.page].base});
      }
    }
  }
  if (pages.empty()) {
    return;
  }
  std::ranges::sort(pages, {}, &JournaledFile::Page::number);
  try {
    file_->Write(pages);
  } catch (const PagerError&) {
    clean_->Clear();
    try {
      file_->FinishJournal();
    } catch (const PagerError&) {
      // The first error says more. The journal stays until a later call has undone the change.
    }
    throw;
  }
  file_->MarkDone();
  batch_ = std::make_shared<Batch>();
  ForgetCleanPages();
  std::erase_if(changed_, [](const auto& entry) { return !entry.second.in_statement; });
  if (statement_) {
    for (Undo& undo : statement_->undo) {
      if (!undo.before) {
        continue;
      }
      changed_[undo.page].base = ContentHash({undo.before.get(), PageSize()});
      undo.before = nullptr;
    }
  }
  file_->FinishJournal();
}

void Pager::WriteThrough(std::vector<std::uint32_t> numbers) {
  statement_->failed = true;
  std::ranges::sort(numbers);
  std::vector<JournaledFile::Page> pages;
  for (const std::uint32_t number : numbers) {
    pages.push_back({number, changed_[number].bytes, changed_[number].base});
  }
  if (!pages.empty()) {
    file_->Write(pages);
  }
  ForgetCleanPages();
  for (const std::uint32_t number : numbers) {
    changed_.erase(number);
  }
  statement_->failed = false;
}

}  // namespace marlevo::pager
