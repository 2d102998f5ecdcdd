// Faults that only POSIX systems let a test bring about: a medium that may not be written to, and a full disk.
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <fstream>

#include "customer_windows.h"
#include "customers/frmCustom.h"
#include "customers/frmSave.h"
#include "platform/access/database.h"
#include "stored_rows.h"
#include "support/largest_list.h"

namespace marlevo {
namespace {

using FaultsPosixTest = CustomerWindowsTest;

// Takes the right to write to a folder and what is in it from this process, root or not, as long as it lives.
class ReadOnlyFolder {
 public:
  explicit ReadOnlyFolder(const std::filesystem::path& folder) : folder_(folder), user_(geteuid()) {
    using std::filesystem::perms;
    for (const auto& file : std::filesystem::directory_iterator(folder_)) {
      std::filesystem::permissions(file, perms::owner_read | perms::group_read | perms::others_read);
    }
    std::filesystem::permissions(folder_, perms::owner_all | perms::group_exec | perms::others_exec);
    std::filesystem::permissions(folder_,
                                 perms::all & ~(perms::owner_write | perms::group_write | perms::others_write));
    if (user_ == 0) {
      constexpr uid_t kNobody = 65534;
      EXPECT_EQ(seteuid(kNobody), 0);
    }
  }
  ~ReadOnlyFolder() {
    EXPECT_EQ(seteuid(user_), 0);
    std::filesystem::permissions(folder_, std::filesystem::perms::owner_all);
    for (const auto& file : std::filesystem::directory_iterator(folder_)) {
      std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }
  }
  ReadOnlyFolder(const ReadOnlyFolder&) = delete;
  ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

 private:
  std::filesystem::path folder_;
  uid_t user_;
};

// A disk of 8 MB that this process alone sees, mounted on a new folder.
class SmallDisk {
 public:
  explicit SmallDisk(std::filesystem::path folder) : folder_(std::move(folder)) {
    std::filesystem::create_directory(folder_);
    mounted_ = unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount("tmpfs", folder_.c_str(), "tmpfs", 0, "size=8m") == 0;
  }
  ~SmallDisk() {
    if (mounted_) {
      umount2(folder_.c_str(), MNT_DETACH);
    }
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool Mounted() const { return mounted_; }
  const std::filesystem::path& Folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
  bool mounted_;
};

// Leaves that many bytes free on a disk as long as it lives.
class Filling {
 public:
  Filling(const SmallDisk& disk, std::uintmax_t room) : file_(disk.Folder() / "filling") {
    std::ofstream(file_) << std::string(std::filesystem::space(disk.Folder()).available - room, 'x');
  }
  ~Filling() { std::filesystem::remove(file_); }
  Filling(const Filling&) = delete;
  Filling& operator=(const Filling&) = delete;

 private:
  std::filesystem::path file_;
};

class FullDiskTest : public CustomerWindowsTest {
 protected:
  void SetUp() override {
    if (!disk_.Mounted()) {
      GTEST_SKIP() << "no disk was filled up: only root may mount one";
    }
    file_ = disk_.Folder() / "4star.mdb";
    MakeDatabase(file_);
    AddCustomer({"A01", "王小明", "", "", ""});
  }

  const ModalStep report_ = ExpectErrorReport("磁碟空間不足", "繼續");
  SmallDisk disk_{folder_.Path() / "disk"};
};

TEST_F(FaultsPosixTest, AReadOnlyFolderCanBeLookedAtButNotChanged) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddRecord("A01", "20021005143012", {"0 25 1234"});
  {
    const ReadOnlyFolder folder(folder_.Path());
    const Shown<frmCustom> window(Opening());
    PressRow(window, "mfgCustom_H", 0);
    EXPECT_EQ(RowsText(window, "lstRecord"), "2002/10/05-14:30:12     1張\n");
    Enter(window, "txtCustom_No", "A02");
    Press(window, "cmdAdd", {ExpectErrorReport("唯讀", "繼續")});
    EXPECT_EQ(RowsText(window, "mfgCustom_H"), "A01|王小明|||\n");
    Enter(window, "txtCustom_No", "A01");
    Press(window, "cmdEdit", {ExpectErrorReport("唯讀", "繼續")});
  }
  EXPECT_EQ(Customers(), "A01|王小明|||\n");
}

TEST_F(FullDiskTest, ASaveThatFailsIsNotStoredAndTheNextOneIsStoredOnce) {
  const CurrentList list = LargestList();
  const ModalStep yes = ExpectQuestion("確定要將號碼組合資料存檔到 [A01] ?", QMessageBox::Yes);
  {
    const Shown<frmSave> window(Opening(), list);
    for (const std::uintmax_t room : {300'000, 0}) {
      const Filling filling(disk_, room);
      Press(window, "cmdPrint", {yes, report_});
      EXPECT_TRUE(Find<QWidget>(window, "picMsg").isHidden());
      EXPECT_TRUE(Tickets("A01").empty()) << "with room for " << room;
    }
    Press(window, "cmdPrint", {yes, ExpectMessage("存檔完畢 !")});
  }
  {
    Connection connection(Opening());
    EXPECT_EQ(StoredOfSave(connection, "A01", list), 23000U);
  }
  EXPECT_EQ(access::Database::Open(file_, {"qorvat", std::nullopt}).Check(), std::vector<std::string>());
}

TEST_F(FullDiskTest, AChangeThatFailsKeepsTheCustomer) {
  AddRecord("A01", "20021005143012", {"0 25 1234"});
  const std::string before = Customers() + Tickets("A01");
  const Shown<frmCustom> window(Opening());
  PressRow(window, "mfgCustom_H", 0);
  Enter(window, "txtMemo1", "每週三");
  {
    const Filling filling(disk_, 0);
    Press(window, "cmdEdit", {report_});
    Press(window, "cmdDel",
          {[](QWidget& box) { qobject_cast<QMessageBox*>(&box)->button(QMessageBox::Yes)->click(); }, report_});
  }
  EXPECT_EQ(Customers() + Tickets("A01"), before);
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), "A01|王小明|||\n");
  Press(window, "cmdEdit");
  EXPECT_EQ(Customers(), "A01|王小明|||每週三\n");
}

}  // namespace
}  // namespace marlevo
