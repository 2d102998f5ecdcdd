// A disk that fills up in the middle of one statement.
#include <sched.h>
#include <sys/mount.h>
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

// A small disk of its own, in memory and for this process only.
class SmallDisk {
 public:
  explicit SmallDisk(std::filesystem::path place) : place_(std::move(place)) {
    std::filesystem::create_directory(place_);
    there_ = unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
             mount("small", place_.c_str(), "tmpfs", 0, "size=32m") == 0;
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    if (there_) umount(place_.c_str());
  }
  bool There() const { return there_; }
  bool Enlarge() { return mount("small", place_.c_str(), "tmpfs", MS_REMOUNT, "size=128m") == 0; }

 private:
  std::filesystem::path place_;
  bool there_ = false;
};

class DiskFullTest : public DatabaseFixture {
 protected:
  static constexpr int kRows = 1 << 18;  // more pages than one statement keeps in memory
  static constexpr char kDelete[] = "DELETE FROM CUSTOM_D WHERE CUSTOM_NO='A01'";

  DiskFullTest() {
    Connection connection(Opening());
    connection.Execute("INSERT INTO CUSTOM_D (CUSTOM_NO,SAL_DATE,PLAY_SEQ) VALUES ('A01','20021005143012',1)");
    for (int rows = 1; rows < kRows; rows *= 2) {
      connection.Execute("INSERT INTO CUSTOM_D SELECT * FROM CUSTOM_D");
    }
  }

  void ExpectAllRows(Connection& connection) {
    EXPECT_EQ(Count(connection, "CUSTOM_D"), kRows);
    connection.Close();
    EXPECT_EQ(access::Database::Open(file_, {"qorvat", std::nullopt}).Check(), std::vector<std::string>());
  }

  void ExpectDeleteWorks() {
    Connection again(Opening());
    EXPECT_EQ(Count(again, "CUSTOM_D"), kRows);
    again.Execute(kDelete);
    EXPECT_EQ(Count(again, "CUSTOM_D"), 0);
  }
};

TEST_F(DiskFullTest, AFileThatMayNotGrowMakesADeleteDeleteNothing) {
  Connection connection(Opening());
  {
    const FileSizeLimit limit(1 << 20);
    EXPECT_EQ(Refusal(connection, kDelete), Fault::kDiskFull);
  }
  ExpectAllRows(connection);
  ExpectDeleteWorks();
}

TEST_F(DiskFullTest, ADiskWithoutRoomMakesADeleteDeleteNothing) {
  SmallDisk disk(folder_.Path() / "disk");
  if (!disk.There()) {
    GTEST_SKIP() << "only the superuser makes a disk";
  }
  const std::filesystem::path original = file_;
  file_ = folder_.Path() / "disk" / "4star.mdb";
  std::filesystem::copy_file(original, file_);
  Connection connection(Opening());
  EXPECT_EQ(Refusal(connection, kDelete), Fault::kDiskFull);
  ExpectAllRows(connection);
  ASSERT_TRUE(disk.Enlarge());
  ExpectDeleteWorks();
}

}  // namespace
}  // namespace marlevo
