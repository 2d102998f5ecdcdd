// A real database file, empty, and what tests ask of it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/operation_error.h"
#include "platform/database/connection.h"
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

// The kind of failure that `work` ends with, which is to be reported as `attempted`; nothing when it is done.
template <typename Work>
std::optional<Fault> Refusal(const char* attempted, const Work& work) {
  try {
    work();
    return std::nullopt;
  } catch (const DatabaseError& error) {
    EXPECT_EQ(error.Attempted(), attempted);
    EXPECT_NE(error.Subject(), "");
    EXPECT_STRNE(error.what(), "");
    return error.Kind();
  }
}
inline std::optional<Fault> Refusal(Connection& connection, const std::string& sql) {
  return Refusal("更新資料庫", [&] { connection.Execute(sql); });
}

class DatabaseFixture : public testing::Test {
 protected:
  DatabaseFixture() { MakeDatabase(file_); }

  std::string Opening() const { return FileConnectionString(file_); }
  // A copy of the file as it is on the disk, without what this process only keeps in memory.
  Connection OnDisk() const {
    const std::filesystem::path copy = folder_.Path() / "copy.mdb";
    for (const char* journal : {"", "-journal"}) {
      const std::filesystem::path from = std::filesystem::path(file_) += journal;
      const std::filesystem::path to = std::filesystem::path(copy) += journal;
      std::filesystem::remove(to);
      if (std::filesystem::exists(from)) {
        std::filesystem::copy_file(from, to);
      }
    }
    return Connection(FileConnectionString(copy));
  }
  int Count(Connection& connection, const std::string& table) const {
    return static_cast<int>(connection.Open("SELECT COUNT(*) AS N FROM " + table).Number("N"));
  }

  test::ScratchFolder folder_;
  std::filesystem::path file_ = folder_.Path() / "4star.mdb";
};

}  // namespace marlevo
