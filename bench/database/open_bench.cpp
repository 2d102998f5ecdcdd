// A database file of 60 MB and more: how long it takes to open, and how much memory all work on it takes.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "database/memory.h"
#include "database/stores.h"
#include "platform/database/connection.h"
#include "support/scratch_folder.h"

namespace {

using namespace marlevo;

constexpr double kOpenLimit = 5;     // ms
constexpr double kMemoryLimit = 64;  // MiB

double OpenMilliseconds(const std::string& opening) {
  double best = 1e9;
  for (int round = 0; round < 50; ++round) {
    const auto start = std::chrono::steady_clock::now();
    Connection connection(opening);
    connection.Open("SELECT * FROM CUSTOM_H WHERE CUSTOM_NO='A1000'");
    best = std::min(best, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
  }
  return best;
}

}  // namespace

int main(int count, char** arguments) {
  // Called with a file name, the program only makes the file. It calls itself so, because the memory that making the
  // file takes must not count in the process that is measured.
  if (count == 2) {
    bench::MakeStore(arguments[1], bench::Tickets(1000000));
    return 0;
  }
  const test::ScratchFolder folder;
  const std::filesystem::path file = folder.Path() / "4star.mdb";
  const std::string command = std::string("'").append(arguments[0]).append("' '").append(file.string()).append("'");
  if (std::system(command.c_str()) != 0) {
    return 1;
  }
  const std::string opening = FileConnectionString(file);
  std::printf("file of %.1f MB\n", static_cast<double>(std::filesystem::file_size(file)) / 1e6);

  const double milliseconds = OpenMilliseconds(opening);
  std::printf("open and find one customer  %8.3f ms   limit %g ms%s\n", milliseconds, kOpenLimit,
              milliseconds > kOpenLimit ? "  OVER" : "");

  const double before = bench::MemoryMiB("VmRSS");
  {
    Connection connection(opening);
    connection.Open("SELECT * FROM CUSTOM_D WHERE PLAY_MODE=3 AND NO1=1 AND NO2=2 ORDER BY CUSTOM_NO");
    connection.Open(
        "SELECT SAL_DATE,COUNT(CUSTOM_NO) AS SAL_NUM FROM CUSTOM_D WHERE CUSTOM_NO='A1007' GROUP BY SAL_DATE");
    for (const bench::Ticket& ticket : bench::Record(23000)) {
      connection.Execute(bench::InsertSql(ticket));
    }
    connection.Flush();
    connection.Execute("DELETE FROM CUSTOM_D WHERE PLAY_MODE=4");
    connection.Flush();
  }
  const double most = bench::MemoryMiB("VmHWM") - before;
  std::printf("memory, most over baseline  %8.1f MiB  limit %g MiB%s\n", most, kMemoryLimit,
              most > kMemoryLimit ? "  OVER" : "");

  Connection connection(opening);
  const double without = bench::MemoryMiB("VmRSS");
  const Recordset rows = connection.Open("SELECT * FROM CUSTOM_D");
  std::printf("a recordset of 800,000 rows %8.1f MiB  on top\n", bench::MemoryMiB("VmRSS") - without);
  return milliseconds > kOpenLimit || most > kMemoryLimit ? 1 : 0;
}
