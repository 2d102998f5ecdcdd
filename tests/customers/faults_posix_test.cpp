// A disk that takes no more, which only POSIX systems let a test bring about.
#include "customer_database.h"
#include "customers/customer_store.h"
#include "customers/frmCustom.h"
#include "support/file_size_limit.h"
#include "support/window_driver.h"

namespace marlevo {
namespace {

using FullDiskTest = CustomerDatabaseTest;

TEST_F(FullDiskTest, WhatFailsIsNotDoneAndCanBeDoneAgain) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddRecord("A01", "20021005143012", {"0 25 1234"});
  const std::string before = Customers() + Tickets("A01");
  CustomerStore store(Opening());
  const std::vector<std::function<void()>> calls = {[&] {
                                                      store.Save("A02", {{0, 25, 1, {}}, {0, 25, 2, {}}}, [](int) {});
                                                    },
                                                    [&] {
                                                      store.Add({"A02", "", "", "", ""});
                                                    },
                                                    [&] {
                                                      EXPECT_TRUE(store.Replace({"A01", "王大明", "", "", ""}).found);
                                                    },
                                                    [&] { store.RemoveRecord("A01", "20021005143012"); },
                                                    [&] { store.Remove("A01"); }};
  for (const auto& call : calls) {
    std::optional<Fault> refusal;
    {
      const FileSizeLimit limit(0);
      refusal = Refusal("寫入資料庫", call);
    }
    EXPECT_EQ(refusal, Fault::kDiskFull) << &call - calls.data();
    EXPECT_EQ(Customers() + Tickets("A01"), before) << &call - calls.data();
  }
  calls[0]();
  calls[2]();
  EXPECT_EQ(std::ranges::count(Tickets("A02"), '\n'), 2);
  EXPECT_EQ(Customers(), "A01|王大明|||\n");
}

TEST_F(FullDiskTest, ARecordThatIsNotDeletedStaysInTheList) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddRecord("A01", "20021005143012", {"0 25 1234"});
  const Shown<frmCustom> window(Opening());
  PressRow(window, "mfgCustom_H", 0);
  PressRow(window, "lstRecord", 0);
  EXPECT_NE(RowsText(window, "mfgData(0)"), "");
  const FileSizeLimit limit(0);
  const ModalStep yes = ExpectQuestion("要將 2002/10/05-14:30:12     1張 資料移除 ?", QMessageBox::Yes);
  Press(window, "cmdDelRecord", {yes, ExpectErrorReport("磁碟空間不足", "繼續")});
  EXPECT_EQ(RowsText(window, "mfgData(0)"), "") << "the grids are cleared first";
  EXPECT_NE(RowsText(window, "lstRecord"), "");
}

}  // namespace
}  // namespace marlevo
