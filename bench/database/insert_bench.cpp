// Saving the largest list: 23,000 single INSERT statements and what makes them durable.
#include "database/stores.h"
#include "platform/database/connection.h"
#include "support/scratch_folder.h"
#include "support/yardstick.h"

int main() {
  using namespace marlevo;
  const testing_support::ScratchFolder folder;
  const std::filesystem::path file = folder.Path() / "4star.mdb";
  bench::MakeStore(file, {});
  bench::SqliteStore sqlite(folder.Path() / "yardstick.db", {});
  Connection connection(FileConnectionString(file));

  std::vector<std::string> statements;
  for (const bench::Ticket& ticket : bench::Record(23000)) {
    statements.push_back(bench::InsertSql(ticket));
  }

  bench::YardstickTable table;
  table.Row("23,000 INSERTs, durable",
            {.prepare =
                 [&] {
                   connection.Execute("DELETE FROM CUSTOM_D");
                   connection.Flush();
                 },
             .run =
                 [&] {
                   for (const std::string& statement : statements) {
                     connection.Execute(statement);
                   }
                   connection.Flush();
                 }},
            {.prepare =
                 [&] {
                   sqlite.Run("DELETE FROM CUSTOM_D");
                   sqlite.Run("PRAGMA wal_checkpoint(TRUNCATE)");
                 },
             .run =
                 [&] {
                   for (const std::string& statement : statements) {
                     sqlite.Run(statement);
                   }
                 }},
            0.8, 10);
  return table.ExitStatus();
}
