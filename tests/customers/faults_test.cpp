// What goes wrong with the database when the customer windows read it: each fault gives one error report, and the
// window goes on working.
#include <fstream>

#include "customer_database.h"
#include "customers/frmCustom.h"
#include "customers/frmCustom_CHK.h"
#include "customers/frmSave.h"
#include "draws/frmInput.h"
#include "platform/access/database/database.h"
#include "support/window_driver.h"

namespace marlevo {
namespace {

class FaultsTest : public CustomerDatabaseTest {
 protected:
  // Opens every window with a database in turn. Each opening is one step.
  static void OpenEachWindow(const std::string& connection_string, const ModalStep& step) {
    const CurrentList list;
    const std::vector<std::function<void()>> openings = {[&] { frmInput(nullptr, connection_string).exec(); },
                                                         [&] { frmCustom(nullptr, connection_string).exec(); },
                                                         [&] { frmSave(nullptr, connection_string, list).exec(); },
                                                         [&] { frmCustom_CHK(nullptr, connection_string).exec(); }};
    for (const auto& opening : openings) {
      WithModals([&] { RunInEvent(opening); }, {step});
    }
  }

  void Overwrite(std::uintmax_t from, std::uintmax_t length, char byte) {
    std::fstream file(file_, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(from));
    file << std::string(length, byte);
  }
};

TEST_F(FaultsTest, AFileThatCannotBeOpenedGivesAReportAndNoWindow) {
  const auto opens_with_report = [&](const std::string& connection_string, const char* reason) {
    OpenEachWindow(connection_string, ExpectErrorReport(reason, "繼續"));
  };
  opens_with_report(Opening().substr(0, Opening().rfind('=') + 1) + "wrong", "密碼不符");
  OpenEachWindow(Opening(), [](QWidget& window) { window.close(); });
  Overwrite(0, 64, '\0');
  opens_with_report(Opening(), "損壞");
  std::ofstream(file_).close();
  opens_with_report(Opening(), "損壞");
  std::filesystem::remove(file_);
  opens_with_report(Opening(), "找不到檔案");
  // Another program's file under the same password.
  access::Database::Create(file_, "qorvat", {{"OTHER", {{"A", access::ColumnType::kLong}}}});
  opens_with_report(Opening(), "缺少需要的資料表");
}

TEST_F(FaultsTest, DamagedPagesGiveAReportAndTheWindowStays) {
  AddCustomer({"A01", "王小明", "", "", ""});
  const std::uintmax_t healthy = std::filesystem::file_size(file_);
  AddRecord("A01", "20021005143012", std::vector<std::string>(3000, "0,25,1,1,2,3,4"));
  ASSERT_GT(std::filesystem::file_size(file_), healthy + 65536);
  Overwrite(healthy + 32768, 32768, '\xAA');
  const Shown<frmCustom> window(Opening());
  WithModals([&] { PressRow(window, "mfgCustom_H", 0); }, {ExpectErrorReport("檔案已經損壞", "繼續")});
  EXPECT_EQ(RowsText(window, "lstRecord"), "");
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), "A01|王小明|||\n");
  // The customer is deleted before the purchases, which cannot be read.
  const ModalStep yes = ExpectQuestion("注意 ! A01客戶所有資料將會被刪除\r\n確定要將A01客戶刪除 ?", QMessageBox::Yes);
  Press(window, "cmdDel", {yes, ExpectErrorReport("他的購買記錄沒有刪除", "繼續")});
  EXPECT_EQ(RowsText(window, "mfgCustom_H") + Customers(), "");
  const Shown<frmCustom_CHK> check(Opening());
  Click(check, "Option1(2)");
  Press(check, "cmdCheck2", {ExpectErrorReport("4star.mdb", "繼續")});
  EXPECT_EQ(RowsText(check, "lstCheck"), "");
}

}  // namespace
}  // namespace marlevo
