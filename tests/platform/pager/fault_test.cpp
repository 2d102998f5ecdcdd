// The pager on a disk that fails, fills up, or stops at any step of its work.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <random>

#include "platform/pager/fault_files.h"
#include "platform/pager/test_pages.h"

namespace marlevo::pager {
namespace {

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
      // Tried again later.
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

// The machine stops at that step.
History WorkUntil(std::uint64_t step, FaultFiles& files) {
  History history;
  files.Plan(step, FaultFiles::Trouble::kEnd);
  Work(files, history);
  EXPECT_TRUE(files.Struck());
  return history;
}

testing::AssertionResult HoldsPrefix(FaultFiles& disk, const History& history) {
  if (!disk.Exists(kFile)) {
    if (history.flushed > 0) return testing::AssertionFailure() << "the flushed file is gone";
    const std::shared_ptr<Pager> again = Pager::Create(kFile, TestFormat(), disk, kSmall);
    return testing::AssertionResult(again != nullptr);
  }
  Image image;
  try {
    image = ReadAll(*Pager::Open(kFile, TestProbe, disk, kSmall));
  } catch (const std::exception& error) {
    return testing::AssertionFailure() << error.what();
  }
  const auto from = history.committed.begin() + static_cast<std::ptrdiff_t>(history.flushed);
  if (std::find(from, history.committed.end(), image) != history.committed.end()) return testing::AssertionSuccess();
  const bool older = std::find(history.committed.begin(), from, image) != from;
  return testing::AssertionFailure() << (older ? "flushed statements are lost" : "no whole statement's end");
}

TEST(Faults, MachineStopsAnywhere) {
  const std::uint64_t steps = StepsOfWork();
  std::size_t disks = 0;
  for (std::uint64_t step = 1; step <= steps; step += kMomentStep) {
    FaultFiles files;
    const History history = WorkUntil(step, files);
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
  for (std::uint64_t step = 1; step <= steps; step += 5 * kMomentStep) {
    FaultFiles files;
    const History history = WorkUntil(step, files);
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

// After some errors, or with a full disk until the end, nothing that was committed is lost, and the next Flush
// succeeds.
TEST(Faults, PassingTroubleLosesNothing) {
  using enum FaultFiles::Trouble;
  const std::uint64_t steps = StepsOfWork();
  // Five errors in a row: the way back fails too, and has to be taken later.
  for (const auto& [trouble, count] : {std::pair(kError, 1U), {kError, 5U}, {kFull, 1U}}) {
    for (std::uint64_t step = 1; step <= steps; step += kMomentStep) {
      SCOPED_TRACE(std::to_string(count) + (trouble == kFull ? " full" : " errors") + " from " + std::to_string(step));
      const auto seed = static_cast<std::uint32_t>(step);
      FaultFiles files;
      files.Plan(step, trouble, count);
      History history;
      std::shared_ptr<Pager> pager = Work(files, history);
      ASSERT_TRUE(HoldsPrefix(*files.AfterPowerFailure(seed), history));
      files.MakeRoom();
      if (!pager) pager = Pager::Create(kFile, TestFormat(), files, kSmall);
      ASSERT_EQ(ReadAll(*pager), history.committed.back());
      Store(*pager, {}, 1, 77);
      history.committed.push_back(history.committed.back());
      history.committed.back().push_back(77);
      history.flushed = history.committed.size() - 1;
      ASSERT_TRUE(HoldsPrefix(*files.AfterPowerFailure(seed), history));
      pager.reset();
      ASSERT_FALSE(files.Exists(kJournal));
      ASSERT_TRUE(HoldsPrefix(*files.Killed(), history));
    }
  }
  std::cout << "trouble tried at " << steps << " steps\n";
}

}  // namespace
}  // namespace marlevo::pager
