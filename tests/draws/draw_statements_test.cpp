#include "draws/draw_statements.h"

#include <gtest/gtest.h>

#include "platform/errors/operation_error.h"

namespace marlevo {
namespace {

TEST(DrawStatements, TakeNumbersAsTypedAndNothingElse) {
  EXPECT_EQ(InsertDraw("092001", {"3", "07", "-1", " 4"}),
            "INSERT INTO [NUMERIC] (VOU_NO,NO1,NO2,NO3,NO4) VALUES (092001,3,07,-1, 4)");
  // Each of these would end as a broken statement or, worse, as one that means other draws.
  for (const char* number : {"", " ", "abc", "92001 OR 1=1", "VOU_NO", "1;2", "1--", "1 2", "--1", "1.2.3", ".", "0x10",
                             "1e3", "９２００１", "(1)", "'1'"}) {
    EXPECT_THROW(SelectDraw(number), DatabaseError) << number;
    EXPECT_THROW(DeleteDraw(number), DatabaseError) << number;
    EXPECT_THROW(InsertDraw("92001", {"1", "2", number, "4"}), DatabaseError) << number;
  }
  for (const char* number : {"1", "\t1 ", "+1", "-1", "1.", ".5", "99999999999999999999"}) {
    EXPECT_EQ(SelectDraw(number), std::string("SELECT * FROM [NUMERIC] WHERE VOU_NO=") + number);
  }
}

}  // namespace
}  // namespace marlevo
