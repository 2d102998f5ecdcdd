#include "platform/database/connection.h"

#include <sqlite3.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "platform/access/database/database.h"
#include "platform/base/text.h"
#include "platform/database/access_tables.h"
#include "platform/database/column_value.h"
#include "platform/database/recordset_rows.h"
#include "platform/database/sql_words.h"
#include "platform/database/sqlite_setup.h"
#include "platform/pager/pager_error.h"

namespace marlevo {
namespace {

constexpr char kOpening[] = "開啟資料庫";
constexpr char kExecuting[] = "更新資料庫";
constexpr char kReading[] = "讀取資料庫";
constexpr char kWriting[] = "寫入資料庫";

constexpr char kNoSuchTable[] = "no such table: ";  // the beginning of SQLite's message

struct CloseSql {
  void operator()(sqlite3* sql) const { sqlite3_close(sql); }
};
struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SqlHandle = std::unique_ptr<sqlite3, CloseSql>;
using StatementHandle = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

// Runs `work`; any error of the layers below becomes a DatabaseError of the same kind.
template <typename Work>
auto AsDatabaseError(const char* attempted, const std::string& subject, Work work) {
  try {
    return work();
  } catch (const FaultError& error) {
    throw DatabaseError(attempted, subject, error.what(), error.Kind());
  } catch (const std::exception& error) {
    throw DatabaseError(attempted, subject, error.what());
  }
}

// An in-memory SQLite without tables of its own.
SqlHandle OpenSql() {
  SetUpSqlite();
  sqlite3* opened = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  const int code = sqlite3_open_v2(":memory:", &opened, flags, nullptr);
  SqlHandle sql(opened);
  if (code != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errstr(code));
  }
  // Without these two settings SQLite reads a misspelt field name in double quotes as a text.
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_limit(opened, SQLITE_LIMIT_ATTACHED, 0);
  // 16 MiB for sorting, before SQLite sorts in temporary files: enough for a customer's largest record.
  if (sqlite3_exec(opened, "PRAGMA cache_size=-16384", nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(opened));
  }
  return sql;
}

}  // namespace

// An open file with the SQLite connection that runs the statements on it.
class Connection::Engine {
 public:
  explicit Engine(const DataSource& source)
      : subject_(source.file),
        database_(access::Database::Open(std::u8string(source.file.begin(), source.file.end()),
                                         {source.password, source.code_page})),
        sql_(OpenSql()) {
    AddAccessTables(sql_.get(), database_, failure_, named_columns_);
    for (std::string& name : database_.Tables()) {
      tables_.insert(std::move(name));
    }
    sqlite3_set_authorizer(sql_.get(), &Engine::Authorize, this);
  }

  void Execute(std::string_view text) {
    const StatementHandle statement = Prepare(text);
    if (!changes_rows_) {
      throw std::runtime_error("not a statement that changes rows");
    }
    named_columns_ = NamedColumns(text);
    OnDisk([&] { Step(statement.get()); });
  }

  std::unique_ptr<Recordset::Rows> Read(std::string_view text) {
    const StatementHandle statement = Prepare(text);
    const int count = sqlite3_column_count(statement.get());
    if (changes_rows_ || count == 0) {
      throw std::runtime_error("not a statement that reads rows");
    }
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) {
      names.emplace_back(sqlite3_column_name(statement.get(), i));
    }
    auto rows = std::make_unique<Recordset::Rows>(subject_, std::move(names));
    while (Step(statement.get())) {
      for (int i = 0; i < count; ++i) {
        AddCell(*rows, statement.get(), i);
      }
      rows->EndRow();
    }
    return rows;
  }

  void Flush() {
    OnDisk([&] { database_.Flush(); });
  }

  // Whether the disk refused the last Execute or Flush, so that everything that was not on the disk yet is undone.
  bool Undone() const { return undone_; }

  std::optional<std::size_t> MostCharacters(std::string_view table, std::string_view column) const {
    const access::Table opened = database_.OpenTable(table);
    const access::Column& of = opened.Columns()[ColumnPlace(opened, column)];
    switch (of.type) {
      case access::ColumnType::kText:
        return of.length;
      case access::ColumnType::kByte:
        return 3;
      case access::ColumnType::kInteger:
        return 5;
      case access::ColumnType::kLong:
        return 10;
      default:
        return std::nullopt;
    }
  }

  std::function<bool(std::string_view)> RoomIn(std::string_view table, std::string_view column) const {
    const access::Table opened = database_.OpenTable(table);
    const std::size_t place = ColumnPlace(opened, column);
    const access::Column& of = opened.Columns()[place];
    return [limited = of.type == access::ColumnType::kText, most = of.length,
            length = opened.LengthCounter(place)](std::string_view text) { return !limited || length(text) <= most; };
  }

 private:
  static std::size_t ColumnPlace(const access::Table& table, std::string_view name) {
    const auto found = std::ranges::find_if(
        table.Columns(), [&name](const access::Column& column) { return SameName(column.name, name); });
    if (found == table.Columns().end()) {
      throw FaultError(Fault::kNoTable, "no such column: " + table.Name() + "." + std::string(name));
    }
    return found - table.Columns().begin();
  }

  // SQLite calls this while it compiles a statement, for each thing that the statement would do. `first` and `second`
  // name the table, column or function.
  static int Authorize(void* self, int action, const char* first, const char* second, const char*, const char*) {
    auto& engine = *static_cast<Engine*>(self);
    // SQLite reads and updates sqlite_master, its own list of tables, when it takes in the declaration of a virtual
    // table. The list is empty, and SQLite refuses a statement that would change it.
    if ((action == SQLITE_READ || action == SQLITE_UPDATE) && std::string_view(first) == "sqlite_master") {
      return SQLITE_OK;
    }
    switch (action) {
      case SQLITE_SELECT:
        return SQLITE_OK;
      case SQLITE_FUNCTION:
        if (const std::string other = OtherMeaningOfFunction(second); !other.empty()) {
          engine.refusal_ = other;
          return SQLITE_DENY;
        }
        return SQLITE_OK;
      case SQLITE_READ:
        return engine.AllowTable(first);
      case SQLITE_INSERT:
      case SQLITE_DELETE:
        engine.changes_rows_ = true;
        return engine.AllowTable(first);
      default:
        engine.refusal_ = "only SELECT, INSERT and DELETE on the tables of the file are run";
        return SQLITE_DENY;
    }
  }

  int AllowTable(const char* table) {
    if (tables_.contains(table)) {
      return SQLITE_OK;
    }
    refusal_ = std::string(kNoSuchTable) + table;
    return SQLITE_DENY;
  }

  // Whether some table has a number column of that name, and no table a column of another kind.
  bool IsNumberColumn(std::string_view name) {
    bool number = false;
    for (const std::string& table : tables_) {
      const access::Table opened = database_.OpenTable(table);
      for (const access::Column& column : opened.Columns()) {
        if (SameName(column.name, name)) {
          number = SqlKindOf(column.type) == SqlKind::kInteger || SqlKindOf(column.type) == SqlKind::kReal;
          if (!number) {
            return false;
          }
        }
      }
    }
    return number;
  }

  StatementHandle Prepare(std::string_view text) {
    changes_rows_ = false;
    refusal_.clear();
    failure_ = nullptr;
    const std::string other = OtherMeaning(text, [this](std::string_view name) { return IsNumberColumn(name); });
    if (!other.empty()) {
      throw FaultError(Fault::kOther, other + "; such statements are not run");
    }
    sqlite3_stmt* compiled = nullptr;
    const char* rest = nullptr;
    const int code = sqlite3_prepare_v2(sql_.get(), text.data(), static_cast<int>(text.size()), &compiled, &rest);
    StatementHandle statement(compiled);
    if (code != SQLITE_OK) {
      RethrowFailure();
      const std::string words = refusal_.empty() ? sqlite3_errmsg(sql_.get()) : refusal_;
      // SQLite has no code for a missing table. OpenTable may throw a better reason, such as a table that is linked
      // from another file.
      if (words.starts_with(kNoSuchTable)) {
        database_.OpenTable(std::string_view(words).substr(std::string_view(kNoSuchTable).size()));
        throw FaultError(Fault::kNoTable, words);
      }
      throw FaultError(Fault::kOther, words);
    }
    if (!statement) {
      throw std::runtime_error("there is no statement");
    }
    text.remove_prefix(rest - text.data());
    if (text.find_first_not_of(" \t\r\n") != std::string_view::npos) {
      throw std::runtime_error("text after the end of the statement");
    }
    return statement;
  }

  // Runs the statement up to its next row. Returns whether there is one.
  bool Step(sqlite3_stmt* statement) {
    const int code = sqlite3_step(statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
      RethrowFailure();
      throw FaultError(code == SQLITE_FULL ? Fault::kDiskFull : Fault::kOther, sqlite3_errmsg(sql_.get()));
    }
    return code == SQLITE_ROW;
  }

  // Throws what the engine threw, if that is why SQLite failed.
  void RethrowFailure() {
    if (failure_) {
      std::rethrow_exception(std::exchange(failure_, nullptr));
    }
  }

  // Does `work`, which changes the file. When the disk refuses, everything executed before that is not on the disk yet
  // is undone as well: the operator has not been told that it is stored and will try again, and a later flush would
  // store it a second time.
  template <typename Work>
  void OnDisk(Work work) {
    undone_ = false;
    try {
      work();
    } catch (const pager::PagerError& error) {
      database_.Discard(error.Kind());
      undone_ = true;
      throw;
    }
  }

  static void AddCell(Recordset::Rows& rows, sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
      case SQLITE_INTEGER:
        return rows.AddInteger(sqlite3_column_int64(statement, column));
      case SQLITE_FLOAT:
        return rows.AddReal(sqlite3_column_double(statement, column));
      case SQLITE_NULL:
        return rows.AddNull();
      default: {
        const void* const bytes = sqlite3_column_blob(statement, column);
        return rows.AddText(TextAt(bytes, sqlite3_column_bytes(statement, column)));
      }
    }
  }

  std::string subject_;
  access::Database database_;
  std::exception_ptr failure_;
  std::optional<std::vector<std::string>> named_columns_;  // of the INSERT that is running
  SqlHandle sql_;                                          // uses the three members before it
  std::set<std::string, std::less<>> tables_;
  bool undone_ = false;
  // About the statement that is being compiled.
  bool changes_rows_ = false;
  std::string refusal_;
};

Connection::Connection(const std::string& connection_string) : source_(ParseConnectionString(connection_string)) {
  engine_ = AsDatabaseError(kOpening, source_.file, [&] { return std::make_unique<Engine>(source_); });
}

Connection::Connection(Connection&& other) noexcept = default;
Connection& Connection::operator=(Connection&& other) noexcept = default;
Connection::~Connection() = default;

template <typename Work>
auto Connection::WithEngine(const char* attempted, Work work) {
  if (!engine_) {
    throw DatabaseError(attempted, "", "the connection is closed");
  }
  try {
    return AsDatabaseError(attempted, source_.file, [&] { return work(*engine_); });
  } catch (const DatabaseError& error) {
    outdated_ = outdated_ || error.Kind() == Fault::kChanged;
    throw;
  }
}

void Connection::OpenAnewIfOutdated() {
  if (outdated_) {
    engine_ = AsDatabaseError(kOpening, source_.file, [&] { return std::make_unique<Engine>(source_); });
    outdated_ = false;
  }
}

void Connection::Execute(std::string_view sql) {
  OpenAnewIfOutdated();
  WithEngine(kExecuting, [&](Engine& engine) { engine.Execute(sql); });
}

Recordset Connection::Open(std::string_view sql) {
  OpenAnewIfOutdated();
  return Recordset(WithEngine(kReading, [&](Engine& engine) { return engine.Read(sql); }));
}

void Connection::Flush() {
  WithEngine(kWriting, [](Engine& engine) { engine.Flush(); });
}

void Connection::FlushAfter(const std::function<void()>& action) {
  try {
    action();
  } catch (...) {
    Flush();
    throw;
  }
  Flush();
}

RowChange Connection::Replace(std::string_view find, std::string_view remove,
                              const std::function<std::string()>& make_insert) {
  if (Open(find).AtEnd()) {
    return {};
  }
  RowChange change{.found = true, .refusal = std::nullopt};
  Execute(remove);
  try {
    Execute(make_insert());
  } catch (const DatabaseError& error) {
    if (engine_->Undone()) {
      throw;
    }
    change.refusal.emplace(error.Attempted(), error.Subject(), error.what(), error.Kind(),
                           "舊資料已刪除,新資料沒有存入。請改正後按「新增」。");
  }
  Flush();
  return change;
}

std::optional<std::size_t> Connection::MostCharacters(std::string_view table, std::string_view column) {
  OpenAnewIfOutdated();
  return WithEngine(kReading, [&](Engine& engine) { return engine.MostCharacters(table, column); });
}

std::function<bool(std::string_view)> Connection::RoomIn(std::string_view table, std::string_view column) {
  OpenAnewIfOutdated();
  return WithEngine(kReading, [&](Engine& engine) { return engine.RoomIn(table, column); });
}

void Connection::Close() {
  if (engine_) {
    Flush();
    engine_.reset();
    outdated_ = false;
  }
}

std::optional<DatabaseError> RefusalToOpen(const std::string& connection_string) {
  try {
    const Connection opened(connection_string);
    return {};
  } catch (const DatabaseError& refusal) {
    return refusal;
  }
}

}  // namespace marlevo
