// The largest expansion there is: all kinds, all ten columns full, 23,000 tickets. The yardstick walks the same choices
// with a flag per number and writes the digits of every ticket into one flat buffer.
#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "board/expansion.h"
#include "support/yardstick.h"

namespace {

using marlevo::CurrentList;
using marlevo::Selection;

Selection Full() {
  Selection picks;
  picks.kinds.fill(true);
  picks.columns.fill(0x3FF);
  return picks;
}

class BareWalk {
 public:
  explicit BareWalk(const Selection& picks) {
    for (std::size_t column = 1; column <= 11; ++column) {
      for (std::size_t digit = 0; digit < 10; ++digit) {
        if ((picks.columns[std::min<std::size_t>(column, 10) - 1] >> digit & 1) != 0) {
          digits_[column].push_back(digit);
        }
      }
    }
  }

  // Returns how many bytes were written.
  std::size_t Run() {
    seen_three_.fill(false);
    seen_four_.fill(false);
    end_ = buffer_.data();
    for (std::size_t a = 1; a <= 8; ++a) {
      for (std::size_t b = a + 1; b <= 9; ++b) {
        for (std::size_t c = b + 1; c <= 10; ++c) {
          for (std::size_t d = c + 1; d <= 11; ++d) {
            Cross(digits_[a], digits_[b], digits_[c], digits_[d]);
          }
        }
      }
    }
    return static_cast<std::size_t>(end_ - buffer_.data());
  }

 private:
  using Digits = std::vector<std::size_t>;

  void Cross(const Digits& first, const Digits& second, const Digits& third, const Digits& fourth) {
    for (const std::size_t x : first) {
      for (const std::size_t y : second) {
        for (const std::size_t z : third) {
          const std::size_t three = 100 * x + 10 * y + z;
          if (!seen_three_[three]) {
            seen_three_[three] = true;
            for (int kind = 0; kind < 3; ++kind) {
              Write({x, y, z});
            }
          }
          for (const std::size_t w : fourth) {
            bool& seen = seen_four_[10 * three + w];
            if (!seen) {
              seen = true;
              Write({x, y, z, w});
              Write({x, y, z, w});
            }
          }
        }
      }
    }
  }

  template <std::size_t count>
  void Write(const std::size_t (&digits)[count]) {
    for (const std::size_t digit : digits) {
      *end_++ = static_cast<char>('0' + digit);
    }
  }

  std::array<Digits, 12> digits_;
  std::array<bool, 1000> seen_three_{};
  std::array<bool, 10000> seen_four_{};
  std::array<char, 2 * 40000 + 3 * 3000> buffer_{};
  char* end_ = nullptr;
};

void PrintMemory(const Selection& picks) {
  CurrentList list;
  marlevo::ExpandTickets(picks, list);
  std::size_t tickets = 0;
  std::size_t bytes = 0;
  for (const marlevo::KindList& kind : list.kinds) {
    tickets += kind.tickets.size();
    bytes += kind.tickets.capacity() * sizeof(marlevo::Ticket);
  }
  std::printf("memory: sizeof(Ticket) %zu, %zu tickets in %zu bytes, %.2f a ticket (limit 16)\n",
              sizeof(marlevo::Ticket), tickets, bytes, static_cast<double>(bytes) / static_cast<double>(tickets));
}

}  // namespace

int main() {
  const Selection full = Full();
  CurrentList list;
  BareWalk walk(full);
  marlevo::bench::YardstickTable table;
  table.Row("largest expansion",
            {.prepare = [&] { list = {}; },
             .run =
                 [&] {
                   marlevo::ExpandTickets(full, list);
                   marlevo::bench::KeepResult(list);
                 }},
            {.prepare = {}, .run = [&] { marlevo::bench::KeepResult(walk.Run()); }}, 1.5);
  PrintMemory(full);
  return table.ExitStatus();
}
