// The same work with a primary key and an index on the customer, in both stores: saving the largest list, and listing
// the records of one customer among 1,000,000 tickets.
#include <filesystem>

#include "database/stores.h"
#include "platform/database/connection.h"
#include "support/scratch_folder.h"

namespace {

using namespace marlevo;

void List(bench::YardstickTable& table, const std::filesystem::path& folder) {
  const std::filesystem::path file = folder / "large.mdb";
  const std::vector<bench::Ticket> tickets = bench::Tickets(1000000);
  bench::MakeStore(file, tickets, bench::Indexes::kCustomer);
  bench::SqliteStore sqlite(folder / "large.db", tickets, bench::Indexes::kCustomer);
  Connection connection(FileConnectionString(file));
  const std::string statement =
      "SELECT SAL_DATE,COUNT(CUSTOM_NO) AS SAL_NUM FROM CUSTOM_D WHERE CUSTOM_NO='A1234' GROUP BY SAL_DATE";
  const auto run = [&] { connection.Open(statement); };
  table.Row("records of one of 400 customers", {.prepare = {}, .run = run},
            {.prepare = {}, .run = [&] { sqlite.Run(statement); }}, 10, 20);
  table.WithinMilliseconds("the same, by itself", run, 5, 20);
}

}  // namespace

int main() {
  const test::ScratchFolder folder;
  bench::YardstickTable table;
  bench::MeasureSaving(table, folder.Path(), bench::Indexes::kCustomer, 0.5);
  List(table, folder.Path());
  return table.ExitStatus();
}
