#include "customers/customer_store.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <tuple>

#include "customer_database.h"
#include "customers/customer_search.h"
#include "customers/day_backup.h"
#include "support/ticket_text.h"

namespace marlevo {
namespace {

class CustomerStoreTest : public CustomerDatabaseTest {
 protected:
  CustomerStore store_{Opening()};
  const std::function<void(int)> no_step_ = [](int) {};
};

TEST_F(CustomerStoreTest, AddsChangesAndRemovesByNumber) {
  EXPECT_TRUE(store_.Add({"B01", "歐陽娜娜", "02-2345-6789", "0912-345-678", "每週三；說「老樣子」"}));
  EXPECT_TRUE(store_.Add({"A01", "王小明", "", "", ""}));
  const std::string other = "B01|歐陽娜娜|02-2345-6789|0912-345-678|每週三；說「老樣子」\n";
  EXPECT_EQ(Customers(), "A01|王小明|||\n" + other);
  EXPECT_FALSE(store_.Add({"a01", "別人", "", "", ""})) << "the database takes both cases of a letter as one";
  EXPECT_FALSE(store_.Replace({"A02", "別人", "", "", ""}).found);
  EXPECT_TRUE(store_.Replace({"A01", "王大明", "1", "2", "3"}).found);
  EXPECT_EQ(Customers(), "A01|王大明|1|2|3\n" + other);
  EXPECT_EQ(store_.Customers().front(), (Customer{"A01", "王大明", "1", "2", "3"}));

  AddRecord("A01", "20021005143012", {"0,25,1,1,2,3,4"});
  AddRecord("B01", "20021005143012", {"0,25,1,1,2,3,4"});
  EXPECT_FALSE(store_.Remove("A01"));
  EXPECT_EQ(Customers() + Tickets("A01"), other);
  EXPECT_NE(Tickets("B01"), "");

  const RowChange change = store_.Replace({"B01", "王小明", "", "", std::string(256, 'x')});
  ASSERT_TRUE(change.found && change.refusal) << "the file has no room for the memo";
  EXPECT_TRUE(change.refusal->Outcome().starts_with("舊資料已刪除,新資料沒有存入"));
  EXPECT_EQ(change.refusal->Kind(), Fault::kTextTooLong);
  EXPECT_EQ(Customers(), "");
}

TEST(CustomerStatements, RefuseAQuoteWhereverATextGoesIn) {
  const std::string quote = "x' OR 'a'='a";
  const auto refused = [](auto statement, const auto&... values) {
    return Refusal("檢查要存的資料", [&] { statement(values...); }) == Fault::kExplained;
  };
  for (auto* const of_number : {SelectCustomer, DeleteCustomer, DeletePurchases, SelectRecords}) {
    EXPECT_TRUE(refused(of_number, quote));
  }
  for (auto* const of_record : {SelectRecord, DeleteRecord}) {
    EXPECT_TRUE(refused(of_record, quote, "1") && refused(of_record, "1", quote));
  }
  EXPECT_TRUE(refused(InsertTicket, quote, "1", StoredTicket{}) && refused(InsertTicket, "1", quote, StoredTicket{}));
  for (auto field : {&Customer::number, &Customer::name, &Customer::tel1, &Customer::tel2, &Customer::memo}) {
    Customer quoted;
    quoted.*field = quote;
    EXPECT_TRUE(refused(InsertCustomer, quoted));
  }
  for (const CheckScope& scope : {CheckScope{quote, {}}, CheckScope{"1", quote}}) {
    EXPECT_TRUE(refused(SelectWinners, 0, std::array<std::string, 4>{"1", "2", "3", "4"}, scope));
  }
  for (const std::string digit : {"", "4 OR 1=1"}) {
    EXPECT_TRUE(refused(SelectWinners, 0, std::array<std::string, 4>{"1", "2", "3", digit}, CheckScope{}));
  }
}

TEST_F(CustomerStoreTest, SavesTheTickedKindsUnderOneStampAndTakesThemBack) {
  // A three-digit list has no fourth column, whatever its cell holds; an empty cell is 0.
  CurrentList list = test::Lists({{0, "1234 5678"}, {3, "1126 1_3"}, {4, ""}});
  list.kinds[1].tickets = test::Tickets("9999");
  list.kinds[3].amount = 1250;
  std::vector<int> steps;
  const std::string stamp = store_.Save("A02", TicketsToStore(list), [&steps](int stored) { steps.push_back(stored); });
  EXPECT_EQ(steps, (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(stamp.size(), 14U);
  std::string expected;
  for (const char* ticket : {"0|25|1|1|2|3|4", "0|25|2|5|6|7|8", "3|1250|1|1|1|2|0", "3|1250|2|1|0|3|0"}) {
    expected += stamp + "|" + ticket + "\n";
  }
  EXPECT_EQ(Tickets("A02"), expected);
  const auto stopped = [&] { store_.Save("A03", {{0, 25, 1, {}}, {0, 25, 2, {}}}, [](int) { throw 1; }); };
  EXPECT_THROW(stopped(), int);
  EXPECT_EQ(std::ranges::count(Tickets("A03"), '\n'), 1) << "what ran is on the disk";

  PurchaseRecord record = store_.Record("A02", stamp, no_step_);
  const std::optional<CurrentList> back = ListOfRecord(record);
  ASSERT_TRUE(back);
  EXPECT_EQ(test::Text(*back, 0) + "/" + test::Text(*back, 1) + "/" + test::Text(*back, 3), "1234 5678//112 103");
  EXPECT_EQ(TicketsToStore(*back), TicketsToStore(list));
  EXPECT_FALSE(back->kinds[1].ticked || back->kinds[4].ticked);
  EXPECT_FALSE(ListOfRecord({}));
  for (const RecordTicket& odd : {RecordTicket{"3", "30", {"1", "2", "3", "4"}},
                                  {"3", "50", {"1", "2", "3", "4"}},
                                  {"3", "25", {"1", "2", "3", ""}},
                                  {"3", "25", {"1", "2", "-1", "4"}},
                                  {"3", "25", {"11", "2", "3", "4"}}}) {
    record[0] = {{"1", "25", {"1", "2", "3", "4"}}, odd};
    EXPECT_FALSE(ListOfRecord(record)) << odd.amount << ' ' << odd.digits[3];
    record[0] = {{"1", "30", {"1", "2", "3", "4"}}};
    EXPECT_FALSE(ListOfRecord(record)) << "no such amount can be chosen";
  }
}

TEST_F(CustomerStoreTest, ListsReadsAndRemovesRecords) {
  AddRecord("A01", "20021005143012",
            {"2,50,1,1,2,3,0", "0,25,2,5,6,7,8", "0,25,1,1,2,3,4", "1,NULL,1,1,1,1,0", "3,75,1,4,5,6,0",
             "4,0.5,1,7,8,9,0", "9,25,1,9,9,9,9"});
  AddRecord("A01", "20021006090000", {"4,25,1,1,2,0,0"});
  AddRecord("A01", "", {"0,25,1,0,0,0,0"});
  AddRecord("A02", "20021006090000", {"0,25,1,1,2,3,4"});
  const std::vector<RecordSummary> both = {{"20021005143012", 7}, {"20021006090000", 1}};
  EXPECT_EQ(store_.RecordsOf("A01"), both);

  int read = 0;
  const PurchaseRecord record = store_.Record("A01", "20021005143012", [&read](int count) { read = count; });
  EXPECT_EQ(read, 7);
  const PurchaseRecord expected = {{{{"1", "25", {"1", "2", "3", "4"}}, {"2", "25", {"5", "6", "7", "8"}}},
                                    {{"1", "", {"1", "1", "1", "0"}}},
                                    {{"1", "50", {"1", "2", "3", "0"}}},
                                    {{"1", "75", {"4", "5", "6", "0"}}},
                                    {{"1", "0.5", {"7", "8", "9", "0"}}}}};
  EXPECT_EQ(record, expected);
  EXPECT_EQ(SumText(record), "合計 6 張，175.5 元");
  EXPECT_EQ(SumText({}), "");

  store_.RemoveRecord("A01", "20021006090000");
  EXPECT_EQ(store_.RecordsOf("A01"), std::vector(1, both[0]));
  EXPECT_EQ(Tickets("A01").find("20021006"), std::string::npos);
  EXPECT_NE(Tickets("A02"), "");
}

TEST_F(CustomerStoreTest, FindsWinnersOfARecordACustomerOrAll) {
  // Against 1234: what wins stands first in each pair; the last digit that counts makes the other one lose.
  AddRecord("A02", "20021005143012", {"0,50,1,1,2,3,4", "0,50,2,1,2,3,5", "1,25,1,1,2,3,9", "1,25,2,1,2,4,9"});
  AddRecord("A02", "20021006090000", {"2,0.5,1,2,3,4,0", "2,25,2,2,3,5,0", "3,25,1,1,2,9,9", "3,25,2,1,3,9,9"});
  AddRecord("A01", "20021006090000", {"4,NULL,1,3,4,9,9", "4,25,2,3,5,9,9", "0,25,1,1,2,3,4", "0,25,2,1,2,3,4"});
  const auto winners = [this](const CheckScope& scope) {
    std::string lines;
    for (const Winner& winner : store_.Winners({"1", "2", "3", "4"}, scope)) {
      lines += PrizeLine(winner) + "\n";
    }
    return lines;
  };
  const std::string of_record = "A02 後三彩中獎 250 元 !!\nA02 前對彩中獎 1000 元 !!\n";
  const std::string of_customer = "A02 正彩中獎 250000 元 !!\nA02 前三彩中獎 12500 元 !!\n" + of_record;
  EXPECT_EQ(winners({"A02", "20021006090000"}), of_record) << "another customer has one of the same stamp";
  EXPECT_EQ(winners({"A02", {}}), of_customer);
  const std::string straight = "A01 正彩中獎 125000 元 !!\n";
  EXPECT_EQ(winners({}), straight + straight + of_customer + "A01 後對彩中獎 0 元 !!\n");
}

TEST_F(CustomerStoreTest, ABackupIsMadeInUseUnderTheDateAndNeverForTheWorse) {
  const std::filesystem::path stick = folder_.Path() / "隨身碟";
  std::filesystem::create_directory(stick);
  std::ofstream(folder_.Path() / "4Star.ini", std::ios::binary) << "[PRINTER SET]\n";
  const std::filesystem::path encoded = folder_.Path() / "shop.mdb";
  MakeDatabase(encoded, {.encoding_key = 0x12345678});
  CustomerStore store(FileConnectionString(encoded));
  const DayBackup day = BackupOfDay(FileConnectionString(encoded), stick, "20261123203000");
  EXPECT_EQ(day.database.to, stick / "shop-2026-11-23.mdb");
  for (const char* number : {"A01", "A02"}) {
    EXPECT_TRUE(store.Add({number, "王小明", "", "", ""}));
    EXPECT_EQ(Replaces(day), number == std::string("A02"));
    BackUp(day.database, day.settings);
    EXPECT_EQ(CustomerStore(FileConnectionString(day.database.to)).Customers(), store.Customers());
  }
  EXPECT_EQ(std::filesystem::file_size(stick / "4Star-2026-11-23.ini"), 14U);
  // A file with faults, which are only found by looking at all pages, does not take the place of a good copy.
  store.Close();
  std::fstream(encoded, std::ios::in | std::ios::out | std::ios::binary).seekp(4096) << std::string(4096, '\xAA');
  EXPECT_THROW(BackUp(day.database, day.settings), FileError);
  EXPECT_EQ(CustomerStore(FileConnectionString(day.database.to)).Customers().size(), 2U);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(stick), {}), 2);
}

TEST(FindCustomer, GoesRoundOnceThroughAllThatMatch) {
  const std::vector<Customer> customers = {{"A01", "王小明", "02-2345-6789", "", "99"},
                                           {"a02", "陳ａ", "", "(09) 12-345 678", ""},
                                           {"B03", "小王", "", "", "王"}};
  // A part, the rows of the first three matches from the first row on, and those backwards from the row before it.
  std::istringstream cases(
      "王 020 202 A0 010 101 b03 222 222 王小 000 000 Ａ 111 111 2-2345 000 000 0912345 111 111 234-5 010 101");
  for (std::string part, forwards, backwards; cases >> part >> forwards >> backwards;) {
    for (const int step : {1, -1}) {
      std::string rows;
      std::optional<int> row = FindCustomer(customers, part, step == 1 ? 0 : -1, step);
      for (int i = 0; row && i < 3; ++i, row = FindCustomer(customers, part, *row + step, step)) {
        rows += std::to_string(*row);
      }
      EXPECT_EQ(rows, step == 1 ? forwards : backwards) << part;
    }
  }
  for (const char* part : {"99", "-", "A01 ", ""}) {
    EXPECT_FALSE(FindCustomer(customers, part, 0, 1)) << part;
  }
  EXPECT_FALSE(FindCustomer({}, "A", 0, 1));
}

TEST(RecordLine, IsReadBackAsItsStamp) {
  // A stamp, its line without the count, and the stamp that is read back.
  std::istringstream cases(
      "20021005143012 2002/10/05-14:30:12 20021005143012 021005143012 0002/10/05-14:30:12 00021005143012 "
      "0020021005143012 2002/10/05-14:30:12 20021005143012 120021005143012 12002/10/05-14:30:12 120021005143012 "
      "一二三四五六七八九十一二三四五六七八九十 一二三四五六七八九十一二三四五六七八九十 "
      "一二三四五六七八九十一二三四五六七八九十");
  for (std::string stamp, line, read; cases >> stamp >> line >> read;) {
    EXPECT_EQ(RecordLine({stamp, 12}), line + "    12張");
    EXPECT_EQ(StampOfLine(line + "    12張"), read);
  }
  EXPECT_EQ(RecordLine({"", 123456}), "0000/00/00-00:00:00 123456張");
  EXPECT_EQ(StampOfLine("  早上的記錄  ") + StampOfLine("") + StampOfLine("   "), "早上的記錄");
}

}  // namespace
}  // namespace marlevo
