#include "platform/pager/recovery.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <tuple>

#include "platform/pager/page_format.h"

namespace marlevo::pager {
namespace {

std::vector<std::byte> ReadBytes(DiskFile& file, std::uint64_t offset, std::size_t size) {
  std::vector<std::byte> bytes(size);
  bytes.resize(file.ReadAt(offset, bytes));
  return bytes;
}

template <typename T>
std::optional<T> ReadStruct(DiskFile& file, std::uint64_t offset) {
  T value = {};
  if (file.ReadAt(offset, std::as_writable_bytes(std::span(&value, 1))) != sizeof value) {
    return std::nullopt;
  }
  return value;
}

// The page as the file holds it now; nothing when the medium fails to read it.
std::optional<std::vector<std::byte>> PageNow(DiskFile& file, std::uint32_t page, std::size_t page_size) {
  try {
    return ReadBytes(file, std::uint64_t{page} * page_size, page_size);
  } catch (const PagerError&) {
    return std::nullopt;
  }
}

}  // namespace

Recovery::Recovery(DiskFile& journal) : journal_(journal) {
  const std::optional<JournalHeader> header = ReadStruct<JournalHeader>(journal, 0);
  if (!header || header->magic != kJournalMagic || header->hash != HeaderHash(*header)) {
    return;
  }
  if (!std::has_single_bit(header->page_size) || header->page_size < kMinPageBytes ||
      header->page_size > kMaxPageBytes) {
    return;
  }
  header_ = *header;

  std::uint64_t offset = kJournalHeaderBytes;
  std::uint64_t hash = header_.hash;
  std::size_t complete = 0;
  while (const std::optional<RecordHead> head = ReadStruct<RecordHead>(journal, offset)) {
    offset += sizeof *head;
    const std::vector<std::byte> bytes = ReadBytes(journal, offset, BytesOf(head->kind));
    if (bytes.size() != BytesOf(head->kind)) {
      break;
    }
    hash = RecordHash(hash, head->kind, head->page, bytes);
    if (hash != head->hash) {
      break;
    }
    if (head->kind == RecordKind::kBatchEnd) {
      has_batch_ = true;
      complete = records_.size();
    } else if (bytes.empty() || head->page >= header_.page_count) {
      break;  // this program writes no such record
    } else {
      records_.push_back({head->page, head->kind, offset});
    }
    offset += bytes.size();
  }
  records_.resize(complete);
  std::ranges::sort(records_, {}, [](const Record& r) { return std::tuple(r.page, r.kind, r.offset); });
}

bool Recovery::Fits(DiskFile& file) const {
  return !records_.empty() && file.Size() >= std::uint64_t{header_.page_count} * header_.page_size &&
         std::ranges::all_of(Pages(), [&](PageRecords records) { return IsKnown(records, file); });
}

bool Recovery::IsCarriedBy(DiskFile& file) const {
  return std::ranges::any_of(Pages(), [&](PageRecords records) {
    const std::optional<std::vector<std::byte>> now = PageNow(file, records.front().page, header_.page_size);
    return now && now->size() == header_.page_size && records.front().kind == RecordKind::kOriginal &&
           StrangeSectors(records, *now) == 0 && *now != OriginalOf(records);
  });
}

void Recovery::RestorePages(DiskFile& file, const Wanted& wanted) const {
  for (const PageRecords records : Pages()) {
    const std::uint32_t page = records.front().page;
    if (records.front().kind == RecordKind::kOriginal && wanted(page, IsKnown(records, file))) {
      file.WriteAt(std::uint64_t{page} * header_.page_size, OriginalOf(records));
    }
  }
}

void Recovery::PlayBack(DiskFile& file) const {
  RestorePages(file, [](std::uint32_t, bool) { return true; });
  file.Truncate(std::uint64_t{header_.page_count} * header_.page_size);
  file.Sync();
}

std::vector<Recovery::PageRecords> Recovery::Pages() const {
  std::vector<PageRecords> pages;
  for (auto from = records_.begin(); from != records_.end();) {
    const auto to = std::find_if(from, records_.end(), [&](const Record& r) { return r.page != from->page; });
    pages.emplace_back(from, to);
    from = to;
  }
  return pages;
}

std::size_t Recovery::BytesOf(RecordKind kind) const {
  switch (kind) {
    case RecordKind::kOriginal:
      return header_.page_size;
    case RecordKind::kRewrite:
      return header_.page_size / kSectorBytes * sizeof(std::uint64_t);
    case RecordKind::kBatchEnd:
      break;
  }
  return 0;
}

std::vector<std::byte> Recovery::OriginalOf(PageRecords records) const {
  return ReadBytes(journal_, records.front().offset, header_.page_size);
}

// Whether every sector of the page is that of the original or has the checksum of a rewrite in the journal. One sector
// may be neither, because some disks tear inside a sector when the power fails. A page that the medium fails to read
// counts as known, since writing it anew may cure it.
bool Recovery::IsKnown(PageRecords records, DiskFile& file) const {
  const std::optional<std::vector<std::byte>> now = PageNow(file, records.front().page, header_.page_size);
  return !now || (now->size() == header_.page_size && StrangeSectors(records, *now) <= 1);
}

std::size_t Recovery::StrangeSectors(PageRecords records, std::span<const std::byte> now) const {
  std::vector<bool> known(now.size() / kSectorBytes, false);
  for (const Record& record : records) {
    const std::vector<std::byte> bytes = ReadBytes(journal_, record.offset, BytesOf(record.kind));
    for (std::size_t i = 0; i < known.size(); ++i) {
      const std::span<const std::byte> sector = now.subspan(i * kSectorBytes, kSectorBytes);
      if (record.kind == RecordKind::kOriginal) {
        if (std::ranges::equal(sector, std::span(bytes).subspan(i * kSectorBytes, kSectorBytes))) {
          known[i] = true;
        }
      } else {
        std::uint64_t hash = 0;
        std::memcpy(&hash, bytes.data() + i * sizeof hash, sizeof hash);
        if (hash == Hash(0, sector)) {
          known[i] = true;
        }
      }
    }
  }
  return std::ranges::count(known, false);
}

}  // namespace marlevo::pager
