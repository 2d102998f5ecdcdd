#include "platform/database/text_order.h"

#include <gtest/gtest.h>

#include <string_view>

namespace marlevo {
namespace {

TEST(CompareText, TakesLettersOfBothCasesAsEqual) {
  const std::string_view pairs[][2] = {{"", ""},   {"A01", "a01"}, {"王小明", "王小明"}, {"Ａｂ", "ａＢ"}, {"É", "é"},
                                       {"Ÿ", "ÿ"}, {"Ω", "ω"},     {"Ж", "ж"},           {"Ⅳ", "ⅳ"},       {"Ⓐ", "ⓐ"}};
  for (const auto& [a, b] : pairs) {
    EXPECT_EQ(CompareText(a, b), 0) << a << ' ' << b;
    EXPECT_TRUE(EqualText(b, a)) << b << ' ' << a;
  }
}

TEST(CompareText, OrdersEverythingElseByCharacterValue) {
  const std::string_view ascending[] = {"",  " ", "10", "2", "_",  "A",  "a ", "ab", "AC",      "B",
                                        "~", "×", "÷",  "ø", "中", "陳", "Ａ", "😀",  "\x80\xff"};
  for (std::size_t i = 0; i < std::size(ascending); ++i) {
    for (std::size_t j = 0; j < std::size(ascending); ++j) {
      const int order = CompareText(ascending[i], ascending[j]);
      EXPECT_EQ(EqualText(ascending[i], ascending[j]), i == j);
      EXPECT_TRUE(i < j ? order < 0 : i > j ? order > 0 : order == 0) << ascending[i] << ' ' << ascending[j];
    }
  }
}

}  // namespace
}  // namespace marlevo
