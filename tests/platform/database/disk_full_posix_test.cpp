// A disk that fills up in the middle of one statement.
#include <sys/resource.h>

#include <csignal>

#include "platform/access/database.h"
#include "platform/database/database_fixture.h"

namespace marlevo {
namespace {

// No file of this process grows beyond a size while this lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

class DiskFullTest : public DatabaseFixture {};

TEST_F(DiskFullTest, ADeleteThatFailsHalfWayDeletesNothing) {
  constexpr int kRows = 1 << 18;  // more pages than one statement keeps in memory
  Connection connection(Opening());
  connection.Execute("INSERT INTO CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_SEQ) VALUES ('A01','20021005143012',1)");
  for (int rows = 1; rows < kRows; rows *= 2) {
    connection.Execute("INSERT INTO CUSTOM_D SELECT * FROM CUSTOM_D");
  }
  connection.Flush();
  {
    const FileSizeLimit limit(1 << 20);
    EXPECT_NE(Refusal(connection, "DELETE FROM CUSTOM_D WHERE CUSTOM_NO='A01'"), "");
  }
  EXPECT_EQ(Count(connection, "CUSTOM_D"), kRows);
  connection.Close();
  EXPECT_EQ(access::Database::Open(file_, {"qorvat", std::nullopt}).Check(), std::vector<std::string>());

  Connection again(Opening());
  EXPECT_EQ(Count(again, "CUSTOM_D"), kRows);
  again.Execute("DELETE FROM CUSTOM_D WHERE CUSTOM_NO='A01'");
  EXPECT_EQ(Count(again, "CUSTOM_D"), 0);
}

}  // namespace
}  // namespace marlevo
