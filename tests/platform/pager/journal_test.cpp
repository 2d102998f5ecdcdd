// Journals that do not belong to the file they lie beside, or are not whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

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
      if (files.Content(kFile) != before) {
        return *files.Killed();
      }
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

// Some disks tear inside the sector that they are writing when the power fails.
TEST(Journal, MendsOneTornSectorOfAPage) {
  const Bytes before = MakeFile(12, 10);
  for (const std::size_t torn : {1, 2}) {
    FaultFiles files = CrashWhileChanging(before);
    for (std::size_t sector = 0; sector < torn; ++sector) {
      files.Content(kFile)[4 * kTestPage + sector * kSectorBytes + 100] ^= std::byte{1};
    }
    Pager::Open(kFile, TestProbe, files);
    EXPECT_EQ(files.Content(kFile) == before, torn == 1);
  }
}

// Well sealed, but no journal of ours: a size of another file, pages that the file never had, kinds that there are not,
// an original that does not fit. Only the first, which is whole and fits, is played back.
TEST(Journal, StrangeRecordsChangeNothing) {
  const Bytes before = MakeFile(6, 10);
  const auto original = [&](std::uint32_t page) {
    return Bytes(before.begin() + page * kTestPage, before.begin() + (page + 1) * kTestPage);
  };
  struct Record {
    RecordKind kind;
    std::uint32_t page;
    Bytes bytes;
  };
  struct Case {
    std::uint32_t page_size;
    std::uint32_t page_count;
    std::vector<Record> records;
    std::size_t pages;  // that the file has afterwards
  };
  using enum RecordKind;
  const Record first{kOriginal, 0, original(0)};
  const Record end{kBatchEnd, 0, {}};
  for (const auto& [page_size, page_count, records, pages] :
       {Case{kTestPage, 5, {first, end}, 5}, Case{kTestPage, 5, {first}, 6}, Case{kTestPage, 7, {first, end}, 6},
        Case{4096, 5, {first, end}, 6}, Case{0, 5, {first, end}, 6}, Case{0x80000000, 5, {first, end}, 6},
        Case{kTestPage, 5, {first, {kOriginal, 5, original(5)}, end}, 6},
        Case{kTestPage, 5, {first, {kOriginal, 0xffffffff, original(1)}, end}, 6},
        Case{kTestPage, 5, {first, {RecordKind{4}, 1, {}}, end}, 6},
        Case{kTestPage, 5, {first, {kOriginal, 1, Bytes(kTestPage)}, end}, 6}}) {
    JournalHeader header{kJournalMagic, 1, page_size, page_count, 0};
    header.hash = HeaderHash(header);
    Bytes journal(kJournalHeaderBytes);
    std::memcpy(journal.data(), &header, sizeof header);
    std::uint64_t hash = header.hash;
    for (const Record& record : records) {
      hash = RecordHash(hash, record.kind, record.page, record.bytes);
      const RecordHead head[] = {{record.kind, record.page, hash}};
      std::ranges::copy(std::as_bytes(std::span(head)), std::back_inserter(journal));
      journal.insert(journal.end(), record.bytes.begin(), record.bytes.end());
    }
    FaultFiles files = Opened(Disk(before, journal));
    const Bytes expected(before.begin(), before.begin() + pages * kTestPage);
    EXPECT_EQ(files.Content(kFile), expected) << page_size << ' ' << page_count << ' ' << records.size();
  }
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
