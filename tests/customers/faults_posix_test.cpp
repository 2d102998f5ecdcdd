// Faults that only POSIX systems let a test bring about: a medium that may not be written to, and a full disk.
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

#include "customer_windows.h"
#include "customers/frmCustom.h"
#include "customers/frmSave.h"
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

// No file can grow beyond this size while it lives: a write beyond it fails as on a full disk.
class DiskLimit {
 public:
  explicit DiskLimit(std::uintmax_t bytes) {
    before_ = std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &unlimited_);
    const rlimit limited{static_cast<rlim_t>(bytes), unlimited_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limited);
  }
  ~DiskLimit() {
    setrlimit(RLIMIT_FSIZE, &unlimited_);
    std::signal(SIGXFSZ, before_);
  }
  DiskLimit(const DiskLimit&) = delete;
  DiskLimit& operator=(const DiskLimit&) = delete;

 private:
  rlimit unlimited_{};
  void (*before_)(int);
};

TEST_F(FaultsPosixTest, AReadOnlyFolderCanBeLookedAtButNotChanged) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddRecord("A01", "20021005143012", {"0 25 1234"});
  {
    const ReadOnlyFolder folder(folder_.Path());
    frmCustom window(nullptr, Opening());
    window.show();
    PressRow(window, "mfgCustom_H", 0);
    EXPECT_EQ(RowsText(window, "lstRecord"), "2002/10/05-14:30:12     1張\n");
    Enter(window, "txtCustom_No", "A02");
    Press(window, "cmdAdd", {ExpectErrorReport("執行資料庫指令", "繼續")});
    EXPECT_EQ(RowsText(window, "mfgCustom_H"), "A01|王小明|||\n");
    Enter(window, "txtCustom_No", "A01");
    Press(window, "cmdEdit", {ExpectErrorReport("執行資料庫指令", "繼續")});
  }
  EXPECT_EQ(Customers(), "A01|王小明|||\n");
}

TEST_F(FaultsPosixTest, AFullDiskKeepsTheFirstRowsOfASave) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddCustomer({"A02", "陳大文", "", "", ""});
  const CurrentList list = LargestList();
  frmSave window(nullptr, Opening(), list);
  window.show();
  const auto save = [&](int row, const QString& number, const ModalStep& end) {
    PressRow(window, "mfgCustom_H", row);
    Press(window, "cmdPrint", {ExpectQuestion("確定要將號碼組合資料存檔到 [" + number + "] ?", QMessageBox::Yes), end});
  };
  {
    const DiskLimit full(std::filesystem::file_size(file_) + 300'000);
    save(0, "A01", ExpectErrorReport("4star.mdb", "繼續"));
    EXPECT_TRUE(Find<QWidget>(window, "picMsg").isHidden());
  }
  // There is room again.
  save(1, "A02", ExpectMessage("存檔完畢 !"));
  Connection connection(Opening());
  StoredOfSave(connection, "A01", list);
  EXPECT_EQ(StoredOfSave(connection, "A02", list), 23000U);
}

}  // namespace
}  // namespace marlevo
