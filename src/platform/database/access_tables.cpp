#include "platform/database/access_tables.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/access/bytes/properties.h"
#include "platform/base/text.h"
#include "platform/database/column_value.h"
#include "platform/database/text_order.h"

namespace marlevo {
namespace {

using access::ColumnType;

constexpr char kTextOrder[] = "ACCESS";

// What the tables of one SQLite connection share.
struct SqlContext {
  SqlContext(access::Database& opened, std::exception_ptr& first_failure,
             const std::optional<std::vector<std::string>>& named_columns)
      : database(opened), failure(first_failure), named(named_columns) {}

  access::Database& database;
  std::exception_ptr& failure;
  const std::optional<std::vector<std::string>>& named;
  std::optional<access::Statement> statement;  // open while SQLite changes rows
};

// There is one module for each table. SQLite owns it.
struct Module {
  std::shared_ptr<SqlContext> file;
  std::string table_name;
};

struct VirtualTable : sqlite3_vtab {
  VirtualTable(SqlContext& owner, access::Table opened) : sqlite3_vtab{}, file(owner), table(std::move(opened)) {}

  SqlContext& file;
  access::Table table;
  // The row that Update is inserting; members, so that their memory serves for the next row too.
  std::vector<access::Value> values;
  std::vector<std::string> buffers;
  std::vector<std::size_t> defaulted;  // columns that the statement leaves to their default values
};

struct VirtualCursor : sqlite3_vtab_cursor {
  VirtualCursor() : sqlite3_vtab_cursor{} {}

  std::optional<access::Cursor> rows;   // none: no row can qualify
  std::vector<access::TextHint> texts;  // which the rows have to hold
  bool at_end = true;
};

VirtualTable& TableOf(sqlite3_vtab* table) {
  return *static_cast<VirtualTable*>(table);
}
VirtualTable& TableOf(sqlite3_vtab_cursor* cursor) {
  return TableOf(cursor->pVtab);
}
VirtualCursor& CursorOf(sqlite3_vtab_cursor* cursor) {
  return *static_cast<VirtualCursor*>(cursor);
}

// Runs `work` and returns a result code for SQLite. Keeps what `work` throws if it is the first exception, because
// later ones only follow from it.
template <typename Work>
int CatchInto(SqlContext& file, Work work) {
  try {
    work();
    return SQLITE_OK;
  } catch (...) {
    if (!file.failure) {
      file.failure = std::current_exception();
    }
    return SQLITE_ERROR;
  }
}

std::string Quoted(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) {
    quoted.append(c == '"' ? 2 : 1, c);
  }
  return quoted + '"';
}

std::string Declaration(const access::Table& table) {
  std::string columns;
  for (const access::Column& column : table.Columns()) {
    columns += columns.empty() ? "" : ", ";
    columns += Quoted(column.name);
    switch (SqlKindOf(column.type)) {
      case SqlKind::kInteger:
        columns += " INTEGER";
        break;
      case SqlKind::kReal:
        columns += " REAL";
        break;
      case SqlKind::kText:
        columns.append(" TEXT COLLATE ").append(kTextOrder);
        break;
      case SqlKind::kBytes:
        columns += " BLOB";
        break;
    }
  }
  return "CREATE TABLE t (" + columns + ")";
}

int Connect(sqlite3* sql, void* aux, int, const char* const*, sqlite3_vtab** made, char**) {
  const auto& module = *static_cast<Module*>(aux);
  return CatchInto(*module.file, [&] {
    auto table = std::make_unique<VirtualTable>(*module.file, module.file->database.OpenTable(module.table_name));
    table->values.resize(table->table.Columns().size());
    table->buffers.resize(table->table.Columns().size());
    if (sqlite3_declare_vtab(sql, Declaration(table->table).c_str()) != SQLITE_OK) {
      throw std::runtime_error(sqlite3_errmsg(sql));
    }
    *made = table.release();
  });
}

int Disconnect(sqlite3_vtab* table) {
  delete &TableOf(table);
  return SQLITE_OK;
}

// A plan (see BestIndex) names, for each argument that Filter gets, the column that it is compared with: one character,
// column + 1.
char PlanMark(std::size_t column) {
  return static_cast<char>(column + 1);
}

// How many of the index's first columns the plan compares with a value. Example: of an index on A, B, C
// a plan that compares A and C can use the first column only, so this returns 1.
std::size_t ComparedColumns(const access::IndexView& index, const std::string& plan) {
  const auto compared = [&](std::size_t column) { return plan.find(PlanMark(column)) != plan.npos; };
  return std::ranges::find_if_not(index.columns, compared) - index.columns.begin();
}

// Whether a walk along the index gives rows in the order that SQLite wants. Texts, Booleans and decimals are ordered
// differently in an index.
bool IsInOrder(const access::Table& table, const access::IndexView& index, const sqlite3_index_info& info) {
  const std::size_t wanted = info.nOrderBy;
  if (wanted == 0 || wanted > index.columns.size() || !index.complete) {
    return false;
  }
  for (std::size_t i = 0; i < wanted; ++i) {
    const auto& order = info.aOrderBy[i];
    if (std::cmp_not_equal(order.iColumn, index.columns[i]) || (order.desc != 0) != index.descending[i]) {
      return false;
    }
    const ColumnType type = table.Columns()[index.columns[i]].type;
    const SqlKind kind = SqlKindOf(type);
    if ((kind != SqlKind::kInteger && kind != SqlKind::kReal) || type == ColumnType::kBoolean ||
        type == ColumnType::kNumeric) {
      return false;
    }
  }
  return true;
}

// Completes a plan with the index of which the plan compares the most columns or, when it compares none, with an index
// that saves sorting. idxNum becomes the index's place + 1.
void ChooseIndex(const access::Table& table, const std::string& plan, double walked, sqlite3_index_info& info) {
  std::size_t best = 0;
  for (int i = 0; i < std::ssize(table.Indexes()); ++i) {
    const access::IndexView& index = table.Indexes()[i];
    const std::size_t compared = ComparedColumns(index, plan);
    if (compared > best) {
      best = compared;
      info.idxNum = i + 1;
      if (index.unique && compared == index.columns.size()) {
        info.estimatedRows = 1;
        info.estimatedCost = 1;
        return;
      }
      info.estimatedCost = 2 * static_cast<double>(info.estimatedRows);
    } else if (plan.empty() && info.idxNum == 0 && IsInOrder(table, index, info)) {
      info.idxNum = i + 1;
      info.orderByConsumed = 1;
      info.estimatedCost = 2 * walked;
    }
  }
}

// Makes a plan. idxNum is the place of the index to be used + 1, or 0.
int BestIndex(sqlite3_vtab* table, sqlite3_index_info* info) {
  return CatchInto(TableOf(table).file, [&] {
    const access::Table& rows = TableOf(table).table;
    std::string plan;
    int arguments = 0;
    const double walked = static_cast<double>(rows.RowCount()) + 1;
    double found = walked;
    for (int i = 0; i < info->nConstraint; ++i) {
      const auto& constraint = info->aConstraint[i];
      if (!constraint.usable || constraint.op != SQLITE_INDEX_CONSTRAINT_EQ || constraint.iColumn < 0) {
        continue;
      }
      const ColumnType type = rows.Columns()[constraint.iColumn].type;
      if (SqlKindOf(type) == SqlKind::kBytes || type == ColumnType::kBoolean || type == ColumnType::kNumeric) {
        continue;
      }
      // Under another collation texts may be equal that differ in ours.
      if (SqlKindOf(type) == SqlKind::kText && std::string_view(sqlite3_vtab_collation(info, i)) != kTextOrder) {
        continue;
      }
      plan += PlanMark(constraint.iColumn);
      // SQLite checks the condition once more on each row found, so Filter may ignore values that only SQLite can
      // compare.
      info->aConstraintUsage[i].argvIndex = ++arguments;
      found = found / 10 + 1;
    }
    info->idxStr = sqlite3_mprintf("%s", plan.c_str());
    if (info->idxStr == nullptr) {
      throw std::bad_alloc();
    }
    info->needToFreeIdxStr = 1;
    info->estimatedCost = walked / 4 + found;  // walking over a row costs a quarter of handing it to SQLite, roughly
    info->estimatedRows = static_cast<sqlite3_int64>(found);
    ChooseIndex(rows, plan, walked, *info);
  });
}

int OpenCursor(sqlite3_vtab* table, sqlite3_vtab_cursor** made) {
  return CatchInto(TableOf(table).file, [&] { *made = new VirtualCursor(); });
}

int CloseCursor(sqlite3_vtab_cursor* cursor) {
  delete &CursorOf(cursor);
  return SQLITE_OK;
}

void MoveToNext(VirtualCursor& cursor) {
  const auto qualifies = [&](const access::TextHint& condition) {
    return EqualText(cursor.rows->Text(condition.column), condition.text) && !cursor.rows->IsNull(condition.column);
  };
  do {
    cursor.at_end = !cursor.rows || !cursor.rows->Next();
  } while (!cursor.at_end && !std::all_of(cursor.texts.begin(), cursor.texts.end(), qualifies));
}

// The argument as a value that a column of this type can be compared with; nothing when only SQLite can compare them.
std::optional<access::Value> ValueToCompare(sqlite3_value* argument, ColumnType type) {
  const bool text = SqlKindOf(type) == SqlKind::kText;
  switch (sqlite3_value_type(argument)) {
    case SQLITE_INTEGER:
      return text ? std::nullopt : std::optional<access::Value>(std::int64_t{sqlite3_value_int64(argument)});
    case SQLITE_FLOAT:
      return text ? std::nullopt : std::optional<access::Value>(sqlite3_value_double(argument));
    case SQLITE_TEXT:
      return text ? std::optional<access::Value>(TextOf(argument)) : std::nullopt;
    default:
      return std::nullopt;
  }
}

// The rows that Filter has to look at: those that the plan's index gives, or all rows when the plan has no index or the
// index cannot find the values.
access::Cursor RowsOf(const access::Table& table, int index_number, std::string_view plan, sqlite3_value** arguments,
                      const std::vector<access::Equals>& numbers, const std::vector<access::TextHint>& texts) {
  if (index_number == 0) {
    return table.Scan(numbers, texts);
  }
  const std::size_t place = index_number - 1;
  std::vector<access::Value> values;
  for (const std::size_t column : table.Indexes()[place].columns) {
    const std::size_t argument = plan.find(PlanMark(column));
    const auto value =
        argument == plan.npos ? std::nullopt : ValueToCompare(arguments[argument], table.Columns()[column].type);
    if (!value) {
      break;
    }
    values.push_back(*value);
  }
  if (values.empty() && !plan.empty()) {
    return table.Scan(numbers, texts);
  }
  try {
    return table.Walk(place, values, numbers);
  } catch (const access::ValueError&) {
    return table.Scan(numbers, texts);  // this program cannot build the index key of the value
  }
}

int Filter(sqlite3_vtab_cursor* base, int index, const char* plan, int count, sqlite3_value** arguments) {
  return CatchInto(TableOf(base).file, [&] {
    VirtualCursor& cursor = CursorOf(base);
    const access::Table& table = TableOf(base).table;
    std::vector<access::Equals> numbers;
    cursor.texts.clear();
    bool possible = true;
    for (int i = 0; i < count; ++i) {
      const std::uint8_t mark = plan[i];
      const std::size_t column = mark - 1;
      const bool text = SqlKindOf(table.Columns()[column].type) == SqlKind::kText;
      switch (sqlite3_value_type(arguments[i])) {
        case SQLITE_NULL:
          possible = false;
          break;
        case SQLITE_INTEGER:
          if (!text) {
            numbers.push_back({column, sqlite3_value_int64(arguments[i])});
          }
          break;
        case SQLITE_TEXT:
          if (text) {
            cursor.texts.push_back({column, std::string(TextOf(arguments[i]))});
          }
          break;
        default:
          break;  // SQLite compares other values itself
      }
    }
    cursor.rows.reset();
    if (possible) {
      cursor.rows.emplace(RowsOf(table, index, std::string_view(plan, count), arguments, numbers, cursor.texts));
    }
    MoveToNext(cursor);
  });
}

int Next(sqlite3_vtab_cursor* cursor) {
  return CatchInto(TableOf(cursor).file, [&] { MoveToNext(CursorOf(cursor)); });
}

int Eof(sqlite3_vtab_cursor* cursor) {
  return CursorOf(cursor).at_end;
}

int ColumnOf(sqlite3_vtab_cursor* base, sqlite3_context* result, int index) {
  return CatchInto(TableOf(base).file, [&] {
    const std::size_t column = index;
    SetResult(result, *CursorOf(base).rows, column, TableOf(base).table.Columns()[column].type);
  });
}

int RowIdOf(sqlite3_vtab_cursor* cursor, sqlite3_int64* id) {
  return CatchInto(TableOf(cursor).file, [&] { *id = static_cast<sqlite3_int64>(CursorOf(cursor).rows->Row()); });
}

// SQLite's xUpdate. arguments[0] is the row to delete, or NULL. A DELETE has no other argument; an INSERT has NULL,
// NULL and then the values of the new row.
int Update(sqlite3_vtab* base, int count, sqlite3_value** arguments, sqlite3_int64* id) {
  return CatchInto(TableOf(base).file, [&] {
    VirtualTable& table = TableOf(base);
    if (count == 1) {
      table.table.Delete(static_cast<access::RowId>(sqlite3_value_int64(arguments[0])));
      return;
    }
    if (sqlite3_value_type(arguments[0]) != SQLITE_NULL || sqlite3_value_type(arguments[1]) != SQLITE_NULL) {
      throw std::runtime_error("table " + table.table.Name() +
                               ": rows are inserted and deleted, never changed in place");
    }
    for (std::size_t i = 0; i < table.values.size(); ++i) {
      table.values[i] = ColumnValue(arguments[2 + i], table.table.Columns()[i].type, table.buffers[i]);
    }
    for (const std::size_t i : table.defaulted) {
      table.values[i] = access::DefaultOf(table.table.Columns()[i], table.buffers[i]);
    }
    *id = static_cast<sqlite3_int64>(table.table.Insert(table.values));
  });
}

void FindDefaulted(VirtualTable& table) {
  table.defaulted.clear();
  const std::vector<access::Column>& columns = table.table.Columns();
  for (std::size_t i = 0; table.file.named && i < columns.size(); ++i) {
    const auto names = [&](const std::string& name) { return SameName(name, columns[i].name); };
    if (!columns[i].default_value.empty() && std::ranges::none_of(*table.file.named, names)) {
      table.defaulted.push_back(i);
    }
  }
}

int Begin(sqlite3_vtab* table) {
  return CatchInto(TableOf(table).file, [&] {
    SqlContext& file = TableOf(table).file;
    FindDefaulted(TableOf(table));
    file.statement.emplace(file.database.Begin());
  });
}

// SQLite's xSync. The statement is committed here and not in xCommit, because SQLite ignores errors of xCommit.
int Sync(sqlite3_vtab* table) {
  return CatchInto(TableOf(table).file, [&] { TableOf(table).file.statement->Commit(); });
}

int EndStatement(sqlite3_vtab* table) {
  return CatchInto(TableOf(table).file, [&] { TableOf(table).file.statement.reset(); });
}

constexpr sqlite3_module MakeModule() {
  sqlite3_module module{};
  module.iVersion = 1;
  module.xCreate = nullptr;  // no CREATE VIRTUAL TABLE: eponymous only
  module.xConnect = Connect;
  module.xBestIndex = BestIndex;
  module.xDisconnect = Disconnect;
  module.xDestroy = Disconnect;
  module.xOpen = OpenCursor;
  module.xClose = CloseCursor;
  module.xFilter = Filter;
  module.xNext = Next;
  module.xEof = Eof;
  module.xColumn = ColumnOf;
  module.xRowid = RowIdOf;
  module.xUpdate = Update;
  module.xBegin = Begin;
  module.xSync = Sync;
  module.xCommit = EndStatement;
  module.xRollback = EndStatement;
  return module;
}

constexpr sqlite3_module kModule = MakeModule();

int Compare(void*, int left_size, const void* left, int right_size, const void* right) {
  return CompareText(TextAt(left, left_size), TextAt(right, right_size));
}

void RequireOk(sqlite3* sql, int code) {
  if (code != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(sql));
  }
}

}  // namespace

void AddAccessTables(sqlite3* sql, access::Database& database, std::exception_ptr& failure,
                     const std::optional<std::vector<std::string>>& named) {
  RequireOk(sql, sqlite3_create_collation_v2(sql, kTextOrder, SQLITE_UTF8, nullptr, Compare, nullptr));
  const auto file = std::make_shared<SqlContext>(database, failure, named);
  for (const std::string& name : database.Tables()) {
    auto module = std::make_unique<Module>(Module{file, name});
    RequireOk(sql, sqlite3_create_module_v2(sql, name.c_str(), &kModule, module.release(),
                                            [](void* gone) { delete static_cast<Module*>(gone); }));
  }
}

}  // namespace marlevo
