// A year of saves: 200 records of 23,000 tickets one after the other, in a table with indexes, the oldest record
// deleted whenever five are kept. Size of the file, processor time of a save and memory must stay what they are after
// the first twenty.
//   soak_bench [SAVES]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "database/memory.h"
#include "database/stores.h"
#include "platform/access/database/database.h"
#include "platform/database/connection.h"
#include "support/scratch_folder.h"

namespace {

using namespace marlevo;

constexpr int kKept = 5;
constexpr int kGroup = 10;
constexpr double kMostGrowth = 1.02;  // of the file, and of memory
constexpr double kMostSlowdown = 1.5;

std::string StampOf(int save) {
  return std::to_string(20260101000000 + save);
}

struct Milliseconds {
  double elapsed;
  double processor;  // which other programs of the machine hardly touch
};

Milliseconds Save(const std::string& opening, int save, std::vector<bench::Ticket>& tickets) {
  const auto start = std::chrono::steady_clock::now();
  const std::clock_t processor = std::clock();
  Connection connection(opening);
  for (bench::Ticket& ticket : tickets) {
    ticket.stamp = StampOf(save);
    connection.Execute(bench::InsertSql(ticket));
  }
  connection.Flush();
  return {std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count(),
          static_cast<double>(std::clock() - processor) * 1000 / CLOCKS_PER_SEC};
}

}  // namespace

int main(int argc, char** argv) {
  const int saves = argc > 1 ? std::atoi(argv[1]) : 200;
  const test::ScratchFolder folder;
  const std::filesystem::path file = folder.Path() / "4star.mdb";
  bench::MakeStore(file, {}, bench::Indexes::kCustomer);
  const std::string opening = FileConnectionString(file);
  std::vector<bench::Ticket> tickets = bench::Record(23000);

  std::printf("%8s %14s %14s %12s %12s\n", "saves", "best save ms", "processor ms", "file MiB", "memory MiB");
  double first_size = 0;
  double first_memory = 0;
  double first_time = 0;
  bool over = false;
  Milliseconds best = {1e9, 1e9};
  for (int save = 1; save <= saves; ++save) {
    const Milliseconds time = Save(opening, save, tickets);
    best = {std::min(best.elapsed, time.elapsed), std::min(best.processor, time.processor)};
    if (save > kKept) {
      Connection connection(opening);
      connection.Execute("DELETE FROM CUSTOM_D WHERE CUSTOM_NO='" + tickets.front().customer + "' AND SAL_DATE='" +
                         StampOf(save - kKept) + "'");
      connection.Flush();
    }
    if (save % kGroup != 0) {
      continue;
    }
    const double size = static_cast<double>(std::filesystem::file_size(file)) / (1 << 20);
    const double memory = bench::MemoryMiB("VmRSS");
    if (save <= 2 * kGroup) {
      first_size = size;
      first_memory = memory;
      first_time = best.processor;
    }
    const bool grown = size > first_size * kMostGrowth || memory > first_memory * kMostGrowth + 1;
    const bool slow = best.processor > first_time * kMostSlowdown;
    over = over || grown || slow;
    std::printf("%8d %14.1f %14.1f %12.2f %12.1f%s\n", save, best.elapsed, best.processor, size, memory,
                grown || slow ? "  OVER" : "");
    std::fflush(stdout);
    best = {1e9, 1e9};
  }
  const std::vector<std::string> faults =
      access::Database::Open(file, {ParseConnectionString(opening).password, std::nullopt}).FindFaults();
  Connection connection(opening);
  const double rows = connection.Open("SELECT COUNT(*) AS N FROM CUSTOM_D").Number("N");
  std::printf("%.0f tickets at the end, %zu faults in the file\n", rows, faults.size());
  return over || !faults.empty() || rows != std::min(saves, kKept) * 23000.0 ? 1 : 0;
}
