#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <set>
#include <sstream>

#include "board/expansion.h"
#include "support/ticket_text.h"

namespace marlevo {
namespace {

using test::Text;

// Kinds as digits; a word a column, '-' an empty one: Picks("02", "01 2 3 -").
Selection Picks(const std::string& kinds, const std::string& columns) {
  Selection picks;
  for (const char kind : kinds) {
    picks.kinds.at(static_cast<std::size_t>(kind - '0')) = true;
  }
  std::istringstream words(columns);
  int column = 1;
  for (std::string word; words >> word; ++column) {
    for (const char digit : word) {
      if (digit != '-') {
        picks.Pick(column, digit - '0');
      }
    }
  }
  return picks;
}

TEST(Selection, IsCheckedBeforeItIsExpanded) {
  const struct {
    const char* kinds;
    const char* columns;
    int code;
  } cases[] = {{"", "1 2 3 4", 1},  {"0", "1 2 3 -", 2}, {"1", "- 2 3 4", 2},  {"02", "1 2", 2},
               {"2", "1 2", 3},     {"3", "1 - 3 4", 3}, {"4", "- 2 3 4", 3},  {"4", "1 2 - 4 5 6", 3},
               {"234", "1 2 3", 0}, {"4", "1 2 3 4", 0}, {"01", "1 2 3 4", 0}, {"0", "1 2 3 - 5 6 7", 2}};
  for (const auto& [kinds, columns, code] : cases) {
    EXPECT_EQ(CheckSelection(Picks(kinds, columns)), code) << kinds << ": " << columns;
  }
  for (const int code : {3, 4, 5, 6}) {
    EXPECT_EQ(SelectionMessage(code), "選擇三星玩法\r\n一 二 三排需要有號碼");
  }
  EXPECT_EQ(SelectionMessage(7), "不可預知的錯誤");
}

// The expansion straight from its rule, without any shortcut; `columns` from 1, the digits of each as text.
std::string SlowExpansion(const std::array<std::string, 12>& columns, std::size_t digits) {
  std::string tickets;
  std::set<std::string> seen;
  const auto append = [&](const std::string& number) {
    if (number.size() == digits && seen.insert(number).second) {
      tickets += (tickets.empty() ? "" : " ") + number;
    }
  };
  for (std::size_t a = 1; a <= 8; ++a) {
    for (std::size_t b = a + 1; b <= 9; ++b) {
      for (std::size_t c = b + 1; c <= 10; ++c) {
        for (std::size_t d = c + 1; d <= 11; ++d) {
          for (const char x : columns[a]) {
            for (const char y : columns[b]) {
              for (const char z : columns[c]) {
                append({x, y, z});
                for (const char w : columns[d]) {
                  append({x, y, z, w});
                }
              }
            }
          }
        }
      }
    }
  }
  return tickets;
}

TEST(Expansion, MatchesTheSlowWalkForRandomPicks) {
  std::mt19937 random(20240607);
  for (int round = 0; round < 60; ++round) {
    Selection picks;
    std::array<std::string, 12> columns;
    for (int column = 1; column <= (round % 2 == 0 ? 10 : 5); ++column) {
      for (int digit = 0; digit < 10; ++digit) {
        if (round == 0 || std::bernoulli_distribution(round % 6 / 10.0)(random)) {
          picks.Pick(column, digit);
          columns[static_cast<std::size_t>(column)] += std::to_string(digit);
        }
      }
    }
    columns[11] = columns[10];
    std::ranges::generate(picks.kinds, [&] { return random() % 2 == 0; });
    CurrentList list = test::Lists({{0, "9999"}, {4, "999"}});  // what was there before is gone afterwards
    const TicketCounts counts = ExpandTickets(picks, list);
    for (std::size_t kind = 0; kind < kBetKinds; ++kind) {
      const std::string slow = picks.kinds[kind] ? SlowExpansion(columns, kind < 2 ? 4 : 3) : "";
      ASSERT_EQ(Text(list, static_cast<int>(kind)), slow) << "round " << round;
      ASSERT_EQ(counts[kind], static_cast<int>(list.kinds[kind].tickets.size()));
      ASSERT_EQ(list.kinds[kind].ticked, picks.kinds[kind]);
    }
  }
}

TEST(Orderings, ComeOnceEachInFirstMadeOrder) {
  CurrentList list = test::Lists({{1, "9999"}});
  ExpandOrderings(Picks("01234", "1 1 2 3 9"), list);
  EXPECT_EQ(Text(list, 0), "1123 1132 1312 1321 1231 1213 2113 2131 2311 3121 3112 3211");
  EXPECT_EQ(Text(list, 2), "112 121 211");
  EXPECT_EQ(Text(list, 1) + Text(list, 3) + Text(list, 4), "");
  ExpandOrderings(Picks("2", "07 0 5"), list);
  EXPECT_EQ(Text(list, 2), "070 007 700");
  EXPECT_EQ(Text(list, 0), "");
  ExpandOrderings(Picks("0", "1 2 3 4"), list);
  EXPECT_EQ(Text(list, 0),
            "1234 1243 1423 1432 1342 1324 2134 2143 2413 2431 2341 2314 "
            "3214 3241 3421 3412 3142 3124 4231 4213 4123 4132 4312 4321");
}

}  // namespace
}  // namespace marlevo
