// The engine on a disk that fails, fills up, or stops at any step of its work.

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/database.h"
#include "platform/pager/fault_files.h"

namespace marlevo::access {
namespace {

using pager::FaultFiles;
using Trouble = pager::FaultFiles::Trouble;
using namespace std::string_view_literals;

constexpr const char* kFile = "/disk/4star.mdb";

constexpr std::size_t kSmallMemo = 6000;
constexpr std::size_t kLargeMemo = 10 << 20;  // more than the pager keeps in memory until a statement ends

using Content = std::vector<std::vector<std::string>>;  // rows of each table

struct History {
  std::vector<Content> states;  // after each statement
  std::size_t flushed = 0;      // how many of them the last Flush that returned has covered
};

Content ContentOf(const Database& database) {
  Content content;
  for (const std::string& name : database.Tables()) {
    content.push_back(TextsOf(database.OpenTable(name)));
  }
  return content;
}

// One turn of work: rows come, long values with them (one of `memo_size` bytes), rows go.
void Turn(const Database& database, std::int64_t turn, std::size_t memo_size) {
  Table customers = database.OpenTable("CUSTOM_H");
  Table tickets = database.OpenTable("CUSTOM_D");
  Statement statement(database);
  if (turn % 3 == 2) {
    for (Cursor cursor = tickets.Scan(std::vector<Equals>{{1, turn - 2}}); cursor.Next();) {
      tickets.Delete(cursor.Row());
    }
    for (Cursor cursor = customers.Scan(); cursor.Next();) {
      if (cursor.Text(0) == std::to_string(turn - 4)) {
        customers.Delete(cursor.Row());
      }
    }
  } else {
    const std::string number = std::to_string(turn);
    const std::string memo(turn == 6 ? memo_size : kSmallMemo, 'm');
    customers.Insert(std::vector<Value>{std::string_view(number), "王小明"sv, std::string_view(memo)});
    for (std::int64_t i = 0; i < 130; ++i) {
      tickets.Insert(std::vector<Value>{std::string_view(number), turn, i, "some more text"sv});
    }
  }
  statement.Commit();
}

// What fails is rolled back, and when the machine goes on so does the work, with what was there before.
std::optional<Database> Work(FaultFiles& files, History& history, std::size_t memo_size, bool goes_on) {
  std::optional<Database> database;
  try {
    database.emplace(Database::Create(
        kFile, "qorvat",
        {{"CUSTOM_H", {{"NO", ColumnType::kText, 20}, {"NAME", ColumnType::kText, 20}, {"MEMO", ColumnType::kMemo}}},
         {"CUSTOM_D",
          {{"NO", ColumnType::kText, 20},
           {"TURN", ColumnType::kLong},
           {"N", ColumnType::kLong},
           {"T", ColumnType::kText, 50}},
          {{.name = "NO", .columns = {{"NO"}}},
           {.name = "PrimaryKey", .columns = {{"TURN", true}, {"N"}}, .primary_key = true}}}},
        files));
  } catch (const pager::PagerError&) {
    EXPECT_TRUE(files.Struck());
    return database;
  }
  history.states.push_back(ContentOf(*database));
  for (std::int64_t turn = 0; turn < 12; ++turn) {
    try {
      Turn(*database, turn, memo_size);
      history.states.push_back(ContentOf(*database));
      if (turn % 2 == 1) {
        database->Flush();
        history.flushed = history.states.size() - 1;
      }
    } catch (const pager::PagerError&) {
      if (goes_on) {
        EXPECT_EQ(ContentOf(*database), history.states.back());
      }
    }
  }
  return database;
}

std::uint64_t StepsOfWork(std::size_t memo_size) {
  FaultFiles files;
  History history;
  static_cast<void>(Work(files, history, memo_size, true));
  return files.Steps();
}

testing::AssertionResult HoldsPrefix(FaultFiles& disk, const History& history) {
  if (!disk.Exists(kFile)) {
    return history.states.empty() ? testing::AssertionSuccess() : testing::AssertionFailure() << "the file is gone";
  }
  try {
    const Database database = Database::Open(kFile, {.password = "qorvat", .code_page = {}}, disk);
    const Content content = ContentOf(database);
    const auto from = history.states.begin() + static_cast<std::ptrdiff_t>(history.flushed);
    if (history.states.empty() ? content != Content(2)
                               : std::find(from, history.states.end(), content) == history.states.end()) {
      return testing::AssertionFailure() << "no state that was flushed or came after it";
    }
    const std::string health = Health(database);
    return health == "sound" ? testing::AssertionSuccess() : testing::AssertionFailure() << health;
  } catch (const std::exception& error) {
    return testing::AssertionFailure() << error.what();
  }
}

void StopAt(std::uint64_t step, std::size_t memo_size, std::uint32_t seeds) {
  FaultFiles files;
  files.Plan(step, Trouble::kEnd);
  History history;
  { const std::optional<Database> database = Work(files, history, memo_size, false); }
  EXPECT_TRUE(HoldsPrefix(*files.Killed(), history)) << "killed at step " << step;
  for (std::uint32_t seed = 0; seed < seeds; ++seed) {
    EXPECT_TRUE(HoldsPrefix(*files.AfterPowerFailure(seed), history)) << "step " << step << ", seed " << seed;
  }
}

TEST(AccessFaults, MachineStopsAnywhere) {
  const std::uint64_t steps = StepsOfWork(kSmallMemo);
  for (std::uint64_t step = 1; step <= steps && !HasFailure(); ++step) {
    StopAt(step, kSmallMemo, 4);
  }
  std::cout << "stops tried at " << steps << " steps, each with 4 power failures\n";
}

TEST(AccessFaults, MachineStopsInLargeStatements) {
  const std::uint64_t steps = StepsOfWork(kLargeMemo);
  std::size_t tried = 0;
  for (std::uint64_t step = 60; step <= steps && !HasFailure(); step += steps / 10, ++tried) {
    StopAt(step, kLargeMemo, 1);
  }
  std::cout << "stops tried at " << tried << " of " << steps << " steps\n";
}

TEST(AccessFaults, WorkGoesOnAfterAnError) {
  const std::uint64_t steps = StepsOfWork(kSmallMemo);
  for (const Trouble trouble : {Trouble::kError, Trouble::kFull}) {
    for (std::uint64_t step = 1; step <= steps; ++step) {
      FaultFiles files;
      files.Plan(step, trouble);
      History history;
      std::optional<Database> database = Work(files, history, kSmallMemo, true);
      files.MakeRoom();
      if (!database) {
        ASSERT_TRUE(HoldsPrefix(*files.Killed(), history)) << "step " << step;
        continue;
      }
      ASSERT_NO_THROW(database->Flush());
      ASSERT_EQ(ContentOf(*database), history.states.back()) << "step " << step;
      ASSERT_EQ(Health(*database), "sound") << "step " << step;
      history.flushed = history.states.size() - 1;
      ASSERT_TRUE(HoldsPrefix(*files.AfterPowerFailure(1), history)) << "step " << step;
    }
  }
  std::cout << "errors and a full disk tried at " << steps << " steps\n";
}

}  // namespace
}  // namespace marlevo::access
