#include "platform/base/text.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace marlevo {
namespace {

TEST(LenientNumber, TakesTheLongestNumericPrefix) {
  const std::pair<const char*, double> cases[] = {
      {"", 0},     {"abc", 0}, {"  12", 12},   {"\t-3.5", -3.5}, {"3abc", 3},         {"3 4", 3}, {"1270 = 5", 1270},
      {".5", 0.5}, {"5.", 5},  {"1.2.3", 1.2}, {"+7", 7},        {"- 7", 0},          {"--7", 0}, {"1e3", 1},
      {"0x10", 0}, {"inf", 0}, {"nan", 0},     {"1,5", 1},       {"\xEF\xBC\x95", 0}, {"007", 7}, {".", 0},
      {"-", 0},    {"\n5", 0}};
  for (const auto& [text, number] : cases) {
    EXPECT_EQ(LenientNumber(text), number) << '"' << text << '"';
  }
  EXPECT_EQ(LenientNumber(std::string(400, '9')), std::numeric_limits<double>::max());
  EXPECT_EQ(LenientNumber("0." + std::string(400, '0') + "1"), 0);
}

TEST(LenientInteger, RoundsHalvesToEvenAndStaysInRange) {
  const std::pair<const char*, int> cases[] = {
      {"0.5", 0}, {"1.5", 2}, {"2.5", 2}, {"-0.5", 0}, {"0.4", 0}, {"99999999999", std::numeric_limits<int>::max()}};
  for (const auto& [text, number] : cases) {
    EXPECT_EQ(LenientInteger(text), number) << text;
  }
}

TEST(NumberText, NeverUsesAnExponent) {
  const std::pair<double, const char*> cases[] = {
      {12500000, "12500000"}, {1e21, "1000000000000000000000"}, {0.1, "0.1"}, {-3, "-3"}, {0, "0"}, {-0.0, "0"}};
  for (const auto& [number, text] : cases) {
    EXPECT_EQ(NumberText(number), text);
  }
}

}  // namespace
}  // namespace marlevo
