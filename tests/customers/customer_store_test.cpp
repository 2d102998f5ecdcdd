#include "customers/customer_store.h"

#include <algorithm>
#include <fstream>
#include <tuple>

#include "customer_database.h"
#include "customers/customer_search.h"
#include "customers/day_backup.h"
#include "platform/access/database/database.h"
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
  // The database takes both cases of a letter as one.
  EXPECT_FALSE(store_.Add({"a01", "別人", "", "", ""}));
  EXPECT_FALSE(store_.Replace({"A02", "別人", "", "", ""}).found);
  EXPECT_TRUE(store_.Replace({"A01", "王大明", "1", "2", "3"}).found);
  EXPECT_EQ(Customers(), "A01|王大明|1|2|3\n" + other);
  EXPECT_EQ(store_.Customers().front(), (Customer{"A01", "王大明", "1", "2", "3"}));

  AddRecord("A01", "20021005143012", {"0,25,1,1,2,3,4"});
  AddRecord("B01", "20021005143012", {"0,25,1,1,2,3,4"});
  EXPECT_FALSE(store_.Remove("A01"));
  EXPECT_FALSE(store_.Has("A01"));
  EXPECT_EQ(Customers(), other);
  EXPECT_EQ(Tickets("A01"), "");
  EXPECT_NE(Tickets("B01"), "");
}

TEST_F(CustomerStoreTest, ARefusedChangeHasDeletedTheCustomer) {
  const std::string long_text(256, 'x');
  for (const std::string& memo : {std::string("it's"), long_text}) {
    EXPECT_TRUE(store_.Add({"A01", "王小明", "", "", ""}));
    const RowChange change = store_.Replace({"A01", "王小明", "", "", memo});
    ASSERT_TRUE(change.found && change.refusal);
    EXPECT_TRUE(change.refusal->Outcome().starts_with("舊資料已刪除,新資料沒有存入"));
    EXPECT_EQ(change.refusal->Kind(), memo == long_text ? Fault::kTextTooLong : Fault::kExplained);
    EXPECT_EQ(Customers(), "");
  }
}

TEST_F(CustomerStoreTest, AQuoteIsRefusedAndMeansNobody) {
  AddCustomer({"A01", "王小明", "", "", ""});
  AddRecord("A01", "20021005143012", {"0,25,1,1,2,3,4"});
  const std::string before = Customers() + Tickets("A01");
  const std::string quote = "x' OR 'a'='a";
  const Customer quoted{quote, "", "", "", ""};
  const Customer of_quoted_memo{"A02", "", "", "", quote};
  const std::vector<StoredTicket> ticket{{0, 25, 1, {}}};
  const auto refuses = [](const auto& call) { return Refusal("組成資料庫指令", call) == Fault::kExplained; };
  EXPECT_TRUE(refuses([&] { store_.Has(quote); }));
  EXPECT_TRUE(refuses([&] { store_.Add(of_quoted_memo); }));
  EXPECT_TRUE(refuses([&] { std::ignore = store_.Replace(quoted); }));
  EXPECT_TRUE(refuses([&] { std::ignore = store_.Remove(quote); }));
  EXPECT_TRUE(refuses([&] { store_.RecordsOf(quote); }));
  EXPECT_TRUE(refuses([&] { store_.Record("A01", quote, no_step_); }));
  EXPECT_TRUE(refuses([&] { store_.RemoveRecord(quote, "20021005143012"); }));
  EXPECT_TRUE(refuses([&] { store_.RemoveRecord("A01", quote); }));
  EXPECT_TRUE(refuses([&] { store_.Save(quote, ticket, no_step_); }));
  const std::array<std::string, 4> drawn = {"1", "2", "3", "4"};
  for (const CheckScope& scope : {CheckScope{quote, {}}, CheckScope{"A01", quote}}) {
    EXPECT_TRUE(refuses([&] { store_.Winners(drawn, scope); }));
  }
  for (const std::string digit : {"", "4 OR 1=1"}) {
    EXPECT_TRUE(refuses([&] { store_.Winners({"1", "2", "3", digit}, {}); }));
  }
  EXPECT_EQ(Customers() + Tickets("A01"), before);
}

TEST_F(CustomerStoreTest, SavesEveryTicketOfTheTickedKindsUnderOneStamp) {
  // A three-digit list has no fourth column, whatever its cell holds; an empty cell is 0.
  CurrentList list = test::Lists({{0, "1234 5678"}, {3, "1126 1_3"}, {4, ""}});
  list.kinds[1].tickets = test::Tickets("9999");
  list.kinds[3].amount = 1250;
  std::vector<int> steps;
  store_.Save("A02", TicketsToStore(list), [&steps](int stored) { steps.push_back(stored); });
  EXPECT_EQ(steps, (std::vector<int>{1, 2, 3, 4}));
  const std::string stamp = Tickets("A02").substr(0, 14);
  std::string expected;
  for (const char* ticket : {"0|25|1|1|2|3|4", "0|25|2|5|6|7|8", "3|1250|1|1|1|2|0", "3|1250|2|1|0|3|0"}) {
    expected += stamp + "|" + ticket + "\n";
  }
  EXPECT_EQ(Tickets("A02"), expected);
}

TEST_F(CustomerStoreTest, ARefusedTicketLeavesThoseBeforeIt) {
  // A file of another maker, in which sequence numbers go to 255.
  std::vector<access::TableSchema> tables = NewTables();
  tables[2].columns[4].type = access::ColumnType::kByte;
  store_.Close();
  std::filesystem::remove(file_);
  access::Database::Create(file_, "qorvat", tables);
  CustomerStore store(Opening());
  const auto save = [&] { store.Save("A01", {{0, 25, 1, {}}, {0, 25, 255, {}}, {0, 25, 256, {}}}, no_step_); };
  EXPECT_EQ(Refusal("執行資料庫指令", save), Fault::kNumber);
  EXPECT_EQ(std::ranges::count(Tickets("A01"), '\n'), 2);
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

TEST_F(CustomerStoreTest, ARecordIsTakenBackAsTheListThatWasSaved) {
  CurrentList list = test::Lists({{0, "1234 5678"}, {3, "126 103"}});
  list.kinds[3].amount = 1250;
  const std::string stamp = store_.Save("A01", TicketsToStore(list), no_step_);
  EXPECT_EQ(store_.RecordsOf("A01"), std::vector(1, RecordSummary{stamp, 4}));
  const std::optional<CurrentList> back = ListOfRecord(store_.Record("A01", stamp, no_step_));
  ASSERT_TRUE(back);
  for (int kind = 0; kind < kBetKinds; ++kind) {
    EXPECT_EQ(back->kinds[kind].ticked, list.kinds[kind].ticked);
    EXPECT_EQ(back->kinds[kind].tickets, list.kinds[kind].tickets);
    EXPECT_EQ(back->kinds[kind].amount, list.kinds[kind].amount);
  }
  EXPECT_FALSE(ListOfRecord({}));
  for (const RecordTicket& odd : {RecordTicket{"1", "30", {"1", "2", "3", "4"}},
                                  {"1", "", {"1", "2", "3", "4"}},
                                  {"1", "50", {"1", "2", "3", "4"}},
                                  {"1", "25", {"1", "2", "3", ""}},
                                  {"1", "25", {"1", "2", "-1", "4"}},
                                  {"1", "25", {"11", "2", "3", "4"}}}) {
    PurchaseRecord record;
    record[0] = {{"1", "25", {"1", "2", "3", "4"}}, odd};
    EXPECT_FALSE(ListOfRecord(record)) << odd.amount << ' ' << odd.digits[3];
  }
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

TEST_F(CustomerStoreTest, KnowsHowMuchTheFileTakes) {
  EXPECT_EQ(store_.MostCharacters(CustomerField::kNumber), 50U);
  EXPECT_EQ(store_.MostCharacters(CustomerField::kMemo), 255U);
  const std::filesystem::path old_file = folder_.Path() / "jet3.mdb";
  MakeDatabase(old_file, {.version = 3, .code_page = 950});
  CustomerStore old(FileConnectionString(old_file));
  std::string name;
  for (int i = 0; i < 50; ++i) {
    name += "王";
  }
  for (CustomerStore* store : {&store_, &old}) {
    EXPECT_TRUE(store->RoomIn(CustomerField::kName)(name));
    EXPECT_EQ(store->RoomIn(CustomerField::kName)(name + "x"), store == &store_);
    EXPECT_TRUE(store->Add({"A01", name, "", "", ""}));
  }
}

TEST(FindCustomer, GoesRoundOnceThroughAllThatMatch) {
  const std::vector<Customer> customers = {{"A01", "王小明", "02-2345-6789", "", "99"},
                                           {"a02", "陳ａ", "", "(09) 12-345 678", ""},
                                           {"B03", "小王", "", "", "王"}};
  const auto all = [&customers](std::string_view part, int from, int step) {
    std::string rows;
    std::optional<int> row = FindCustomer(customers, part, from, step);
    for (int i = 0; row && i < 3; ++i, row = FindCustomer(customers, part, *row + step, step)) {
      rows += std::to_string(*row);
    }
    return rows;
  };
  EXPECT_EQ(all("王", 0, 1), "020");
  EXPECT_EQ(all("王", 1, 1), "202");
  EXPECT_EQ(all("王", 1, -1), "020");
  EXPECT_EQ(all("王", -1, -1), "202");
  const std::pair<const char*, const char*> cases[] = {
      {"A0", "010"},     {"b03", "222"}, {"王小", "000"}, {"Ａ", "111"}, {"2-2345", "000"}, {"0912345", "111"},
      {"2 34-5", "010"}, {"99", ""},     {"-", ""},       {"A01 ", ""},  {"", ""}};
  for (const auto& [part, rows] : cases) {
    EXPECT_EQ(all(part, 0, 1), rows) << part;
  }
  EXPECT_FALSE(FindCustomer({}, "A", 0, 1));
}

TEST(RecordLine, IsReadBackAsItsStamp) {
  const std::pair<const char*, const char*> cases[] = {
      {"20021005143012", "2002/10/05-14:30:12    12張"},
      {"021005143012", "0002/10/05-14:30:12    12張"},      // filled from the right
      {"0020021005143012", "2002/10/05-14:30:12    12張"},  // as a number it has no leading zeros
      {"120021005143012", "12002/10/05-14:30:12    12張"},
      {"", "0000/00/00-00:00:00    12張"},
      {"afternoon", "afternoon    12張"}};
  for (const auto& [stamp, line] : cases) {
    EXPECT_EQ(RecordLine({stamp, 12}), line) << stamp;
  }
  EXPECT_EQ(RecordLine({"20021005143012", 123456}), "2002/10/05-14:30:12 123456張");

  const std::pair<const char*, const char*> ways_back[] = {
      {"2002/10/05-14:30:12    12張", "20021005143012"},
      {"12002/10/05-14:30:12    12張", "120021005143012"},
      {"  早上的記錄  ", "早上的記錄"},
      {"一二三四五六七八九十一二三四五六七八九十張", "一二三四五六七八九十一二三四五六七八九十"},
      {"", ""},
      {"   ", ""}};
  for (const auto& [line, stamp] : ways_back) {
    EXPECT_EQ(StampOfLine(line), stamp) << line;
  }
}

TEST_F(CustomerStoreTest, ABackupIsMadeInUseUnderTheDateAndReadBack) {
  EXPECT_TRUE(store_.Add({"A01", "王小明", "", "", ""}));
  const std::filesystem::path stick = folder_.Path() / "隨身碟";
  std::filesystem::create_directory(stick);
  std::ofstream(folder_.Path() / "4Star.ini") << "[PRINTER SET]\n";
  const DayBackup day = BackupOfDay(Opening(), stick, "20261123203000");
  EXPECT_FALSE(Replaces(day));
  BackUp(day.database, day.settings);
  EXPECT_TRUE(Replaces(day));
  const std::filesystem::path copy = stick / "4star-2026-11-23.mdb";
  EXPECT_EQ(CustomerStore(FileConnectionString(copy)).Customers(), store_.Customers());
  EXPECT_EQ(std::filesystem::file_size(stick / "4Star-2026-11-23.ini"), 14U);

  // A database with faults does not take the place of a good copy.
  store_.Close();
  std::fstream(file_, std::ios::in | std::ios::out | std::ios::binary).seekp(2 * 4096) << std::string(4096, '\xAA');
  EXPECT_THROW(BackUp(day.database, day.settings), FileError);
  EXPECT_EQ(CustomerStore(FileConnectionString(copy)).Customers().size(), 1U);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(stick), {}), 2);
}

}  // namespace
}  // namespace marlevo
