// Sends text as SQL through the database service: it runs or is a DatabaseError, and the file stays sound.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "platform/access/database/database.h"
#include "platform/base/operation_error.h"
#include "platform/database/connection.h"
#include "support/scratch_folder.h"

namespace marlevo {
namespace {

class Target {
 public:
  Target() {
    using enum access::ColumnType;
    access::Database::Create(
        file_, "qorvat",
        {{"T",
          {{"NO", kText, 20}, {"N", kLong}, {"AMT", kDouble}, {"B", kBoolean}, {"M", kMemo}},
          {{.name = "no", .columns = {{"NO"}, {"N", true}}},
           {.name = "n", .columns = {{"N"}}, .unique = true, .ignore_nulls = true}}},
         {"U", {{"C", kCurrency}, {"D", kDateTime}, {"G", kGuid}, {"Y", kByte}, {"NO", kText, 9}}}});
    connection_.emplace(FileConnectionString(file_));
    Fill();
  }

  void Run(const std::string& sql) {
    try {
      for (Recordset rows = connection_->Open(sql); !rows.AtEnd(); rows.MoveNext()) {
      }
    } catch (const DatabaseError&) {
    }
    try {
      connection_->Execute(sql);
    } catch (const DatabaseError&) {
      return;
    }
    if (++changes_ % 256 == 0) {
      connection_->Flush();
      Require(access::Database::Open(file_, {"qorvat", {}}).FindFaults().empty());
    }
    Fill();
  }

 private:
  void Fill() {
    for (const char* const sql : {"DELETE FROM T", "DELETE FROM U", "INSERT INTO T VALUES ('A01',1,0.5,-1,'陳')",
                                  "INSERT INTO T VALUES ('a01',NULL,2,0,NULL)", "INSERT INTO T VALUES (NULL,3,3,0,'')",
                                  "INSERT INTO U VALUES (1.25,37000,NULL,7,'A01')"}) {
      connection_->Execute(sql);
    }
  }

  test::ScratchFolder folder_;
  std::filesystem::path file_ = folder_.Path() / "4star.mdb";
  std::optional<Connection> connection_;
  std::size_t changes_ = 0;
};

constexpr std::string_view kWords =
    "SELECT * FROM T| WHERE |INSERT INTO T VALUES (|INSERT INTO U (NO,Y) VALUES (|DELETE FROM T|SELECT * FROM [U]|=|"
    " ORDER BY | GROUP BY | DESC|COUNT(*)|NO|[NO]|AMT|N|rowid|B|M|C|D|G|Y|'A01'|'陳'|NULL|-1|0.5|2147483647|"
    "9223372036854775807|1e300| AND | OR | IS | IN (|)|<|>=|<>| LIKE | BETWEEN | NOT | JOIN U| ON | LIMIT |,| AS |"
    "lower(|x'ff'|''| UNION SELECT |SELECT | FROM |DELETE FROM U|INSERT INTO T SELECT * FROM T|T.|cast(| AS TEXT)|"
    "\xff|'ab%'| HAVING | DISTINCT | COLLATE |BINARY|MAX(|CREATE TABLE X(|UPDATE T SET |;|ATTACH '|PRAGMA |T|U|"
    "NOCASE|typeof(";

// What stands between the bars of a text.
std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  for (std::size_t from = 0, to = 0; to != text.npos; from = to + 1) {
    to = text.find('|', from);
    words.push_back(text.substr(from, to - from));
  }
  return words;
}

// How often the tables are named; more would join more rows than a fuzzer has time for.
auto Tables(std::string_view sql) {
  return std::ranges::count_if(
      sql, [](char letter) { return std::string_view("TUtu").find(letter) != std::string_view::npos; });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Target target;
  static const std::vector<std::string_view> words = Words(kWords);
  const std::string sql = FuzzInput(data, size).Text(words);
  if (Tables(sql) < 24) {
    target.Run(sql);
  }
  return 0;
}

}  // namespace marlevo
