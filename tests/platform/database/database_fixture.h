// A real database file, empty, and what tests ask of it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/database/connection.h"
#include "platform/errors/operation_error.h"
#include "support/scratch_folder.h"
#include "tools/make_database/new_database.h"

namespace marlevo {

// One line a row, the fields joined by "|".
inline std::string Rows(Connection& connection, const std::string& sql, const std::vector<std::string>& fields) {
  std::string text;
  for (Recordset rows = connection.Open(sql); !rows.AtEnd(); rows.MoveNext()) {
    for (const std::string& field : fields) {
      text += &field == fields.data() ? "" : "|";
      text += rows.Text(field);
    }
    text += "\n";
  }
  return text;
}

// The reason that the database gives against a statement; "" when it was executed.
inline std::string Refusal(Connection& connection, const std::string& sql) {
  try {
    connection.Execute(sql);
    return "";
  } catch (const DatabaseError& error) {
    return error.what();
  }
}

class DatabaseFixture : public testing::Test {
 protected:
  DatabaseFixture() { MakeDatabase(file_); }

  std::string Opening() const { return FileConnectionString(file_); }
  int Count(Connection& connection, const std::string& table) const {
    return static_cast<int>(connection.Open("SELECT COUNT(*) AS N FROM " + table).Number("N"));
  }

  testing_support::ScratchFolder folder_;
  std::filesystem::path file_ = folder_.Path() / "4star.mdb";
};

}  // namespace marlevo
