// Whether a row costs the same among 10,000,000 tickets without an index as among 1,000,000. Makes a file of 700 MB,
// so it is run by hand. The limit is on processor time, because other programs of the machine disturb the clock time of
// anything that takes so long; the clock time is printed beside it.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

#include "database/stores.h"
#include "platform/database/connection.h"
#include "support/scratch_folder.h"

namespace {

using namespace marlevo;

constexpr int kRounds = 5;
constexpr std::size_t kSaved = 23000;  // the largest list
constexpr double kLimit = 1.25;

// The best of all rounds, in nanoseconds a row.
struct Cost {
  double processor = 1e18;
  double clock = 1e18;

  template <typename Work>
  void Take(std::size_t rows, const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    const std::clock_t processor_start = std::clock();
    work();
    const auto count = static_cast<double>(rows);
    processor = std::min(processor, static_cast<double>(std::clock() - processor_start) * 1e9 / CLOCKS_PER_SEC / count);
    const std::chrono::duration<double, std::nano> passed = std::chrono::steady_clock::now() - start;
    clock = std::min(clock, passed.count() / count);
  }
};

struct Costs {
  Cost insert;
  Cost scan;
};

// Fills a store with `rows` tickets, then measures what inserting and scanning cost.
Costs Measure(const std::filesystem::path& file, std::size_t rows) {
  constexpr std::size_t kPart = 1000000;
  bench::MakeStore(file, {});
  const std::vector<bench::Ticket> part = bench::Tickets(kPart);
  for (std::size_t stored = 0; stored < rows; stored += kPart) {
    bench::AddTickets(file, part);
  }
  std::vector<std::string> statements;
  for (const bench::Ticket& ticket : bench::Record(kSaved)) {
    statements.push_back(bench::InsertSql(ticket));
  }
  Connection connection(FileConnectionString(file));
  Costs best;
  for (int round = 0; round < kRounds; ++round) {
    best.scan.Take(rows, [&] { connection.Open("SELECT * FROM CUSTOM_D WHERE PLAY_MODE=3 AND NO1=11 AND NO2=2"); });
    best.insert.Take(kSaved, [&] {
      for (const std::string& statement : statements) {
        connection.Execute(statement);
      }
      connection.Flush();
    });
    connection.Execute("DELETE FROM CUSTOM_D WHERE SAL_DATE='20991231235959'");
    connection.Flush();
  }
  std::printf("%10zu %8.1f %12.1f %12.1f %12.2f %12.2f\n", rows,
              static_cast<double>(std::filesystem::file_size(file)) / 1e6, best.insert.processor, best.insert.clock,
              best.scan.processor, best.scan.clock);
  std::filesystem::remove(file);
  return best;
}

}  // namespace

int main() {
  const test::ScratchFolder folder;
  std::printf("%10s %8s %25s %25s\n%10s %8s %12s %12s %12s %12s\n", "tickets", "MB", "ns a row inserted",
              "ns a row looked at", "", "", "processor", "clock", "processor", "clock");
  const Costs few = Measure(folder.Path() / "few.mdb", 1000000);
  const Costs many = Measure(folder.Path() / "many.mdb", 10000000);
  const double insert = many.insert.processor / few.insert.processor;
  const double scan = many.scan.processor / few.scan.processor;
  const bool over = std::max(insert, scan) > kLimit;
  std::printf("ratio of processor time: insert %.2f, scan %.2f, limit %.2f%s\n", insert, scan, kLimit,
              over ? "  OVER" : "");
  return over ? 1 : 0;
}
