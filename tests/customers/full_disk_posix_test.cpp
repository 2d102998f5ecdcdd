// A disk that takes no more, which only POSIX systems let a test bring about.
#include <algorithm>
#include <tuple>

#include "customer_database.h"
#include "customers/customer_store.h"
#include "customers/day_backup.h"
#include "support/file_size_limit.h"

namespace marlevo {
namespace {

using FullDiskTest = CustomerDatabaseTest;

TEST_F(FullDiskTest, WhatFailsIsNotDoneAndCanBeDoneAgain) {
  AddCustomers({{"A01", "王小明"}});
  AddRecord("A01", "20021005143012", {"0,25,1,1,2,3,4"});
  const std::filesystem::path stick = folder_.Path() / "stick";
  std::filesystem::create_directory(stick);
  const DayBackup day = BackupOfDay(Opening(), stick, "20261123203000");
  BackUp(day.database, day.settings);
  const auto state = [&] {
    CustomerStore copy(FileConnectionString(day.database.to));
    return Customers() + Tickets("A01") + Tickets("A02") + copy.Customers().at(0).name +
           std::to_string(std::distance(std::filesystem::directory_iterator(stick), {}));
  };
  const std::string before = state();
  CustomerStore store(Opening());
  const auto save = [&] { store.Save("A02", {{0, 25, 1, {}}, {0, 25, 2, {}}}, [](int) {}); };
  const auto change = [&] { EXPECT_TRUE(store.Replace({"A01", "王大明", "", "", ""}).found); };
  const std::function<void()> calls[] = {save,
                                         change,
                                         [&] {
                                           store.Add({"A02", "", "", "", ""});
                                         },
                                         [&] { store.RemoveRecord("A01", "20021005143012"); },
                                         [&] { std::ignore = store.Remove("A01"); },
                                         [&] { BackUp(day.database, day.settings); }};
  for (const std::function<void()>& call : calls) {
    std::optional<Fault> refusal;
    try {
      const FileSizeLimit limit(0);
      call();
    } catch (const OperationError& error) {
      refusal = error.Kind();
    }
    EXPECT_EQ(refusal, Fault::kDiskFull) << &call - calls;
    EXPECT_EQ(state(), before) << &call - calls;
  }
  save();
  change();
  EXPECT_EQ(std::ranges::count(Tickets("A02"), '\n'), 2);
  EXPECT_EQ(Customers(), "A01|王大明|||\n");
}

}  // namespace
}  // namespace marlevo
