// A disk that takes no more, which only POSIX systems let a test bring about.
#include <tuple>

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
  AddRecord("A01", "20021005143012", {"0,25,1,1,2,3,4"});
  const std::string before = Customers() + Tickets("A01");
  CustomerStore store(Opening());
  const Customer added{"A02", "", "", "", ""};
  const Customer changed{"A01", "王大明", "", "", ""};
  const std::vector<StoredTicket> tickets{{0, 25, 1, {}}, {0, 25, 2, {}}};
  const auto save = [&] { store.Save("A02", tickets, [](int) {}); };
  const auto change = [&] { EXPECT_TRUE(store.Replace(changed).found); };
  const auto changes_nothing_on_a_full_disk = [&](const std::function<void()>& call) {
    std::optional<Fault> refusal;
    {
      const FileSizeLimit limit(0);
      refusal = Refusal("寫入資料庫", call);
    }
    return refusal == Fault::kDiskFull && Customers() + Tickets("A01") == before;
  };
  EXPECT_TRUE(changes_nothing_on_a_full_disk(save));
  EXPECT_TRUE(changes_nothing_on_a_full_disk([&] { store.Add(added); }));
  EXPECT_TRUE(changes_nothing_on_a_full_disk(change));
  EXPECT_TRUE(changes_nothing_on_a_full_disk([&] { store.RemoveRecord("A01", "20021005143012"); }));
  EXPECT_TRUE(changes_nothing_on_a_full_disk([&] { std::ignore = store.Remove("A01"); }));
  save();
  change();
  EXPECT_EQ(std::ranges::count(Tickets("A02"), '\n'), 2);
  EXPECT_EQ(Customers(), "A01|王大明|||\n");

  const Shown<frmCustom> window(Opening());
  PressRow(window, "mfgCustom_H", 0);
  PressRow(window, "lstRecord", 0);
  EXPECT_NE(RowsText(window, "mfgData(0)"), "");
  const FileSizeLimit limit(0);
  const ModalStep yes = ExpectQuestion("要將 2002/10/05-14:30:12     1張 資料移除 ?", QMessageBox::Yes);
  Press(window, "cmdDelRecord", {yes, ExpectErrorReport("磁碟空間不足", "繼續")});
  EXPECT_EQ(RowsText(window, "mfgData(0)"), "") << "the grids are cleared first";
  EXPECT_NE(RowsText(window, "lstRecord"), "") << "the record is still there";
}

}  // namespace
}  // namespace marlevo
