// Deleting one purchase record of 23,000 tickets that stands among 1,000,000, durably, by the statement of the windows.
#include "database/stores.h"
#include "platform/database/connection.h"
#include "support/scratch_folder.h"
#include "support/yardstick.h"

int main() {
  using namespace marlevo;
  const test::ScratchFolder folder;
  const std::filesystem::path file = folder.Path() / "4star.mdb";
  const std::vector<bench::Ticket> record = bench::Record(23000);
  const std::vector<bench::Ticket> others = bench::Tickets(1000000);
  bench::MakeStore(file, others);
  bench::SqliteStore sqlite(folder.Path() / "yardstick.db", others);
  Connection connection(FileConnectionString(file));

  const std::string statement =
      "DELETE FROM CUSTOM_D WHERE CUSTOM_NO='" + record[0].customer + "' AND SAL_DATE='" + record[0].stamp + "'";
  bench::YardstickTable table;
  table.Row("delete 23,000 of 1,023,000",
            {.prepare = [&] { bench::AddTickets(file, record); },
             .run =
                 [&] {
                   connection.Execute(statement);
                   connection.Flush();
                 }},
            {.prepare =
                 [&] {
                   sqlite.Add(record);
                   sqlite.Run("PRAGMA wal_checkpoint(TRUNCATE)");
                 },
             .run = [&] { sqlite.Run(statement); }},
            1.0, 10);
  return table.ExitStatus();
}
