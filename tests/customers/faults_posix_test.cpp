// Faults that only POSIX systems let a test bring about: a medium that may not be written to, and a full disk.
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <fstream>

#include "customer_database.h"
#include "customers/frmCustom.h"
#include "customers/frmSave.h"
#include "platform/access/database.h"
#include "save_steps.h"
#include "support/largest_list.h"

namespace marlevo {
namespace {

class ReadOnlyFolderTest : public CustomerDatabaseTest {
 protected:
  // Takes the right to write to the folder and what is in it from this process, root or not.
  void MakeReadOnly() const {
    using std::filesystem::perms;
    Permit(perms::all & ~(perms::owner_write | perms::group_write | perms::others_write));
    constexpr uid_t kNobody = 65534;
    EXPECT_EQ(seteuid(user_ == 0 ? kNobody : user_), 0);
  }
  void MakeWritable() const {
    EXPECT_EQ(seteuid(user_), 0);
    Permit(std::filesystem::perms::owner_all);
  }
  void TearDown() override { MakeWritable(); }

 private:
  void Permit(std::filesystem::perms rights) const {
    for (const auto& file : std::filesystem::directory_iterator(folder_.Path())) {
      std::filesystem::permissions(file, rights);
    }
    std::filesystem::permissions(folder_.Path(), rights);
  }

  const uid_t user_ = geteuid();
};

// With the database on a disk of 8 MB that this process alone sees.
class FullDiskTest : public CustomerDatabaseTest {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(disk_);
    mounted_ = unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount("tmpfs", disk_.c_str(), "tmpfs", 0, "size=8m") == 0;
    if (!mounted_) {
      GTEST_SKIP() << "no disk was filled up: only root may mount one";
    }
    file_ = disk_ / "4star.mdb";
    MakeDatabase(file_);
    AddCustomer({"A01", "王小明", "", "", ""});
  }
  void TearDown() override {
    if (mounted_) {
      umount2(disk_.c_str(), MNT_DETACH);
    }
  }
  // Leaves that many bytes free.
  void Fill(std::uintmax_t room) const {
    std::ofstream(filling_) << std::string(std::filesystem::space(disk_).available - room, 'x');
  }

  const ModalStep report_ = ExpectErrorReport("磁碟空間不足", "繼續");
  const std::filesystem::path disk_ = folder_.Path() / "disk";
  const std::filesystem::path filling_ = disk_ / "filling";
  bool mounted_ = false;
};

TEST_F(ReadOnlyFolderTest, CanBeLookedAtButNotChanged) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddRecord("A01", "20021005143012", {"0 25 1234"});
  MakeReadOnly();
  {
    const Shown<frmCustom> window(Opening());
    PressRow(window, "mfgCustom_H", 0);
    EXPECT_EQ(RowsText(window, "lstRecord"), "2002/10/05-14:30:12     1張\n");
    Enter(window, "txtCustom_No", "A02");
    Press(window, "cmdAdd", {ExpectErrorReport("唯讀", "繼續")});
    EXPECT_EQ(RowsText(window, "mfgCustom_H"), "A01|王小明|||\n");
    Enter(window, "txtCustom_No", "A01");
    Press(window, "cmdEdit", {ExpectErrorReport("唯讀", "繼續")});
    PressRow(window, "lstRecord", 0);
    EXPECT_EQ(RowsText(window, "mfgData(0)"), "1|1|2|3|4\n");
    const ModalStep yes = ExpectQuestion("要將 2002/10/05-14:30:12     1張 資料移除 ?", QMessageBox::Yes);
    Press(window, "cmdDelRecord", {yes, ExpectErrorReport("唯讀", "繼續")});
    EXPECT_EQ(RowsText(window, "mfgData(0)"), "") << "the grids are cleared first";
    EXPECT_EQ(RowsText(window, "lstRecord"), "2002/10/05-14:30:12     1張\n");
  }
  MakeWritable();
  EXPECT_EQ(Customers(), "A01|王小明|||\n");
}

TEST_F(FullDiskTest, ASaveThatFailsIsNotStoredAndTheNextOneIsStoredOnce) {
  const CurrentList list = LargestList();
  {
    const Shown<frmSave> window(Opening(), list);
    for (const std::uintmax_t room : {300'000, 0}) {
      Fill(room);
      Press(window, "cmdPrint", YesToSaving("A01", report_));
      EXPECT_TRUE(Find<QWidget>(window, "picMsg").isHidden());
      EXPECT_EQ(Tickets("A01"), "") << "with room for " << room;
      std::filesystem::remove(filling_);
    }
    Press(window, "cmdPrint", YesToSaving("A01"));
  }
  EXPECT_EQ(StoredOfSave("A01", list), 23000U);
  EXPECT_EQ(access::Database::Open(file_, {"qorvat", std::nullopt}).Check(), std::vector<std::string>());
}

TEST_F(FullDiskTest, AChangeThatFailsKeepsTheCustomer) {
  AddRecord("A01", "20021005143012", {"0 25 1234"});
  const std::string before = Customers() + Tickets("A01");
  const Shown<frmCustom> window(Opening());
  PressRow(window, "mfgCustom_H", 0);
  Enter(window, "txtMemo1", "每週三");
  Fill(0);
  Press(window, "cmdEdit", {report_});
  const QString question = "注意 ! A01客戶所有資料將會被刪除\r\n確定要將A01客戶刪除 ?";
  Press(window, "cmdDel", {ExpectQuestion(question, QMessageBox::Yes), report_});
  std::filesystem::remove(filling_);
  EXPECT_EQ(Customers() + Tickets("A01"), before);
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), "A01|王小明|||\n");
  Press(window, "cmdEdit");
  EXPECT_EQ(Customers(), "A01|王小明|||每週三\n");
}

}  // namespace
}  // namespace marlevo
