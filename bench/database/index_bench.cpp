// The same work with a primary key and an index on the customer, in both stores: saving the largest list, and listing
// the records of one customer among 1,000,000 tickets.
#include <filesystem>
#include <string>
#include <vector>

#include "database/stores.h"
#include "platform/access/database.h"
#include "platform/database/connection.h"
#include "platform/database/connection_string.h"
#include "support/scratch_folder.h"
#include "support/yardstick.h"

namespace {

using namespace marlevo;

void MakeIndexedStore(const std::filesystem::path& file, const std::vector<bench::Ticket>& tickets) {
  using enum access::ColumnType;
  access::Database::Create(file, ParseConnectionString(FileConnectionString(file)).password,
                           {{"CUSTOM_D",
                             {{"CUSTOM_NO", kText, 50},
                              {"SAL_DATE", kText, 14},
                              {"PLAY_MODE", kLong},
                              {"PLAY_AMT", kDouble},
                              {"PLAY_SEQ", kLong},
                              {"NO1", kLong},
                              {"NO2", kLong},
                              {"NO3", kLong},
                              {"NO4", kLong}},
                             {{.name = "PrimaryKey",
                               .columns = {{"CUSTOM_NO"}, {"SAL_DATE"}, {"PLAY_MODE"}, {"PLAY_SEQ"}},
                               .primary_key = true},
                              {.name = "CUSTOM_NO", .columns = {{"CUSTOM_NO"}}}}}});
  bench::AddTickets(file, tickets);
}

void AddIndexes(bench::SqliteStore& sqlite) {
  sqlite.Run("CREATE UNIQUE INDEX PrimaryKey ON CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_MODE,PLAY_SEQ)");
  sqlite.Run("CREATE INDEX CUSTOM_NO ON CUSTOM_D (CUSTOM_NO)");
  sqlite.Run("PRAGMA wal_checkpoint(TRUNCATE)");
}

void Insert(bench::YardstickTable& table, const std::filesystem::path& folder) {
  const std::filesystem::path file = folder / "saved.mdb";
  MakeIndexedStore(file, {});
  bench::SqliteStore sqlite(folder / "saved.db", {});
  AddIndexes(sqlite);
  Connection connection(FileConnectionString(file));
  std::vector<std::string> statements;
  for (const bench::Ticket& ticket : bench::Record(23000)) {
    statements.push_back(bench::InsertSql(ticket));
  }
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
            1.0, 10);
}

void List(bench::YardstickTable& table, const std::filesystem::path& folder) {
  const std::filesystem::path file = folder / "large.mdb";
  const std::vector<bench::Ticket> tickets = bench::Tickets(1000000);
  MakeIndexedStore(file, tickets);
  bench::SqliteStore sqlite(folder / "large.db", tickets);
  AddIndexes(sqlite);
  Connection connection(FileConnectionString(file));
  const std::string statement =
      "SELECT SAL_DATE,COUNT(CUSTOM_NO) AS SAL_NUM FROM CUSTOM_D WHERE CUSTOM_NO='A1234' GROUP BY SAL_DATE";
  table.Row("records of one of 400 customers",
            {.prepare = {},
             .run =
                 [&] {
                   for (Recordset rows = connection.Open(statement); !rows.AtEnd(); rows.MoveNext()) {
                   }
                 }},
            {.prepare = {}, .run = [&] { sqlite.Run(statement); }}, 10, 20);
}

}  // namespace

int main() {
  const testing_support::ScratchFolder folder;
  bench::YardstickTable table;
  Insert(table, folder.Path());
  List(table, folder.Path());
  return table.ExitStatus();
}
