#include "filters/filters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>

#include "support/ticket_text.h"

namespace marlevo {
namespace {

using test::Lists;
using test::Text;

using Filter = void (*)(CurrentList&);
constexpr Filter kFilters[] = {DeleteAllOdd,    DeleteAllEven, DeleteAllSame,
                               DeleteThreeSame, DeleteTwoSame, DeleteRepeats};

TEST(Filters, RefuseAValueThatNoDigitsHave) {
  for (const char* no_digits : {":000", "/000"}) {
    CurrentList list = Lists({{0, no_digits}});
    EXPECT_THROW(DeleteRepeats(list), std::out_of_range) << no_digits;
  }
}

// Whether a filter, counted from 1, removes a ticket: straight from the rule of the filter. '_' is an empty cell.
bool Matches(int filter, int kind, std::string cells, std::set<int>& seen) {
  const auto columns = std::ssize(cells);
  const auto equal_to = [&](std::size_t k) {
    return std::ranges::count_if(cells, [&](char cell) { return cell != '_' && cell == cells[k - 1]; });
  };
  switch (filter) {
    case 1:
    case 2:
      return std::ranges::all_of(cells, [&](char cell) { return cell != '_' && cell % 2 == filter % 2; });
    case 3:
      return equal_to(1) == columns;
    case 4:
      return std::max(equal_to(1), equal_to(2)) >= 3;
    case 5:
      return std::max({equal_to(1), equal_to(2), equal_to(3)}) >= 2;
    default:
      std::erase(cells, '_');
      if (IsBoxKind(kind)) {
        std::ranges::sort(cells);
      }
      return !cells.empty() && !seen.insert(std::stoi(cells)).second;
  }
}

void CompareAllFilters(const CurrentList& start) {
  for (int filter = 1; filter <= 6; ++filter) {
    CurrentList list = start;
    kFilters[filter - 1](list);
    std::set<int> seen;
    for (int kind = 0; kind < kBetKinds; ++kind) {
      const auto columns = static_cast<std::size_t>(DigitColumns(kind));
      std::string slow;
      std::istringstream words(Text(start, kind));
      for (std::string word; words >> word;) {
        if (!start.kinds.at(static_cast<std::size_t>(kind)).ticked ||
            !Matches(filter, kind, word.substr(0, columns), seen)) {
          slow += (slow.empty() ? "" : " ") + word;
        }
      }
      ASSERT_EQ(Text(list, kind), slow) << "filter " << filter << " kind " << kind;
    }
  }
}

TEST(Filters, MatchTheSlowVersionOnAllNumbersAndOnRandomLists) {
  std::string fours;
  std::string threes;
  for (int number = 0; number < 10000; ++number) {
    const std::string text = std::to_string(100000 + number);
    fours += text.substr(2) + " ";
    threes += number < 1000 ? text.substr(3) + " " : "";
  }
  for (std::size_t kind = 0; kind < kBetKinds; ++kind) {
    CompareAllFilters(Lists({{kind, kind < 2 ? fours : threes}}));
  }

  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    CurrentList list;
    for (int kind = 0; kind < kBetKinds; ++kind) {
      std::string words;
      for (auto left = random() % 30; left > 0; --left) {
        for (int column = 0; column < DigitColumns(kind); ++column) {
          words += "_0122357"[random() % 8];
        }
        words += std::array{" ", "* ", ". "}[random() % 3];
      }
      list.kinds.at(static_cast<std::size_t>(kind)) = {.ticked = random() % 4 != 0, .tickets = test::Tickets(words)};
    }
    CompareAllFilters(list);
  }
}

}  // namespace
}  // namespace marlevo
