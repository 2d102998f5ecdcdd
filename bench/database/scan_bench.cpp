// Queries over 1,000,000 tickets without an index, beside SQLite's scan of the same rows and beside a bare loop over
// the file's pages that does nothing but compare the three columns.
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "database/stores.h"
#include "platform/access/database/database.h"
#include "platform/database/connection.h"
#include "support/scratch_folder.h"
#include "support/yardstick.h"

namespace {

using namespace marlevo;

constexpr std::size_t kPageSize = 4096;
constexpr std::size_t kBlockSize = 16 * kPageSize;

// Where three columns stand in a row. A row begins with two bytes, its column count; then come the columns of fixed
// size in the table's order: PLAY_MODE (4 bytes), PLAY_AMT (8), PLAY_SEQ (4), NO1 (4), NO2.
constexpr std::size_t kMode = 2 + 0;
constexpr std::size_t kNo1 = 2 + 4 + 8 + 4;
constexpr std::size_t kNo2 = kNo1 + 4;

template <typename Number>
Number At(const char* bytes) {
  Number number;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

// The definition page that owns the table's data pages.
std::uint32_t OwnerOf(const std::filesystem::path& file) {
  const std::string password = ParseConnectionString(FileConnectionString(file)).password;
  const access::Database database = access::Database::Open(file, {password, std::nullopt});
  access::Cursor first = database.OpenTable("CUSTOM_D").Scan();
  first.Next();
  const std::size_t page = static_cast<std::uint32_t>(first.Row()) >> 8;
  std::ifstream stream(file, std::ios::binary);
  std::array<char, 8> head{};
  stream.seekg(static_cast<std::streamoff>(page * kPageSize));
  stream.read(head.data(), head.size());
  return At<std::uint32_t>(head.data() + 4);
}

std::size_t BareLoop(const std::filesystem::path& file, std::uint32_t owner, std::array<std::int32_t, 3> wanted) {
  static std::array<char, kBlockSize> block;
  std::FILE* stream = std::fopen(file.string().c_str(), "rb");
  std::setvbuf(stream, nullptr, _IONBF, 0);
  std::size_t found = 0;
  while (const std::size_t size = std::fread(block.data(), 1, block.size(), stream)) {
    for (std::size_t start = 0; start + kPageSize <= size; start += kPageSize) {
      const char* page = block.data() + start;
      if (page[0] != 1 || At<std::uint32_t>(page + 4) != owner) {
        continue;
      }
      const std::size_t rows = At<std::uint16_t>(page + 12);
      for (std::size_t i = 0; i < rows; ++i) {
        const std::size_t slot = At<std::uint16_t>(page + 14 + 2 * i);
        const char* row = page + (slot & 0x1FFF);
        if ((slot & 0xC000) == 0 && At<std::int32_t>(row + kMode) == wanted[0] &&
            At<std::int32_t>(row + kNo1) == wanted[1] && At<std::int32_t>(row + kNo2) == wanted[2]) {
          ++found;
        }
      }
    }
  }
  std::fclose(stream);
  return found;
}

std::size_t Walk(Recordset rows) {
  std::size_t count = 0;
  for (; !rows.AtEnd(); rows.MoveNext()) {
    ++count;
  }
  return count;
}

}  // namespace

int main() {
  const test::ScratchFolder folder;
  const std::filesystem::path file = folder.Path() / "4star.mdb";
  const std::vector<bench::Ticket> tickets = bench::Tickets(1000000);
  bench::MakeStore(file, tickets);
  bench::SqliteStore sqlite(folder.Path() / "yardstick.db", tickets);
  Connection connection(FileConnectionString(file));
  const std::uint32_t owner = OwnerOf(file);

  bench::YardstickTable table;
  const auto compare = [&](const char* name, const std::string& sql, double limit) {
    if (Walk(connection.Open(sql)) != sqlite.Run(sql)) {
      throw std::runtime_error(sql + ": the results differ");
    }
    table.Row(name, {.prepare = {}, .run = [&] { Walk(connection.Open(sql)); }},
              {.prepare = {}, .run = [&] { sqlite.Run(sql); }}, limit, 10);
  };
  const std::string filter = "SELECT * FROM CUSTOM_D WHERE PLAY_MODE=3 AND NO1=1 AND NO2=2";
  compare("three numbers : SQLite", filter, 0.6);
  if (BareLoop(file, owner, {3, 1, 2}) != Walk(connection.Open(filter))) {
    throw std::runtime_error("the bare loop finds other rows");
  }
  table.Row("three numbers : bare page loop", {.prepare = {}, .run = [&] { Walk(connection.Open(filter)); }},
            {.prepare = {},
             .run =
                 [&] {
                   BareLoop(file, owner, {3, 1, 2});
                 }},
            2.0, 10);
  compare("records of a customer : SQLite",
          "SELECT SAL_DATE,COUNT(CUSTOM_NO) AS SAL_NUM FROM CUSTOM_D WHERE CUSTOM_NO='A1007' GROUP BY SAL_DATE", 1.2);
  compare("one record, ordered : SQLite",
          "SELECT * FROM CUSTOM_D WHERE CUSTOM_NO='A1007' AND SAL_DATE='20260101000007' ORDER BY PLAY_MODE,PLAY_SEQ",
          1.2);
  compare("every row : SQLite", "SELECT * FROM CUSTOM_D", 2.0);
  return table.ExitStatus();
}
