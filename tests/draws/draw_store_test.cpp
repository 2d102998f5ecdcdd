#include "draws/draw_store.h"

#include <tuple>

#include "platform/database/database_fixture.h"

namespace marlevo {
namespace {

class DrawStoreTest : public DatabaseFixture {
 protected:
  std::string Stored() const {
    Connection connection = OnDisk();
    return Rows(connection, "SELECT * FROM [NUMERIC] ORDER BY VOU_NO", {"VOU_NO", "NO1", "NO2", "NO3", "NO4"});
  }

  DrawStore store_{Opening()};
};

TEST_F(DrawStoreTest, AddsChangesAndRemovesByValue) {
  EXPECT_TRUE(store_.Add({"92005", {"3", "0", "7", "1"}}));
  EXPECT_TRUE(store_.Add({"092003", {"3", "07", "11", "-1"}}));
  EXPECT_EQ(Stored(), "92003|3|7|11|-1\n92005|3|0|7|1\n");
  EXPECT_FALSE(store_.Add({"092005", {"9", "9", "9", "9"}}));
  EXPECT_FALSE(store_.Replace({"92004", {"9", "9", "9", "9"}}).found);
  EXPECT_FALSE(store_.Remove("92004"));
  EXPECT_TRUE(store_.Replace({"0092005", {"9", "8", "7", "6"}}).found);
  EXPECT_EQ(Stored(), "92003|3|7|11|-1\n92005|9|8|7|6\n");
  EXPECT_EQ(store_.Draws().back(), (Draw{"92005", {"9", "8", "7", "6"}}));
  EXPECT_TRUE(store_.Remove("92003"));
  EXPECT_EQ(Stored(), "92005|9|8|7|6\n");

  for (const char* digit : {"99999999999", "x"}) {
    const RowChange change = store_.Replace({"92005", {"1", "2", "3", digit}});
    EXPECT_TRUE(change.found && change.refusal && !change.refusal->Outcome().empty());
    EXPECT_EQ(Stored(), "");
    EXPECT_TRUE(store_.Add({"92005", {"9", "8", "7", "6"}}));
  }
  EXPECT_EQ(store_.MostDigits(), 10U);
}

TEST_F(DrawStoreTest, TakesNumbersAsTypedAndNothingElse) {
  EXPECT_TRUE(store_.Add({"1", {"1", "2", "3", "4"}}));
  // Each of these would end as a broken statement or, worse, as one that means other draws.
  for (const char* number : {"", " ", "abc", "1 OR 1=1", "VOU_NO", "1;2", "1--", "1 2", "--1", "1.2.3", ".", "0x10",
                             "1e3", "９２００１", "(1)", "'1'"}) {
    const Draw draw{number, {"5", "5", "5", "5"}};
    const Draw bad_digit{"2", {"1", "2", number, "4"}};
    const auto refuses = [](const auto& call) { return Refusal("組成資料庫指令", call) == Fault::kExplained; };
    EXPECT_TRUE(refuses([&] { store_.Add(draw); })) << number;
    EXPECT_TRUE(refuses([&] { std::ignore = store_.Replace(draw); })) << number;
    EXPECT_TRUE(refuses([&] { store_.Remove(number); })) << number;
    EXPECT_TRUE(refuses([&] { store_.Add(bad_digit); })) << number;
  }
  EXPECT_EQ(Stored(), "1|1|2|3|4\n");
  for (const char* number : {"1", "\t1 ", "+1", "1.", "99999999999999999999"}) {
    EXPECT_EQ(SelectDraw(number), std::string("SELECT * FROM [NUMERIC] WHERE VOU_NO=") + number);
  }
}

}  // namespace
}  // namespace marlevo
