#include "platform/access/storage/storage.h"

#include <string>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/data_page.h"
#include "platform/access/storage/global_map.h"

namespace marlevo::access {

namespace {

pager::PageFormat PageFormatOf(const Format& format, std::uint32_t encoding_key) {
  pager::PageFormat pages{.page_size = format.page_size, .crypt = {}, .sign_of_use = ".ldb"};
  if (encoding_key != 0) {
    pages.crypt = [encoding_key](std::uint32_t page, MutableBytes bytes) { ApplyPageKey(encoding_key, page, bytes); };
  }
  return pages;
}

}  // namespace

std::shared_ptr<Storage> Storage::Open(const std::filesystem::path& path, const OpenOptions& options,
                                       pager::FileSystem& files) {
  auto pager = pager::Pager::Open(
      path,
      [](Bytes head) {
        const FileHeader header = ParseHeader(head);
        return PageFormatOf(*header.format, header.encoding_key);
      },
      files);
  const pager::Reading reading(*pager);
  const pager::PageRef page = pager->Read(0);
  const FileHeader header = ParseHeader(page.Bytes());
  std::shared_ptr<Storage> file(new Storage(*header.format, pager));
  file->header_code_page_ = header.code_page;
  file->code_page_override_ = options.code_page;
  if (!options.any_password && !header.password.empty() &&
      file->CodecFor(header.code_page).DecodeName(AsBytes(header.password)) != options.password) {
    throw AccessError("the password is not that of the database", Fault::kWrongPassword);
  }
  return file;
}

std::shared_ptr<Storage> Storage::Create(const std::filesystem::path& path, NewFile kind, pager::FileSystem& files) {
  const Format& format = kind.version == 3 ? kJet3 : kJet4;
  std::shared_ptr<Storage> file(
      new Storage(format, pager::Pager::Create(path, PageFormatOf(format, kind.encoding_key), files)));
  file->header_code_page_ = kind.code_page;
  file->code_page_override_ = kind.stored_code_page;
  return file;
}

pager::PageRef Storage::Read(std::uint32_t page) const {
  if (page >= pager_->PageCount()) {
    throw AccessError(page, "the file ends before this page");
  }
  return pager_->Read(page);
}

pager::PageEdit Storage::Change(std::uint32_t page) const {
  if (page >= pager_->PageCount()) {
    throw AccessError(page, "the file ends before this page");
  }
  return pager_->Change(page);
}

bool Storage::IsCodePageDoubtful() const {
  return format_->version == 3 && !code_page_override_ && CodePageOf(0) == kWesternCodePage;
}

int Storage::CodePageOf(int label) const {
  // Without any label the texts are Western.
  const int labelled = label != 0 ? label : header_code_page_;
  return code_page_override_.value_or(labelled != 0 ? labelled : kWesternCodePage);
}

const TextCodec& Storage::CodecFor(int code_page_label) const {
  if (format_->version == 4) {
    return codecs_[0];
  }
  const int code_page = CodePageOf(code_page_label);
  if (const auto found = codecs_.find(code_page); found != codecs_.end()) {
    return found->second;
  }
  return codecs_.emplace(code_page, TextCodec(code_page)).first->second;
}

void Storage::Begin() {
  RequireKept();
  pager_->Begin();
  in_statement_ = true;
}

void Storage::Commit() {
  const std::shared_ptr<const pager::Pager::Batch> batch = pager_->CurrentBatch();
  pager_->Commit();
  in_statement_ = false;
  batch_ = batch;
}

void Storage::Rollback() noexcept {
  pager_->Rollback();
  in_statement_ = false;
}

void Storage::Flush() {
  RequireKept();
  pager_->Flush();
}

void Storage::Discard(Fault reason) noexcept {
  pager_->Discard(reason);
  batch_.reset();
}

void Storage::RequireKept() {
  if (!batch_ || !batch_->lost) {
    return;
  }
  const Fault reason = *batch_->lost;
  batch_.reset();
  throw AccessError("what was stored since the last flush has been undone, because another use of the file failed",
                    reason);
}

std::uint32_t Storage::AppendPage() {
  if (pager_->PageCount() >= format_->max_pages) {
    const std::uint64_t gib = std::uint64_t{format_->max_pages} * format_->page_size >> 30;
    throw AccessError("the file has reached " + std::to_string(gib) +
                          " GiB, the largest size of its format; delete records that are not needed any more",
                      Fault::kFileFull);
  }
  return pager_->Append();
}

std::uint32_t Storage::TakePage() {
  GlobalMap map(*this);
  for (auto page = map.Next(kObjectsPage); page && *page < pager_->PageCount(); page = map.Next(*page + 1)) {
    map.Remove(*page);
    if (!LooksUsed(*page)) {
      return *page;
    }
  }
  const std::uint32_t page = AppendPage();
  map.Reach(page);
  map.Remove(page);
  return page;
}

void Storage::GivePage(std::uint32_t page) {
  GlobalMap map(*this);
  map.Reach(page);
  map.Add(page);
  const pager::PageEdit edit = Change(page);
  edit.Bytes()[0] |= std::byte{kFreedPageBit};
}

// Some programs write files whose map calls pages free that are in use. Overwriting such a page would lose data;
// passing over a page that really is free only costs its space.
bool Storage::LooksUsed(std::uint32_t page) {
  const pager::PageRef ref = Read(page);
  const std::uint8_t type = LoadU8(ref.Bytes().data());
  if (type < kDataPage || type > kMapPage) {
    return false;
  }
  const std::uint32_t owner = LoadU32(&ref.Bytes()[kOwnerAt]);
  if (type != kDataPage || owner < kObjectsPage || owner >= pager_->PageCount()) {
    return true;
  }
  const pager::PageRef definition = Read(owner);
  if (LoadU8(definition.Bytes().data()) != kDefinitionPage) {
    return false;
  }
  return UsageMap(*this, LoadRowPointer(&definition.Bytes()[format_->definition.owned_map])).Contains(page);
}

}  // namespace marlevo::access
