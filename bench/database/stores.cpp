#include "database/stores.h"

#include <algorithm>
#include <random>
#include <stdexcept>

#include "platform/access/database/database.h"
#include "platform/database/connection.h"
#include "platform/database/sqlite_setup.h"
#include "tools/make_database/new_database.h"

namespace marlevo::bench {
namespace {

constexpr char kStamp[] = "20991231235959";

void FillDigits(Ticket& ticket, std::mt19937& random) {
  for (std::int64_t& digit : ticket.digits) {
    digit = static_cast<std::int64_t>(random() % 10);
  }
}

}  // namespace

std::vector<Ticket> Tickets(std::size_t count) {
  std::mt19937 random(1);
  std::vector<Ticket> tickets(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t record = i / 500;
    Ticket& ticket = tickets[i];
    ticket.customer = std::string("A").append(std::to_string(1000 + record % 400));
    ticket.stamp = std::to_string(20260101000000 + record);
    ticket.mode = static_cast<std::int64_t>(i / 100 % 5);
    ticket.amount = 25;
    ticket.seq = static_cast<std::int64_t>(i % 100) + 1;
    FillDigits(ticket, random);
  }
  return tickets;
}

std::vector<Ticket> Record(std::size_t count) {
  std::mt19937 random(2);
  std::vector<Ticket> tickets(count);
  for (std::size_t i = 0; i < count; ++i) {
    Ticket& ticket = tickets[i];
    ticket = {"A1007", kStamp, static_cast<std::int64_t>(i % 5), 50, static_cast<std::int64_t>(i / 5) + 1, {}};
    FillDigits(ticket, random);
  }
  return tickets;
}

std::string InsertSql(const Ticket& ticket) {
  std::string sql = "INSERT INTO CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_MODE,PLAY_AMT,PLAY_SEQ,NO1,NO2,NO3,NO4) VALUES ('" +
                    ticket.customer + "','" + ticket.stamp + "'," + std::to_string(ticket.mode) + "," +
                    std::to_string(static_cast<int>(ticket.amount)) + "," + std::to_string(ticket.seq);
  for (const std::int64_t digit : ticket.digits) {
    sql.append(",").append(std::to_string(digit));
  }
  return sql + ")";
}

void MakeStore(const std::filesystem::path& file, const std::vector<Ticket>& tickets, Indexes indexes) {
  std::vector<access::TableSchema> tables = NewTables();
  if (indexes == Indexes::kCustomer) {
    access::TableSchema& purchases = *std::ranges::find(tables, "CUSTOM_D", &access::TableSchema::name);
    purchases.indexes = {{.name = "PrimaryKey",
                          .columns = {{"CUSTOM_NO"}, {"SAL_DATE"}, {"PLAY_MODE"}, {"PLAY_SEQ"}},
                          .primary_key = true},
                         {.name = "CUSTOM_NO", .columns = {{"CUSTOM_NO"}}}};
  }
  access::Database::Create(file, ParseConnectionString(FileConnectionString(file)).password, tables);
  AddTickets(file, tickets);
}

void AddTickets(const std::filesystem::path& file, const std::vector<Ticket>& tickets) {
  const std::string password = ParseConnectionString(FileConnectionString(file)).password;
  access::Database database = access::Database::Open(file, {password, std::nullopt});
  access::Table table = database.OpenTable("CUSTOM_D");
  for (const Ticket& ticket : tickets) {
    const auto& digits = ticket.digits;
    const access::Value values[] = {ticket.customer, ticket.stamp, ticket.mode, ticket.amount, ticket.seq,
                                    digits[0],       digits[1],    digits[2],   digits[3]};
    table.Insert(values);
  }
  database.Flush();
}

SqliteStore::SqliteStore(const std::filesystem::path& file, const std::vector<Ticket>& tickets, Indexes indexes) {
  SetUpSqlite();
  if (sqlite3_open(file.string().c_str(), &sql_) != SQLITE_OK) {
    throw std::runtime_error("the yardstick's file cannot be made");
  }
  Run("PRAGMA journal_mode=WAL");
  Run("PRAGMA synchronous=NORMAL");
  Run("CREATE TABLE CUSTOM_D (CUSTOM_NO TEXT, SAL_DATE TEXT, PLAY_MODE INTEGER, PLAY_AMT REAL, PLAY_SEQ INTEGER, "
      "NO1 INTEGER, NO2 INTEGER, NO3 INTEGER, NO4 INTEGER)");
  if (indexes == Indexes::kCustomer) {
    Run("CREATE UNIQUE INDEX PrimaryKey ON CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_MODE,PLAY_SEQ)");
    Run("CREATE INDEX CUSTOM_NO ON CUSTOM_D (CUSTOM_NO)");
  }
  Add(tickets);
  Run("PRAGMA wal_checkpoint(TRUNCATE)");
}

void SqliteStore::Add(const std::vector<Ticket>& tickets) {
  Run("BEGIN");
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2(sql_, "INSERT INTO CUSTOM_D VALUES (?,?,?,?,?,?,?,?,?)", -1, &insert, nullptr);
  for (const Ticket& ticket : tickets) {
    sqlite3_bind_text(insert, 1, ticket.customer.c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_text(insert, 2, ticket.stamp.c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_int64(insert, 3, ticket.mode);
    sqlite3_bind_double(insert, 4, ticket.amount);
    sqlite3_bind_int64(insert, 5, ticket.seq);
    for (int i = 0; i < 4; ++i) {
      sqlite3_bind_int64(insert, 6 + i, ticket.digits[i]);
    }
    sqlite3_step(insert);
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  Run("COMMIT");
}

std::size_t SqliteStore::Run(std::string_view text) {
  sqlite3_stmt* statement = nullptr;
  std::size_t rows = 0;
  int code = sqlite3_prepare_v2(sql_, text.data(), static_cast<int>(text.size()), &statement, nullptr);
  if (code == SQLITE_OK) {
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
      ++rows;
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        sqlite3_column_text(statement, i);
      }
    }
  }
  const std::string message = sqlite3_errmsg(sql_);
  sqlite3_finalize(statement);
  if (code != SQLITE_DONE) {
    throw std::runtime_error(message);
  }
  return rows;
}

void MeasureSaving(YardstickTable& table, const std::filesystem::path& folder, Indexes indexes, double limit) {
  const std::filesystem::path file = folder / "saved.mdb";
  MakeStore(file, {}, indexes);
  SqliteStore sqlite(folder / "saved.db", {}, indexes);
  Connection connection(FileConnectionString(file));
  std::vector<std::string> statements;
  for (const Ticket& ticket : Record(23000)) {
    statements.push_back(InsertSql(ticket));
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
            limit, 10);
}

}  // namespace marlevo::bench
