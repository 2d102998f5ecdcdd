// The pager on a disk that fails, fills up, or stops at any step of its work.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <random>

#include "platform/pager/fault_files.h"
#include "platform/pager/test_pages.h"

namespace marlevo::pager {
namespace {

constexpr const char* kFile = "/disk/file";
constexpr const char* kJournal = "/disk/file-journal";

struct History {
  std::vector<Image> committed = {Image()};  // after each statement
  std::size_t flushed = 0;                   // how many of them the last Flush that returned has covered
};

// Small statements, some that spill, some rolled back, a flush now and then. Errors end the statement, not the work.
std::shared_ptr<Pager> Work(FaultFiles& files, History& history) {
  std::shared_ptr<Pager> pager;
  for (int attempt = 0; attempt < 2 && !pager; ++attempt) {
    try {
      pager = Pager::Create(kFile, TestFormat(), files, kSmall);
    } catch (const PagerError&) {
      continue;
    }
  }
  if (!pager) return nullptr;
  std::mt19937 random(5);
  for (std::uint32_t turn = 1; turn <= 36; ++turn) {
    const bool empty = history.committed.back().empty();
    const std::uint32_t changes = turn % 6 == 0 ? 44 : 1 + random() % 4;
    const std::uint32_t appends = empty ? 12 : turn % 6 == 3 ? 25 : random() % 2;
    const bool keep = empty || (turn % 5 != 0 && turn != 12);
    Image image = history.committed.back();
    try {
      Statement statement(*pager);
      for (std::uint32_t i = 0; i < appends; ++i) {
        image.push_back(turn);
        AppendPage(*pager, turn);
      }
      for (std::uint32_t i = 0; i < changes; ++i) {
        const auto page = static_cast<std::uint32_t>(random() % image.size());
        image[page] = turn * 1000 + i;
        ChangePage(*pager, page, image[page]);
      }
      if (keep) {
        statement.Commit();
        history.committed.push_back(image);
      }
    } catch (const PagerError&) {
      // Rolled back.
    }
    if (turn % 4 != 1 && turn != 1) continue;
    try {
      pager->Flush();
      history.flushed = history.committed.size() - 1;
    } catch (const PagerError&) {
      continue;
    }
  }
  return pager;
}

std::uint64_t StepsOfWork() {
  FaultFiles files;
  History history;
  Work(files, history);
  return files.Steps();
}

::testing::AssertionResult HoldsPrefix(FaultFiles& disk, const History& history) {
  if (!disk.Exists(kFile)) {
    if (history.flushed > 0) return ::testing::AssertionFailure() << "the flushed file is gone";
    const std::shared_ptr<Pager> again = Pager::Create(kFile, TestFormat(), disk, kSmall);
    return ::testing::AssertionResult(again != nullptr);
  }
  Image image;
  try {
    image = ReadAll(*Pager::Open(kFile, TestProbe, disk, kSmall));
  } catch (const std::exception& error) {
    return ::testing::AssertionFailure() << error.what();
  }
  const auto from = history.committed.begin() + static_cast<std::ptrdiff_t>(history.flushed);
  if (std::find(from, history.committed.end(), image) != history.committed.end()) {
    return ::testing::AssertionSuccess();
  }
  const bool older = std::find(history.committed.begin(), from, image) != from;
  return ::testing::AssertionFailure() << (older ? "flushed statements are lost" : "no whole statement's end");
}

TEST(Faults, MachineStopsAnywhere) {
  const std::uint64_t steps = StepsOfWork();
  std::size_t disks = 0;
  for (std::uint64_t step = 1; step <= steps; ++step) {
    FaultFiles files;
    files.Plan(step, FaultFiles::Trouble::kEnd);
    History history;
    Work(files, history);
    ASSERT_TRUE(files.Struck());
    ASSERT_TRUE(HoldsPrefix(*files.Killed(), history)) << "killed at step " << step;
    for (std::uint32_t seed = 0; seed < 12; ++seed, ++disks) {
      ASSERT_TRUE(HoldsPrefix(*files.AfterPowerFailure(seed), history)) << "step " << step << ", seed " << seed;
    }
  }
  std::cout << "stops tried at " << steps << " steps, " << disks << " disks after power failures\n";
}

TEST(Faults, MachineStopsAgainWhileRecovering) {
  const std::uint64_t steps = StepsOfWork();
  std::size_t stops = 0;
  for (std::uint64_t step = 1; step <= steps; step += 5) {
    FaultFiles files;
    files.Plan(step, FaultFiles::Trouble::kEnd);
    History history;
    Work(files, history);
    const auto disk = [&] {
      return step % 2 == 0 ? files.Killed() : files.AfterPowerFailure(static_cast<std::uint32_t>(step));
    };
    if (!disk()->Exists(kJournal) || disk()->Content(kJournal).empty()) continue;
    for (std::uint64_t second = 1;; ++second, ++stops) {
      const std::unique_ptr<FaultFiles> broken = disk();
      broken->Plan(second, FaultFiles::Trouble::kEnd);
      try {
        Pager::Open(kFile, TestProbe, *broken, kSmall);
      } catch (const std::exception&) {
        EXPECT_TRUE(broken->Struck());
      }
      if (!broken->Struck()) break;
      ASSERT_TRUE(HoldsPrefix(*broken->Killed(), history)) << step << " then " << second;
      ASSERT_TRUE(HoldsPrefix(*broken->AfterPowerFailure(1), history)) << step << " then " << second;
      ASSERT_TRUE(HoldsPrefix(*broken->AfterPowerFailure(2), history)) << step << " then " << second;
    }
  }
  EXPECT_GT(stops, 0U);
  std::cout << "second stops tried: " << stops << "\n";
}

// Some errors, or a full disk until the end: nothing that was committed is lost, and the next Flush succeeds.
void SurvivesAndGoesOn(FaultFiles::Trouble trouble, std::uint64_t count = 1) {
  const std::uint64_t steps = StepsOfWork();
  for (std::uint64_t step = 1; step <= steps; ++step) {
    SCOPED_TRACE("step " + std::to_string(step));
    FaultFiles files;
    files.Plan(step, trouble, count);
    History history;
    std::shared_ptr<Pager> pager = Work(files, history);
    ASSERT_TRUE(HoldsPrefix(*files.AfterPowerFailure(static_cast<std::uint32_t>(step)), history));
    files.MakeRoom();
    if (!pager) pager = Pager::Create(kFile, TestFormat(), files, kSmall);
    ASSERT_EQ(ReadAll(*pager), history.committed.back());
    {
      Statement statement(*pager);
      AppendPage(*pager, 77);
      statement.Commit();
    }
    history.committed.push_back(history.committed.back());
    history.committed.back().push_back(77);
    pager->Flush();
    history.flushed = history.committed.size() - 1;
    ASSERT_TRUE(HoldsPrefix(*files.AfterPowerFailure(static_cast<std::uint32_t>(step)), history));
    pager.reset();
    ASSERT_FALSE(files.Exists(kJournal));
    ASSERT_TRUE(HoldsPrefix(*files.Killed(), history));
  }
  std::cout << "trouble tried at " << steps << " steps\n";
}

TEST(Faults, OneError) {
  SurvivesAndGoesOn(FaultFiles::Trouble::kError);
}

// Long enough that the way back fails too, and has to be taken later.
TEST(Faults, ErrorsInARow) {
  SurvivesAndGoesOn(FaultFiles::Trouble::kError, 5);
}

TEST(Faults, FullDisk) {
  SurvivesAndGoesOn(FaultFiles::Trouble::kFull);
}

}  // namespace
}  // namespace marlevo::pager
