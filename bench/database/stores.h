// The same purchases in a database file of the system and in a plain SQLite file, its yardstick.
//
// The SQLite file has the same columns and indexes and is set up as an application would: write-ahead log,
// synchronous=NORMAL, every statement a transaction of its own; SQLite itself is set up as for the system's own work.
#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/yardstick.h"

namespace marlevo::bench {

struct Ticket {
  std::string customer;
  std::string stamp;
  std::int64_t mode;
  double amount;
  std::int64_t seq;
  std::int64_t digits[4];
};

// `count` tickets in purchase records of 500, of 400 customers in turn. The same at every call.
std::vector<Ticket> Tickets(std::size_t count);
// One record of `count` tickets that no other record mixes with.
std::vector<Ticket> Record(std::size_t count);

// The statement of the save window.
std::string InsertSql(const Ticket& ticket);

// What the table of tickets is indexed by.
enum class Indexes {
  kNone,
  kCustomer,  // a primary key, and the customer alone
};

// A new database file of the system, and one of SQLite, each with these tickets. They are written by the quickest way,
// not by statements.
void MakeStore(const std::filesystem::path& file, const std::vector<Ticket>& tickets, Indexes indexes = Indexes::kNone);
void AddTickets(const std::filesystem::path& file, const std::vector<Ticket>& tickets);

class SqliteStore {
 public:
  SqliteStore(const std::filesystem::path& file, const std::vector<Ticket>& tickets, Indexes indexes = Indexes::kNone);
  SqliteStore(const SqliteStore&) = delete;
  SqliteStore& operator=(const SqliteStore&) = delete;
  ~SqliteStore() { sqlite3_close(sql_); }

  void Add(const std::vector<Ticket>& tickets);
  // Compiles one statement, runs it to its end; the number of rows it gave, each cell of them looked at.
  std::size_t Run(std::string_view statement);

 private:
  sqlite3* sql_ = nullptr;
};

// The time of saving the largest list into empty stores in `folder`: 23,000 single statements, and what makes them
// durable.
void MeasureSaving(YardstickTable& table, const std::filesystem::path& folder, Indexes indexes, double limit);

}  // namespace marlevo::bench
