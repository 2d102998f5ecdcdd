// Every kind of change on a disk that fails, tears a write, loses or reorders what was not synchronised, or fills up,
// at every step of the work: in both formats, with and without indexes. MARLEVO_FAULT_SEEDS sets how many power
// failures are tried at each step.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/bytes/format.h"
#include "platform/access/database/database.h"
#include "platform/pager/fault_files.h"

namespace marlevo::access {
namespace {

using pager::FaultFiles;
using Trouble = pager::FaultFiles::Trouble;
using enum ColumnType;
using namespace std::string_view_literals;

constexpr const char* kFile = "/disk/4star.mdb";

// Leaves of an index, and the bits of a map on pages of their own, are what tells that the work did what it is for.
struct Work {
  const char* name = "";
  std::int64_t rows = 0;      // there before
  std::size_t memo = 0;       // bytes of a long value, there before
  std::int64_t inserts = 0;   // of rows
  std::size_t new_memo = 0;   // bytes of a long value in one of them
  std::int64_t deletes = 0;   // every row whose number is a multiple of it; 0: none
  std::uint8_t new_page = 0;  // a page of this type has to come; 0: none
  std::uint64_t points = 0;   // of the steps that are tried; 0: all
};

constexpr Work kWorks[] = {
    {.name = "Insert", .rows = 40, .memo = 6000, .inserts = 3, .new_memo = 7000},
    {.name = "Delete", .rows = 600, .memo = 6000, .deletes = 2},
    {.name = "DeleteAll", .rows = 300, .memo = 6000, .deletes = 1},
    {.name = "Both", .rows = 60, .memo = 6000, .inserts = 30, .new_memo = 7000, .deletes = 3},
    {.name = "Split", .rows = 40, .inserts = 500, .new_page = kIndexLeafPage},
    {.name = "MapGrowth", .rows = 2, .memo = 1'950'000, .inserts = 1, .new_memo = 300'000, .new_page = kMapPage},
    // More than the pager keeps in memory until a statement ends.
    {.name = "Spill", .rows = 10, .inserts = 1, .new_memo = 9 << 20, .deletes = 3, .points = 5},
};

struct Scene {
  Work work;
  int version;
  bool indexed;
};

using Content = std::vector<std::string>;

Content ContentOf(const Database& database) {
  return TextsOf(database.OpenTable("CUSTOM_D"));
}

Database Create(FaultFiles& files, const Scene& scene) {
  TableSchema table = {"CUSTOM_D", {{"NO", kText, 20}, {"N", kLong}, {"T", kText, 50}, {"MEMO", kMemo}}};
  if (scene.indexed) {
    table.indexes = {{.name = "NO", .columns = {{"NO"}}},
                     {.name = "PrimaryKey", .columns = {{"N", true}, {"NO"}}, .primary_key = true}};
  }
  return Database::Create(kFile, kPassword, {table}, files, {.version = scene.version});
}

Database Open(FaultFiles& files) {
  return Database::Open(kFile, {.password = kPassword, .code_page = {}}, files);
}

// `memo`: the long value of the first row.
void Insert(Table& table, std::int64_t from, std::int64_t count, const std::string& memo) {
  for (std::int64_t n = from; n < from + count; ++n) {
    const std::string number = std::string("A").append(std::to_string(n * 7919 % 1000));
    const Value cell = n == from ? Value(std::string_view(memo)) : Value();
    table.Insert(Row{std::string_view(number), n, "some more text"sv, cell});
  }
}

// As many letters as take so many bytes.
std::string Memo(const Scene& scene, std::size_t bytes) {
  return std::string(scene.version == 4 ? bytes / 2 : bytes, 'm');
}

// Two statements, and between them one that is given up.
void Do(const Database& database, const Scene& scene, std::vector<Content>* states = nullptr) {
  const Work& work = scene.work;
  Table table = database.OpenTable("CUSTOM_D");
  InOneStatement(database, [&] {
    for (Cursor cursor = table.Scan(); work.deletes > 0 && cursor.Next();) {
      if (cursor.Integer(1) % work.deletes == 0) {
        table.Delete(cursor.Row());
      }
    }
  });
  if (states != nullptr) {
    states->push_back(ContentOf(database));
  }
  {
    const Statement undone = database.Begin();
    Insert(table, 5000, 2, "");
  }
  InOneStatement(database, [&] { Insert(table, 1000, work.inserts, Memo(scene, work.new_memo)); });
}

std::ptrdiff_t PagesOfType(const std::vector<std::byte>& file, int version, std::uint8_t type) {
  const std::size_t size = version == 4 ? 4096 : 2048;
  std::ptrdiff_t pages = 0;
  for (std::size_t at = 0; at < file.size(); at += size) {
    pages += file[at] == std::byte{type} ? 1 : 0;
  }
  return pages;
}

class AccessFaults : public testing::TestWithParam<Scene> {
 protected:
  void SetUp() override {
    FaultFiles files;
    {
      Database database = Create(files, GetParam());
      Table table = database.OpenTable("CUSTOM_D");
      Insert(table, 0, GetParam().work.rows, Memo(GetParam(), GetParam().work.memo));
      database.Flush();
      before_ = ContentOf(database);
    }
    file_ = files.Content(kFile);
    const char* seeds = std::getenv("MARLEVO_FAULT_SEEDS");
    seeds_ = seeds != nullptr ? static_cast<std::uint32_t>(std::atoi(seeds)) : before_.size() > 10 ? 12 : 1;
  }

  // A disk with the file as it is before the work, and with trouble at one or more of the steps from 1.
  FaultFiles Disk(std::uint64_t step, Trouble trouble, std::uint64_t count = 1) const {
    FaultFiles files;
    files.Put(kFile, file_);
    files.Plan(step, trouble, count);
    return files;
  }

  // "sound", or what is wrong.
  std::string StateOf(FaultFiles& disk, bool may_be_before) {
    ++disks_;
    try {
      const Database database = Open(disk);
      const Content content = ContentOf(database);
      if (content != after_ && !may_be_before) {
        return "what was flushed is lost";
      }
      return std::ranges::find(states_, content) != states_.end() ? Health(database) : "half a statement";
    } catch (const std::exception& error) {
      return error.what();
    }
  }

  // The machine stops at this step of the work and the flush.
  void StopAt(std::uint64_t step) {
    FaultFiles files = Disk(step, Trouble::kEnd);
    bool done = false;
    try {
      Database database = Open(files);
      Do(database, GetParam());
      database.Flush();
      done = true;
    } catch (const pager::PagerError&) {
    }
    ASSERT_EQ(StateOf(*files.Killed(), !done), "sound") << "killed at step " << step;
    for (std::uint32_t seed = 0; seed < seeds_; ++seed) {
      ASSERT_EQ(StateOf(*files.AfterPowerFailure(seed), !done), "sound") << "step " << step << ", seed " << seed;
    }
    // It stops once more, at every step of the way back.
    bool struck = step % 5 == 0;
    for (std::uint64_t second = 1; struck; ++second) {
      const auto broken = step % 2 == 0 ? files.Killed() : files.AfterPowerFailure(1);
      broken->Plan(second, Trouble::kEnd);
      static_cast<void>(ErrorOf([&] { Open(*broken); }));
      struck = broken->Struck();
      ASSERT_EQ(StateOf(*broken->AfterPowerFailure(1), !done), "sound") << "step " << step << ", then " << second;
    }
  }

  // What fails is undone, and can be done when the trouble is over.
  void FailAt(std::uint64_t step, Trouble trouble, std::uint64_t count = 1) {
    FaultFiles files = Disk(step, trouble, count);
    std::optional<Database> database;
    bool done = false;
    try {
      database.emplace(Open(files));
      Do(*database, GetParam());
      done = true;
      database->Flush();
    } catch (const pager::PagerError&) {
    }
    ASSERT_EQ(StateOf(*files.AfterPowerFailure(1), true), "sound") << "step " << step;
    files.MakeRoom();
    if (!database) {
      database.emplace(Open(files));
    }
    ASSERT_EQ(ContentOf(*database) == after_, done) << "step " << step;
    if (!done) {
      ASSERT_NE(std::ranges::find(states_, ContentOf(*database)), states_.end()) << "step " << step;
      Do(*database, GetParam());
    }
    ASSERT_NO_THROW(database->Flush());
    ASSERT_EQ(StateOf(*files.AfterPowerFailure(1), false), "sound") << "step " << step;
  }

  std::vector<std::byte> file_;
  Content before_;
  Content after_;
  std::vector<Content> states_;  // before, between and after the statements of the work
  std::uint32_t seeds_ = 0;
  std::size_t disks_ = 0;
};

TEST_P(AccessFaults, LoseNothing) {
  const Scene& scene = GetParam();
  FaultFiles files = Disk(0, Trouble::kEnd);
  {
    Database database = Open(files);
    states_ = {before_};
    Do(database, scene, &states_);
    database.Flush();
    after_ = ContentOf(database);
    ASSERT_NE(before_, after_);
    states_.push_back(after_);
  }
  if (scene.work.new_page != 0) {
    ASSERT_GT(PagesOfType(files.Content(kFile), scene.version, scene.work.new_page),
              PagesOfType(file_, scene.version, scene.work.new_page));
  }
  const std::uint64_t steps = files.Steps();
  const std::uint64_t stride = scene.work.points == 0 ? 1 : std::max<std::uint64_t>(1, steps / scene.work.points);
  std::size_t points = 0;
  for (std::uint64_t step = 1; step <= steps && !HasFailure(); step += stride * pager::kMomentStep) {
    StopAt(step);
    FailAt(step, Trouble::kError);
    FailAt(step, Trouble::kError, 5);  // the way back fails, too
    FailAt(step, Trouble::kFull);
    points += 4;
  }
  std::cout << points << " points in " << steps << " steps, " << disks_ << " disks looked at\n";
}

std::vector<Scene> Scenes() {
  std::vector<Scene> scenes;
  for (const Work& work : kWorks) {
    for (const int version : {3, 4}) {
      for (const bool indexed : {false, true}) {
        if (indexed || (work.new_page != kIndexLeafPage && work.points == 0)) {
          scenes.push_back({work, version, indexed});
        }
      }
    }
  }
  return scenes;
}

INSTANTIATE_TEST_SUITE_P(All, AccessFaults, testing::ValuesIn(Scenes()),
                         [](const testing::TestParamInfo<Scene>& scene) {
                           return std::string(scene.param.work.name)
                               .append(scene.param.version == 3 ? "Jet3" : "Jet4")
                               .append(scene.param.indexed ? "Indexed" : "");
                         });

// A new file is there as a whole or not at all, and the next attempt makes it.
TEST(AccessFaultsOfNewFiles, WholeOrNone) {
  std::size_t points = 0;
  std::size_t disks = 0;
  for (const Scene& scene : {Scene{{}, 3, false}, {{}, 3, true}, {{}, 4, false}, {{}, 4, true}}) {
    FaultFiles good;
    static_cast<void>(Create(good, scene));
    const std::uint64_t steps = good.Steps();
    for (const Trouble trouble : {Trouble::kEnd, Trouble::kError, Trouble::kFull}) {
      for (std::uint64_t step = 1; step <= steps; step += pager::kMomentStep, ++points) {
        FaultFiles files;
        files.Plan(step, trouble);
        bool done = false;
        try {
          static_cast<void>(Create(files, scene));
          done = true;
        } catch (const pager::PagerError&) {
        }
        for (std::uint32_t seed = 0; seed < 5; ++seed, ++disks) {
          const auto disk = seed == 0 ? files.Killed() : files.AfterPowerFailure(seed);
          ASSERT_TRUE(!done || disk->Exists(kFile)) << "step " << step;
          if (!disk->Exists(kFile)) {
            static_cast<void>(Create(*disk, scene));
          }
          const Database database = Open(*disk);
          ASSERT_EQ(ContentOf(database), Content());
          ASSERT_EQ(Health(database), "sound") << "step " << step << ", seed " << seed;
        }
      }
    }
  }
  std::cout << points << " points, " << disks << " disks looked at\n";
}

}  // namespace
}  // namespace marlevo::access
