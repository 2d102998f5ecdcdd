// Whether a row costs the same among 10,000,000 tickets without an index as among 1,000,000. Makes a file of 700 MB: to
// be run by hand.
#include <algorithm>
#include <chrono>
#include <cstdio>
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

// In nanoseconds a row.
struct Costs {
  double insert = 1e18;
  double scan = 1e18;
};

template <typename Work>
double Nanoseconds(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

// Fills a store with so many tickets and measures what is done to it then.
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
    const double scan =
        Nanoseconds([&] { connection.Open("SELECT * FROM CUSTOM_D WHERE PLAY_MODE=3 AND NO1=11 AND NO2=2"); });
    best.scan = std::min(best.scan, scan / static_cast<double>(rows));
    const double insert = Nanoseconds([&] {
      for (const std::string& statement : statements) {
        connection.Execute(statement);
      }
      connection.Flush();
    });
    best.insert = std::min(best.insert, insert / static_cast<double>(kSaved));
    connection.Execute("DELETE FROM CUSTOM_D WHERE SAL_DATE='20991231235959'");
    connection.Flush();
  }
  std::printf("%10zu tickets, %6.1f MB: %8.1f ns a row inserted, %8.2f ns a row looked at\n", rows,
              static_cast<double>(std::filesystem::file_size(file)) / 1e6, best.insert, best.scan);
  std::filesystem::remove(file);
  return best;
}

}  // namespace

int main() {
  const testing_support::ScratchFolder folder;
  const Costs few = Measure(folder.Path() / "few.mdb", 1000000);
  const Costs many = Measure(folder.Path() / "many.mdb", 10000000);
  const double insert = many.insert / few.insert;
  const double scan = many.scan / few.scan;
  const bool over = std::max(insert, scan) > kLimit;
  std::printf("10,000,000 : 1,000,000          insert %.2f, scan %.2f, limit %.2f%s\n", insert, scan, kLimit,
              over ? "  OVER" : "");
  return over ? 1 : 0;
}
