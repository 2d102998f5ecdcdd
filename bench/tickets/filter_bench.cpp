// Each filter and the instant check over the largest list, 23,000 tickets. The yardstick of a filter is one bare
// std::remove_if pass with the same predicate over flat digits, that of the check one bare compare pass.
#include <algorithm>
#include <array>
#include <functional>
#include <tuple>
#include <utility>
#include <vector>

#include "board/expansion.h"
#include "filters/filters.h"
#include "filters/instant_check.h"
#include "support/yardstick.h"

namespace {

using marlevo::CurrentList;

// The tickets of the five kinds as bare digits.
using Fours = std::vector<std::array<char, 4>>;
using Threes = std::vector<std::array<char, 3>>;
using FlatLists = std::tuple<Fours, Fours, Threes, Threes, Threes>;

template <std::size_t columns>
void Flatten(const marlevo::TicketList& tickets, std::vector<std::array<char, columns>>& flat) {
  for (const marlevo::Ticket& ticket : tickets) {
    std::copy_n(ticket.cells.begin(), columns, flat.emplace_back().begin());
  }
}

struct Lists {
  CurrentList list;
  FlatLists flat;
};

Lists Largest() {
  marlevo::Selection picks;
  picks.kinds.fill(true);
  picks.columns.fill(0x3FF);
  Lists lists;
  marlevo::ExpandTickets(picks, lists.list);
  Flatten(lists.list.kinds[0].tickets, std::get<0>(lists.flat));
  Flatten(lists.list.kinds[1].tickets, std::get<1>(lists.flat));
  Flatten(lists.list.kinds[2].tickets, std::get<2>(lists.flat));
  Flatten(lists.list.kinds[3].tickets, std::get<3>(lists.flat));
  Flatten(lists.list.kinds[4].tickets, std::get<4>(lists.flat));
  return lists;
}

class Bench {
 public:
  // Measures `filter` beside a remove_if with `predicate(digits, box)`, where `box` tells whether the digits belong to
  // a box kind. `reset` puts a predicate that remembers something back to its start before every round.
  template <typename Predicate>
  void Filter(
      const char* name, void (*filter)(CurrentList&), Predicate predicate, const std::function<void()>& reset = [] {}) {
    CurrentList list;
    FlatLists flat;
    table_.Row(name,
               {.prepare = [&] { list = start_.list; },
                .run =
                    [&] {
                      filter(list);
                      marlevo::bench::KeepResult(list);
                    }},
               {.prepare =
                    [&] {
                      flat = start_.flat;
                      reset();
                    },
                .run =
                    [&] {
                      const auto pass = [&](auto& digits, bool box) {
                        const auto matches = [&](const auto& ticket) { return predicate(ticket, box); };
                        marlevo::bench::KeepResult(std::remove_if(digits.begin(), digits.end(), matches));
                      };
                      pass(std::get<0>(flat), false);
                      pass(std::get<1>(flat), true);
                      pass(std::get<2>(flat), false);
                      pass(std::get<3>(flat), true);
                      pass(std::get<4>(flat), false);
                    }},
               2.0);
  }

  void InstantCheck() {
    CurrentList list = start_.list;
    std::array<std::vector<char>, 5> marks;
    const std::array<char, 4> drawn = {'1', '2', '3', '4'};
    table_.Row("instant check",
               {.prepare = {},
                .run =
                    [&] {
                      marlevo::bench::KeepResult(marlevo::CheckInstantly(list, {1, 2, 3, 4}));
                    }},
               {.prepare = {},
                .run =
                    [&] {
                      const auto pass = [&](const auto& flat, std::vector<char>& winners) {
                        winners.resize(flat.size());
                        std::ptrdiff_t count = 0;
                        for (std::size_t row = 0; row < flat.size(); ++row) {
                          const auto& digits = flat[row];
                          bool wins = digits[0] == drawn[0] && digits[1] == drawn[1] && digits[2] == drawn[2];
                          if constexpr (std::tuple_size_v<std::decay_t<decltype(digits)>> == 4) {
                            wins = wins && digits[3] == drawn[3];
                          }
                          winners[row] = wins ? '*' : '.';
                          count += wins ? 1 : 0;
                        }
                        marlevo::bench::KeepResult(count);
                      };
                      pass(std::get<0>(start_.flat), marks[0]);
                      pass(std::get<1>(start_.flat), marks[1]);
                      pass(std::get<2>(start_.flat), marks[2]);
                      pass(std::get<3>(start_.flat), marks[3]);
                      pass(std::get<4>(start_.flat), marks[4]);
                    }},
               2.0);
  }

  int ExitStatus() const { return table_.ExitStatus(); }

 private:
  const Lists start_ = Largest();
  marlevo::bench::YardstickTable table_;
};

}  // namespace

int main() {
  Bench bench;
  bench.Filter("delete all odd", marlevo::DeleteAllOdd, [](const auto& digits, bool) {
    return std::ranges::all_of(digits, [](char digit) { return digit % 2 != 0; });
  });
  bench.Filter("delete all even", marlevo::DeleteAllEven, [](const auto& digits, bool) {
    return std::ranges::all_of(digits, [](char digit) { return digit % 2 == 0; });
  });
  bench.Filter("delete all same", marlevo::DeleteAllSame,
               [](const auto& digits, bool) { return std::ranges::count(digits, digits[0]) == std::ssize(digits); });
  bench.Filter("delete three same", marlevo::DeleteThreeSame, [](const auto& digits, bool) {
    return std::ranges::count(digits, digits[0]) >= 3 || std::ranges::count(digits, digits[1]) >= 3;
  });
  bench.Filter("delete two same", marlevo::DeleteTwoSame, [](const auto& digits, bool) {
    return std::ranges::count(digits, digits[0]) >= 2 || std::ranges::count(digits, digits[1]) >= 2 ||
           std::ranges::count(digits, digits[2]) >= 2;
  });
  std::array<bool, 10000> seen{};
  bench.Filter(
      "delete repeats", marlevo::DeleteRepeats,
      [&](const auto& digits, bool box) {
        std::array<char, 4> key = {digits[0], digits[1], digits[2]};
        if constexpr (std::tuple_size_v<std::decay_t<decltype(digits)>> == 4) {
          key[3] = digits[3];
        }
        if (box) {
          std::ranges::sort(key);
        }
        std::size_t value = 0;
        for (const char digit : key) {
          value = digit == 0 ? value : 10 * value + static_cast<std::size_t>(digit - '0');
        }
        return std::exchange(seen[value], true);
      },
      [&] { seen.fill(false); });
  bench.InstantCheck();
  return bench.ExitStatus();
}
