// The pager against a plain vector of pages, and what callers may rely on while they hold pages.
#include <gtest/gtest.h>

#include <cstddef>
#include <random>

#include "platform/pager/fault_files.h"
#include "platform/pager/test_pages.h"

namespace marlevo::pager {
namespace {

TEST(Pager, ActsLikeAVectorOfPages) {
  std::mt19937 random(11);
  FaultFiles files;
  std::shared_ptr<Pager> pager = NewPager(kFile, files, 40);
  Image model = ReadAll(*pager);
  // Pages held for a while must go on showing what was read.
  struct Held {
    PageRef ref;
    std::uint32_t page;
    std::uint32_t value;
  };
  std::vector<Held> held;
  for (std::uint32_t turn = 0; turn < 6000; ++turn) {
    const auto what = static_cast<std::uint32_t>(random() % 100);
    if (what < 60) {
      const std::uint64_t version = pager->Version();
      Image after = model;
      Statement statement(*pager);
      // An edit may be held while other pages push what was changed out of memory.
      const auto early_page = static_cast<std::uint32_t>(random() % after.size());
      const PageEdit early = pager->Change(early_page);
      const auto changes = static_cast<std::uint32_t>(what == 0 ? 120 : random() % 6);
      for (std::uint32_t i = 0; i < changes; ++i) {
        if (random() % 8 == 0 && after.size() < 400) {
          after.push_back(turn);
          AppendPage(*pager, turn);
        }
        const auto page = static_cast<std::uint32_t>(random() % after.size());
        after[page] = turn * 1000 + i;
        ChangePage(*pager, page, after[page]);
        const auto other = static_cast<std::uint32_t>(random() % after.size());
        const PageRef ref = pager->Read(other);
        ASSERT_EQ(ValueOf(ref.Bytes(), other), after[other]);
        if (random() % 200 == 0) {
          pager->Flush();
          ASSERT_EQ(ReadAll(*Pager::Open(kFile, TestProbe, *files.AfterPowerFailure(turn))), model);
        }
      }
      after[early_page] = turn;
      Fill(early.Bytes(), early_page, turn);
      if (random() % 4 != 0) {
        statement.Commit();
        model = std::move(after);
        ASSERT_TRUE(changes == 0 || pager->Version() > version);
      }
    } else if (what < 90) {
      const auto page = static_cast<std::uint32_t>(random() % model.size());
      held.push_back({pager->Read(page), page, model[page]});
      ASSERT_EQ(ValueOf(held.back().ref.Bytes(), page), model[page]);
      if (held.size() > 30) {
        const Held& oldest = held.front();
        ASSERT_EQ(ValueOf(oldest.ref.Bytes(), oldest.page), oldest.value);
        held.erase(held.begin());
      }
    } else if (what < 98) {
      pager->Flush();
    } else {
      ASSERT_EQ(ReadAll(*pager), model);
      pager.reset();
      pager = Pager::Open(kFile, TestProbe, files, kSmall);
    }
    ASSERT_EQ(pager->PageCount(), model.size());
  }
  ASSERT_EQ(ReadAll(*pager), model);
  pager.reset();
  for (const Held& page : held) {
    ASSERT_EQ(ValueOf(page.ref.Bytes(), page.page), page.value);
  }
}

TEST(Pager, CreatesNeverOverAFileAndLeavesNothingBehind) {
  FaultFiles files;
  NewPager(kFile, files, 2).reset();
  EXPECT_THROW(Pager::Create(kFile, TestFormat(), files), PagerError);
  FaultFiles others;
  Pager::Create(kFile, TestFormat(), others).reset();
  EXPECT_FALSE(others.Exists(kFile) || others.Exists("/disk/file-new") || others.Exists("/disk/file-new-journal"));
}

TEST(Pager, FilesOfStrangeLength) {
  FaultFiles files;
  NewPager(kFile, files, 10).reset();
  files.Content(kFile).resize(10 * kTestPage - 5);
  const std::shared_ptr<Pager> pager = Pager::Open(kFile, TestProbe, files);
  EXPECT_EQ(ReadAll(*pager).size(), 9U);
  EXPECT_THROW(pager->Begin(), PagerError);
  EXPECT_THROW(pager->Read(9), PagerError);
}

}  // namespace
}  // namespace marlevo::pager
