// A process that is killed in the midst of its work, on real files. MARLEVO_KILLS sets how often.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/database/database.h"

namespace marlevo::access {
namespace {

using enum ColumnType;

constexpr std::int64_t kBatch = 40;  // rows of one statement
constexpr std::int64_t kKept = 5;    // statements whose rows stay

// Statement n puts in the rows of batch n and takes out those of batch n - kKept. How many statements the file holds,
// or nothing when it holds anything else.
std::optional<std::int64_t> StatementsIn(const Table& table) {
  std::map<std::int64_t, std::int64_t> batches;
  for (Cursor cursor = table.Scan(); cursor.Next();) {
    ++batches[cursor.Integer(0)];
  }
  if (batches.empty()) {
    return 0;
  }
  const std::int64_t last = batches.rbegin()->first;
  for (std::int64_t batch = std::max<std::int64_t>(0, last - kKept + 1); batch <= last; ++batch) {
    if (batches[batch] != kBatch) {
      return std::nullopt;
    }
  }
  return batches.size() == static_cast<std::size_t>(std::min(kKept, last + 1)) ? std::optional(last + 1) : std::nullopt;
}

class AccessProcess : public NewFileTest {
 protected:
  // Never returns. Says how many statements are flushed, again and again.
  [[noreturn]] void WorkForever(int out) const {
    try {
      Database database = Reopen();
      Table table = database.OpenTable("T");
      const std::string text(200, 'x');
      for (std::int64_t n = StatementsIn(table).value();; ++n) {
        InOneStatement(database, [&] {
          for (Cursor cursor = table.Scan(std::vector<Equals>{{0, n - kKept}}); cursor.Next();) {
            table.Delete(cursor.Row());
          }
          for (std::int64_t i = 0; i < kBatch; ++i) {
            table.Insert(Row{n, i, std::string_view(text).substr(0, static_cast<std::size_t>(n * i % 200))});
          }
        });
        if (n % 3 == 0) {
          database.Flush();
          const std::int64_t flushed = n + 1;
          if (write(out, &flushed, sizeof flushed) != sizeof flushed) {
            _exit(2);
          }
        }
      }
    } catch (const std::exception& error) {
      std::cerr << error.what() << "\n";
      _exit(1);
    }
  }
};

TEST_F(AccessProcess, KilledAtAnyMomentLosesNothingFlushed) {
  Make({{"T",
         {{"batch", kLong}, {"n", kLong}, {"text", kText, 255}},
         {{.name = "PrimaryKey", .columns = {{"batch"}, {"n"}}, .primary_key = true},
          {.name = "text", .columns = {{"text", true}}}}}});
  std::mt19937 random(std::random_device{}());
  const char* wanted = std::getenv("MARLEVO_KILLS");
  const int kills = wanted != nullptr ? std::atoi(wanted) : 50;
  std::int64_t statements = 0;
  for (int turn = 0; turn < kills; ++turn) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
      close(ends[0]);
      WorkForever(ends[1]);
    }
    close(ends[1]);
    std::int64_t flushed = 0;
    const auto hear = [&] { return read(ends[0], &flushed, sizeof flushed) == sizeof flushed; };
    ASSERT_TRUE(hear());
    // Who has the file open for reading has to get along with what is left behind.
    std::optional<Database> database;
    if (turn % 2 == 0) {
      database.emplace(Reopen());
    }
    usleep(static_cast<useconds_t>(random() % 20000));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    while (hear()) {
    }
    close(ends[0]);

    if (!database) {
      database.emplace(Reopen());
    }
    const std::optional<std::int64_t> found = StatementsIn(database->OpenTable("T"));
    ASSERT_TRUE(found.has_value()) << "half a statement";
    ASSERT_GE(*found, flushed);
    ASSERT_GT(*found, statements);
    ASSERT_EQ(Health(*database), "sound");
    statements = *found;
  }
  std::cout << kills << " kills, " << statements << " statements\n";
}

}  // namespace
}  // namespace marlevo::access
