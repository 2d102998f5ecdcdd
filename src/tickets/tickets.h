// The current ticket list: what the board expands, the filters thin out, the printer prints and a save stores. Plain
// values without any window; the grids on the screen are models over them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace marlevo {

// A bet kind is an index 0 to 4, the same in every PerKind of the system.
inline constexpr int kBetKinds = 5;
inline constexpr int kFourStraight = 0;
inline constexpr int kFourBox = 1;
inline constexpr int kThreeStraight = 2;
inline constexpr int kThreeBox = 3;
inline constexpr int kThreePair = 4;

template <typename T>
using PerKind = std::array<T, kBetKinds>;

inline constexpr PerKind<std::string_view> kBetKindNames = {"四星正彩", "四星組彩", "三星正彩", "三星組彩", "三星對彩"};

// The four positions of a number, as the columns of lists and forms are headed.
inline constexpr std::array<std::string_view, 4> kPositionNames = {"第一柱", "第二柱", "第三柱", "第四柱"};

constexpr bool IsFourDigitKind(int kind) {
  return kind == kFourStraight || kind == kFourBox;
}
constexpr bool IsBoxKind(int kind) {
  return kind == kFourBox || kind == kThreeBox;
}
// Digit columns of a kind's list: 4 or 3.
constexpr int DigitColumns(int kind) {
  return IsFourDigitKind(kind) ? 4 : 3;
}

// The stakes that can be chosen for a ticket, in yuan, and the captions of their multipliers. An entry of one belongs
// to the entry of the other in the same position: "x 3" is 3 times 25 yuan.
inline constexpr int kStakes = 11;
inline constexpr std::array<int, kStakes> kAmounts = {25, 50, 75, 100, 125, 150, 200, 250, 300, 500, 1250};
inline constexpr std::array<std::string_view, kStakes> kMultipliers = {"x 1", "x 2", "x 3", "x 4", "x 5", "x 6",
                                                                       "x 8", "x10", "x12", "x20", "x50"};

// The position of an amount in kAmounts; nothing for an amount that cannot be chosen.
constexpr std::optional<int> StakeOf(int amount) {
  for (int stake = 0; stake < kStakes; ++stake) {
    if (kAmounts[stake] == amount) {
      return stake;
    }
  }
  return {};
}

// The colour behind a ticket's digits, set by the instant prize check: yellow for winners, white for all others.
enum class Paint : std::uint8_t { kNone, kWhite, kYellow };

// One ticket. Cell j (from 0) is the digit of column j + 1, '0' to '9'; an empty cell is 0. The fourth cell of a
// three-digit ticket is always empty.
struct Ticket {
  std::array<char, 4> cells{};
  Paint paint = Paint::kNone;

  bool operator==(const Ticket&) const = default;
};

// The value of a cell; an empty one reads as 0.
constexpr int DigitValue(char cell) {
  return cell == 0 ? 0 : cell - '0';
}

// The tickets of one kind in list order. A ticket's sequence number is its position from 1; it is stored nowhere.
using TicketList = std::vector<Ticket>;

struct KindList {
  bool ticked = false;       // the kind takes part
  TicketList tickets;        // may hold tickets although the kind is no longer ticked
  int amount = kAmounts[0];  // the stake of each ticket in yuan
  int multiplier = 0;        // position in kMultipliers; the slip's multiple mark follows it
};

struct CurrentList {
  PerKind<KindList> kinds;
};

}  // namespace marlevo
