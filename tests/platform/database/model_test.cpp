// Random statements on a database file and on SQLite's own tables must give the same rows.
#include <sqlite3.h>

#include <algorithm>
#include <optional>
#include <random>
#include <sstream>

#include "platform/access/database/database.h"
#include "platform/database/database_fixture.h"

namespace marlevo {
namespace {

class Model {
 public:
  Model() {
    sqlite3_open(":memory:", &sql_);
    Run("CREATE TABLE CUSTOM_D (CUSTOM_NO TEXT COLLATE NOCASE, SAL_DATE TEXT COLLATE NOCASE, PLAY_MODE INTEGER, "
        "PLAY_AMT NUMERIC, PLAY_SEQ INTEGER, NO1 INTEGER, NO2 INTEGER, NO3 INTEGER, NO4 INTEGER)");
  }
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;
  ~Model() { sqlite3_close(sql_); }

  // One line a row, as database_fixture.h's Rows.
  std::string Run(const std::string& text) {
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(sql_, text.c_str(), -1, &statement, nullptr), SQLITE_OK) << text;
    std::string rows;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const auto* cell = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
        rows.append(i == 0 ? "" : "|").append(cell == nullptr ? "" : cell);
      }
      rows += "\n";
    }
    sqlite3_finalize(statement);
    return rows;
  }

 private:
  sqlite3* sql_ = nullptr;
};

class Statements {
 public:
  explicit Statements(unsigned seed) : random_(seed) {}

  std::size_t Below(std::size_t n) { return random_() % n; }

  std::string Pick(std::initializer_list<const char*> choices) { return choices.begin()[Below(choices.size())]; }

  std::string Text() {
    return Pick(
        {"NULL", "''", "'a'", "'A'", "'a1'", "'A1 '", "'_'", "'陳'", "'林'", "'b'", "'陳 b'", "'B2'", "'10'", "'9'"});
  }
  std::string Number() {
    return Below(6) == 0 ? Pick({"NULL", "-1", "2147483647", "-2147483648", "257", "65537"}) : std::to_string(Below(6));
  }
  std::string Insert() {
    std::string values = Text() + "," + Text() + "," + Number() + "," + Number() + (Below(3) == 0 ? "+0.5" : "");
    for (int i = 0; i < 3; ++i) {
      values.append(",").append(Number());
    }
    for (int i = 0; i < 2; ++i) {
      values.append(",").append(Below(6) == 0 ? "NULL" : std::to_string(Below(6)));
    }
    return "INSERT INTO CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_MODE,PLAY_AMT,PLAY_SEQ,NO1,NO2,NO3,NO4) VALUES (" + values +
           ")";
  }
  std::string Condition() {
    const std::string operation = Pick({"=", "=", "=", "=", "<", ">=", "<>", " IS "});
    const bool text = Below(2) == 0;
    const std::string column = text ? Pick({"CUSTOM_NO", "SAL_DATE"})
                                    : Pick({"PLAY_MODE", "PLAY_AMT", "PLAY_SEQ", "NO1", "NO2", "NO3", "NO4"});
    switch (Below(12)) {
      case 0:
        return column + " IN (" + Text() + "," + Number() + ")";
      case 1:
        return column + operation + (text ? Number() : Text());  // of the other kind
      case 2:
        return "(" + column + operation + Number() + " OR NO1=" + Number() + ")";
      case 3:
        return column + operation + Number() + "+0.5";
      default:
        return column + operation + (text ? Text() : Number());
    }
  }
  std::string Where() {
    std::string where;
    for (std::size_t i = Below(4); i-- > 0;) {
      where.append(where.empty() ? " WHERE " : " AND ").append(Condition());
    }
    return where;
  }
  std::string Delete() { return "DELETE FROM CUSTOM_D WHERE " + Condition() + " AND " + Condition(); }

 private:
  std::mt19937 random_;
};

// Texts that are equal but for case may stand for each other; rows that are equal in what they are ordered by may come
// in any order.
std::vector<std::string> Lines(const std::string& text, bool sorted) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    std::transform(line.begin(), line.end(), line.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; });
    lines.push_back(line);
  }
  if (!sorted) {
    std::sort(lines.begin(), lines.end());
  }
  return lines;
}

// Whether the table has indexes must not show in the rows, nor how wide its numbers are stored.
class ModelTest : public DatabaseFixture, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    std::vector<access::TableSchema> tables = NewTables();
    access::TableSchema& table = tables.back();
    table.columns.at(7).type = access::ColumnType::kInteger;
    table.columns.at(8).type = access::ColumnType::kByte;
    if (GetParam()) {
      table.indexes = {{.name = "customer", .columns = {{"CUSTOM_NO"}, {"PLAY_MODE", true}}},
                       {.name = "date", .columns = {{"SAL_DATE", true}}, .ignore_nulls = true},
                       {.name = "amount", .columns = {{"PLAY_AMT"}}},
                       {.name = "record", .columns = {{"PLAY_SEQ", true}, {"NO1"}}},
                       {.name = "digits", .columns = {{"NO1"}, {"NO2"}, {"NO3"}}, .ignore_nulls = true}};
    }
    std::filesystem::remove(file_);
    access::Database::Create(file_, "qorvat", tables);
  }
};

TEST_P(ModelTest, RandomStatementsGiveTheSameRows) {
  const std::string all = "SELECT * FROM CUSTOM_D";
  const std::vector<std::string> fields = {"CUSTOM_NO", "SAL_DATE", "PLAY_MODE", "PLAY_AMT", "PLAY_SEQ",
                                           "NO1",       "NO2",      "NO3",       "NO4"};
  for (unsigned seed = 1; seed <= 4; ++seed) {
    Statements next(seed);
    Model model;
    std::optional<Connection> connection(std::in_place, Opening());
    connection->Execute("DELETE FROM CUSTOM_D");
    const auto same = [&](const std::string& sql, const std::vector<std::string>& of_row, bool ordered) {
      ASSERT_EQ(Lines(Rows(*connection, sql, of_row), ordered), Lines(model.Run(sql), ordered))
          << sql << " (seed " << seed << ")";
    };
    for (int step = 0; step < 1500 && !HasFatalFailure(); ++step) {
      const std::size_t choice = next.Below(100);
      if (choice < 66) {
        const std::string sql = choice < 60 ? next.Insert() : next.Delete();
        connection->Execute(sql);
        model.Run(sql);
      } else if (choice < 68) {
        connection.reset();
        connection.emplace(Opening());
      } else if (choice < 80) {
        same(all + next.Where(), fields, false);
      } else if (choice < 84) {
        same("SELECT PLAY_SEQ,NO1 FROM CUSTOM_D" + next.Where() + " ORDER BY PLAY_SEQ DESC,NO1", {"PLAY_SEQ", "NO1"},
             true);
        same(std::string("SELECT PLAY_AMT FROM CUSTOM_D ORDER BY PLAY_AMT") + (next.Below(2) == 0 ? "" : " DESC"),
             {"PLAY_AMT"}, true);
        same("SELECT NO1 FROM CUSTOM_D ORDER BY NO1", {"NO1"}, true);
      } else if (choice < 90) {
        same("SELECT CUSTOM_NO,PLAY_MODE,PLAY_SEQ FROM CUSTOM_D" + next.Where() +
                 " ORDER BY CUSTOM_NO DESC,PLAY_MODE,PLAY_SEQ",
             {"CUSTOM_NO", "PLAY_MODE", "PLAY_SEQ"}, true);
      } else {
        same("SELECT lower(SAL_DATE) AS a,COUNT(CUSTOM_NO) AS b,MAX(PLAY_AMT) AS c FROM CUSTOM_D" + next.Where() +
                 " GROUP BY SAL_DATE",
             {"a", "b", "c"}, true);
      }
    }
    same(all, fields, false);
  }
  EXPECT_EQ(access::Database::Open(file_, {"qorvat", std::nullopt}).FindFaults(), std::vector<std::string>());
}

INSTANTIATE_TEST_SUITE_P(Indexes, ModelTest, testing::Bool());

}  // namespace
}  // namespace marlevo
