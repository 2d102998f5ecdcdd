#include "tools/make_database/new_database.h"

#include <string>

#include "platform/base/operation_error.h"
#include "platform/database/connection.h"
#include "platform/pager/read_only_files.h"

namespace marlevo {

std::vector<access::TableSchema> NewTables() {
  using access::ColumnType;
  return {
      {"NUMERIC",
       {{"VOU_NO", ColumnType::kLong},
        {"NO1", ColumnType::kLong},
        {"NO2", ColumnType::kLong},
        {"NO3", ColumnType::kLong},
        {"NO4", ColumnType::kLong}}},
      {"CUSTOM_H",
       {{"CUSTOM_NO", ColumnType::kText, 50},
        {"CUSTOM_NAME", ColumnType::kText, 100},
        {"TEL1", ColumnType::kText, 50},
        {"TEL2", ColumnType::kText, 50},
        {"MEMO1", ColumnType::kText, 255}}},
      {"CUSTOM_D",
       {{"CUSTOM_NO", ColumnType::kText, 50},
        {"SAL_DATE", ColumnType::kText, 14},
        {"PLAY_MODE", ColumnType::kLong},
        {"PLAY_AMT", ColumnType::kDouble},
        {"PLAY_SEQ", ColumnType::kLong},
        {"NO1", ColumnType::kLong},
        {"NO2", ColumnType::kLong},
        {"NO3", ColumnType::kLong},
        {"NO4", ColumnType::kLong}}},
  };
}

void MakeDatabase(const std::filesystem::path& file, access::NewFile kind) {
  const std::string password = ParseConnectionString(FileConnectionString(file)).password;
  access::Database::Create(file, password, NewTables(), pager::NativeFiles(), kind);
}

void RunStatements(const std::filesystem::path& file, std::istream& statements) {
  Connection connection(FileConnectionString(file));
  std::string line;
  for (int number = 1; std::getline(statements, line); ++number) {
    std::string_view statement = line;
    if (number == 1 && statement.starts_with("\xEF\xBB\xBF")) {
      statement.remove_prefix(3);  // the byte order mark that some editors write
    }
    if (statement.find_first_not_of(" \t\r") == std::string_view::npos) {
      continue;
    }
    try {
      connection.Execute(statement);
    } catch (const DatabaseError& error) {
      connection.Close();
      throw DatabaseError(error.Attempted(), error.Subject(), "line " + std::to_string(number) + ": " + error.what());
    }
  }
  connection.Close();
}

std::vector<std::string> FaultsOf(const std::filesystem::path& file) {
  pager::ReadOnlyFiles files;
  return access::Database::Open(file, {.password = {}, .code_page = {}, .any_password = true}, files).FindFaults();
}

}  // namespace marlevo
