// Journals that do not belong to the file they lie beside, or are not whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <map>
#include <random>

#include "platform/pager/fault_files.h"
#include "platform/pager/journal_format.h"
#include "platform/pager/test_pages.h"

namespace marlevo::pager {
namespace {

constexpr const char* kForeign = "/disk/file-journal.foreign";

using Bytes = std::vector<std::byte>;

Bytes MakeFile(std::uint32_t pages, std::uint32_t value) {
  FaultFiles files;
  NewPager(kFile, files, pages, value).reset();
  return files.Content(kFile);
}

// Pages 3, 4 and 7 become 900, and there are two new ones; the machine stops when the journal is complete and the file
// torn.
FaultFiles CrashWhileChanging(const Bytes& before) {
  for (std::uint64_t step = 1;; ++step) {
    FaultFiles files;
    files.Put(kFile, before);
    files.Plan(step, FaultFiles::Trouble::kEnd);
    try {
      Store(*Pager::Open(kFile, TestProbe, files), {3, 4, 7}, 2, 900);
    } catch (const PagerError&) {
      if (files.Content(kFile) != before) return *files.Killed();
    }
  }
}

FaultFiles Disk(const Bytes& file, const Bytes& journal) {
  FaultFiles files;
  files.Put(kFile, file);
  files.Put(kJournal, journal);
  return files;
}

template <typename Work>
Fault FaultOf(const Work& work) {
  try {
    work();
  } catch (const PagerError& error) {
    return error.Kind();
  }
  return Fault::kOther;
}

// The disk when the file on it has been opened.
FaultFiles Opened(FaultFiles files) {
  Pager::Open(kFile, TestProbe, files);
  EXPECT_FALSE(files.Exists(kJournal));
  return files;
}

TEST(Journal, TruncatedOrDamagedChangesNothing) {
  const Bytes journal = CrashWhileChanging(MakeFile(12, 10)).Content(kJournal);
  const Bytes good = MakeFile(14, 500);
  for (std::size_t size = sizeof kJournalMagic; size < journal.size(); size += 37) {
    Bytes damaged = journal;
    damaged[size] ^= std::byte{1};
    ASSERT_EQ(Opened(Disk(good, damaged)).Content(kFile), good) << size;
    damaged.resize(size);
    ASSERT_EQ(Opened(Disk(good, damaged)).Content(kFile), good) << size;
  }
}

TEST(Journal, FileOfAnotherProgramInItsPlaceIsLeftAlone) {
  const Bytes letters(100000, std::byte{0x5a});
  FaultFiles files = Disk(MakeFile(12, 10), letters);
  const std::shared_ptr<Pager> pager = Pager::Open(kFile, TestProbe, files);
  EXPECT_EQ(ReadAll(*pager).size(), 12U);
  EXPECT_EQ(FaultOf([&] { Store(*pager, {1}, 0, 11); }), Fault::kNotOurs);
  EXPECT_EQ(files.Content(kJournal), letters);
  files.Remove(kJournal);
  Store(*pager, {1}, 0, 11);

  // It may as well come while the journal is in use.
  Statement statement(*pager);
  ChangePage(*pager, 2, 12);
  statement.Commit();
  files.Put(kJournal, letters);
  EXPECT_EQ(FaultOf([&] { pager->Flush(); }), Fault::kChanged);
  EXPECT_EQ(FaultOf([&] { ReadAll(*pager); }), Fault::kChanged);
  EXPECT_EQ(files.Content(kJournal), letters);
  files.Remove(kJournal);
  EXPECT_EQ(ReadAll(*Pager::Open(kFile, TestProbe, files))[2], 10U);
}

// The machine stopped in the midst of a change, and then another program wrote to the file.
TEST(Journal, OfAHalfChangedFileThatDoesNotFitIsKept) {
  FaultFiles files = CrashWhileChanging(MakeFile(12, 10));
  const Bytes journal = files.Content(kJournal);
  const Bytes other = MakeFile(12, 60);
  std::copy_n(other.begin() + 7 * kTestPage, kTestPage, files.Content(kFile).begin() + 7 * kTestPage);
  const Bytes damaged = files.Content(kFile);
  for (int turn = 0; turn < 2; ++turn) {
    const std::shared_ptr<Pager> pager = Pager::Open(kFile, TestProbe, files);
    EXPECT_EQ(ReadAll(*pager)[7], 60U);
    EXPECT_EQ(FaultOf([&] { pager->Begin(); }), Fault::kDamaged);
  }
  EXPECT_EQ(files.Content(kFile), damaged);
  EXPECT_EQ(files.Content(kJournal), journal);
}

// Well sealed, but no journal of ours: pages that the file never had, kinds that there are not, sizes of another file.
// Nothing happens to the file, or it is cut and every page that changed has become an original of the journal.
TEST(Journal, StrangeRecordsRestoreOnlyTheirOriginals) {
  const Bytes before = MakeFile(6, 10);
  std::mt19937 random(3);
  const auto any = [&](std::initializer_list<std::uint32_t> values) {
    return values.begin()[random() % values.size()];
  };
  int changed = 0;
  for (int turn = 0; turn < 10'000; ++turn) {
    JournalHeader header{kJournalMagic, 1, kTestPage, any({6, 6, 6, 6, 5, 3, 0, 7, 0xffffffff}), 0};
    if (random() % 8 == 0) header.page_size = any({0, 1, 512, 1024, 4096, kMaxPageBytes, 0x80000000});
    header.hash = HeaderHash(header);
    Bytes journal(kJournalHeaderBytes);
    std::memcpy(journal.data(), &header, sizeof header);
    std::multimap<std::uint32_t, Bytes> originals;
    std::uint64_t hash = header.hash;
    for (auto records = 1 + random() % 8; records > 0; --records) {
      const auto kind = RecordKind(records == 1 ? 3 : any({1, 1, 1, 1, 2, 2, 3, 0, 4, 0x80000001}));
      const auto number = random() % 8 == 0 ? any({6, 7, 4000, 0x7fffffff, 0xffffffff}) : any({0, 1, 2, 3, 4, 5});
      // What is in the file, or not, by sector.
      Bytes page(header.page_size % kSectorBytes == 0 && header.page_size <= kMaxPageBytes ? header.page_size : 0);
      const auto strange = random() % 2 == 0 ? 0 : random();
      for (std::size_t i = 0; i < page.size(); ++i) {
        const std::size_t place = number * page.size() + i;
        page[i] =
            (strange >> i / kSectorBytes % 8 & 1) != 0 || place >= before.size() ? std::byte(turn) : before[place];
      }
      std::vector<std::uint64_t> hashes;
      for (std::size_t at = 0; kind == RecordKind::kRewrite && at < page.size(); at += kSectorBytes) {
        hashes.push_back(Hash(0, std::span(page).subspan(at, kSectorBytes)));
      }
      const std::span<const std::byte> content =
          kind == RecordKind::kOriginal ? page : std::as_bytes(std::span(hashes));
      if (kind == RecordKind::kOriginal) originals.emplace(number, page);
      hash = RecordHash(hash, kind, number, content);
      const RecordHead head[] = {{kind, number, hash}};
      std::ranges::copy(std::as_bytes(std::span(head)), std::back_inserter(journal));
      journal.insert(journal.end(), content.begin(), content.end());
    }
    FaultFiles files = Disk(before, journal);
    const auto open = [&] {
      try {
        Pager::Open(
            kFile,
            [](std::span<const std::byte>) {
              return PageFormat{kTestPage, {}};
            },
            files);
      } catch (const PagerError&) {
        // As good as doing nothing.
      }
    };
    open();
    const Bytes after = files.Content(kFile);
    ASSERT_TRUE(after == before || after.size() == std::size_t{header.page_count} * header.page_size);
    ASSERT_TRUE(!after.empty() && after.size() <= before.size());
    for (std::size_t at = 0; at < after.size() && after != before; at += header.page_size) {
      const auto page = std::span(after).subspan(at, header.page_size);
      const auto [from, to] = originals.equal_range(static_cast<std::uint32_t>(at / header.page_size));
      ASSERT_TRUE(std::ranges::equal(page, std::span(before).subspan(at, header.page_size)) ||
                  std::any_of(from, to, [&](const auto& record) { return std::ranges::equal(record.second, page); }));
    }
    changed += after == before ? 0 : 1;
    open();
    ASSERT_EQ(files.Content(kFile), after);
  }
  EXPECT_GT(changed, 0);
  std::cout << changed << " files changed\n";
}

TEST(Journal, OfAnotherFileIsSetAside) {
  const Bytes before = MakeFile(12, 10);
  const Bytes journal = CrashWhileChanging(before).Content(kJournal);
  // Another database; a shorter one; the same one with other content put in its place: a backup.
  Bytes backup = before;
  const Bytes older = MakeFile(12, 60);
  std::copy_n(older.begin() + 4 * kTestPage, kTestPage, backup.begin() + 4 * kTestPage);
  for (const Bytes& other : {MakeFile(14, 500), MakeFile(3, 10), backup}) {
    FaultFiles files = Opened(Disk(other, journal));
    EXPECT_EQ(files.Content(kFile), other);
    EXPECT_EQ(files.Content(kForeign), journal);
  }
}

TEST(Journal, OnAMediumThatMayNotBeWritten) {
  const Bytes before = MakeFile(12, 10);
  FaultFiles files = CrashWhileChanging(before);
  const Bytes torn = files.Content(kFile);
  const Bytes journal = files.Content(kJournal);
  files.SetWritable(false);
  EXPECT_THROW(Pager::Open(kFile, TestProbe, files), PagerError);
  EXPECT_EQ(files.Content(kFile), torn);
  files.SetWritable(true);
  EXPECT_EQ(Opened(files).Content(kFile), before);

  // One that is not whole says nothing.
  FaultFiles others = Disk(before, Bytes(journal.begin(), journal.end() - 1));
  others.SetWritable(false);
  const std::shared_ptr<Pager> pager = Pager::Open(kFile, TestProbe, others);
  EXPECT_EQ(ReadAll(*pager).size(), 12U);
  EXPECT_TRUE(pager->ReadOnly());
  EXPECT_THROW(pager->Begin(), PagerError);
}

}  // namespace
}  // namespace marlevo::pager
