// Opens a file with a journal of strange but well sealed records beside it. Either nothing happens to the file, or it
// is cut and every page that changed has become an original of the journal.
#include <map>

#include "fuzz/fuzz_input.h"
#include "platform/pager/fault_files.h"
#include "platform/pager/journal_format.h"
#include "platform/pager/pager.h"

namespace marlevo::pager {
namespace {

constexpr std::size_t kPage = 2048;
constexpr std::size_t kPages = 6;
constexpr const char* kFile = "/disk/file";
constexpr const char* kJournal = "/disk/file-journal";

using Content = std::vector<std::byte>;

Content FileOfPages() {
  Content file(kPage * kPages);
  for (std::size_t i = 0; i < file.size(); ++i) {
    file[i] = static_cast<std::byte>(i / kSectorBytes * 31);
  }
  return file;
}

template <typename T>
void Add(Content& journal, const T& value) {
  const auto bytes = std::as_bytes(std::span(&value, 1));
  journal.insert(journal.end(), bytes.begin(), bytes.end());
}

void Open(FaultFiles& files) {
  try {
    const auto format = [](std::span<const std::byte>) { return PageFormat{kPage, {}}; };
    Pager::Open(kFile, format, files);
  } catch (const PagerError&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Content before = FileOfPages();
  FuzzInput input(data, size);
  JournalHeader header{kJournalMagic, 1, kPage, kPages, 0};
  const auto form = input.Take<std::uint8_t>();
  if ((form & 1) != 0) header.page_count = input.Take<std::uint8_t>();
  if ((form & 2) != 0) header.page_size = input.Take<std::uint32_t>();
  if ((form & 4) != 0) header.page_count = input.Take<std::uint32_t>();
  header.hash = HeaderHash(header);
  Content journal;
  Add(journal, header);
  journal.resize(kJournalHeaderBytes);

  std::multimap<std::uint32_t, Content> originals;
  std::uint64_t hash = header.hash;
  while (!input.AtEnd()) {
    const auto what = input.Take<std::uint8_t>();
    RecordHead head{static_cast<RecordKind>(1 + what % 3), input.Take<std::uint8_t>(), 0};
    if (what >= 0xf0) head.kind = static_cast<RecordKind>(input.Take<std::uint32_t>());
    if ((what & 0x80) == 0) head.page %= kPages;
    if ((what & 0xc0) == 0xc0) head.page *= 0x01010101;
    // What is in the file, or not, by sector.
    Content page(header.page_size % kSectorBytes == 0 && header.page_size <= kMaxPageBytes ? header.page_size : 0);
    const auto strange = input.Take<std::uint8_t>();
    for (std::size_t i = 0; i < page.size(); ++i) {
      const std::size_t place = head.page * page.size() + i;
      page[i] =
          (strange >> i / kSectorBytes % 8 & 1) != 0 || place >= before.size() ? std::byte{strange} : before[place];
    }
    Content bytes;
    if (head.kind == RecordKind::kOriginal) {
      bytes = page;
      originals.emplace(head.page, page);
    } else if (head.kind == RecordKind::kRewrite) {
      for (std::size_t at = 0; at + kSectorBytes <= page.size(); at += kSectorBytes) {
        Add(bytes, Hash(0, std::span(page).subspan(at, kSectorBytes)));
      }
    }
    hash = head.hash = RecordHash(hash, head.kind, head.page, bytes);
    Add(journal, head);
    journal.insert(journal.end(), bytes.begin(), bytes.end());
  }
  if ((form & 8) != 0 && !journal.empty()) journal[size * 37 % journal.size()] ^= std::byte{1};

  FaultFiles files;
  files.Put(kFile, before);
  files.Put(kJournal, journal);
  Open(files);
  const Content after = files.Content(kFile);
  Require(after.size() <= before.size());
  Require(after == before || after.size() == std::size_t{header.page_count} * header.page_size);
  for (std::size_t at = 0; at < after.size() && after != before; at += header.page_size) {
    const std::span<const std::byte> page = std::span(after).subspan(at, header.page_size);
    const auto [from, to] = originals.equal_range(static_cast<std::uint32_t>(at / header.page_size));
    Require(std::ranges::equal(page, std::span(before).subspan(at, header.page_size)) ||
            std::any_of(from, to, [&](const auto& original) { return std::ranges::equal(original.second, page); }));
  }
  Open(files);
  Require(files.Content(kFile) == after);
  return 0;
}

}  // namespace marlevo::pager
