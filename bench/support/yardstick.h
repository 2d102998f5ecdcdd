// How every speed figure of this project is taken: the real code and a bare loop that does the least possible work for
// the same result (the yardstick) run in turn in one process; the best time of each counts, so that other programs on
// the machine disturb little. Each row of the table prints both, their ratio and the ratio that it must not pass.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <limits>

namespace marlevo::bench {

// Makes the compiler believe that `value` is looked at and may have been changed here, so that the work that led to the
// value is not optimized away. The memory behind a pointer in `value` counts as looked at, too.
template <class T>
void KeepResult(T&& value) {
  asm volatile("" : : "r"(&value) : "memory");
}

// `prepare` brings back the starting state and is not timed; empty when there is nothing to bring back.
struct Timed {
  std::function<void()> prepare;
  std::function<void()> run;
};

class YardstickTable {
 public:
  YardstickTable() {
    std::printf("%-34s %12s %12s %7s %7s\n", "best of all rounds", "figure us", "yardstick us", "ratio", "limit");
  }

  void Row(const char* name, const Timed& figure, const Timed& yardstick, double limit, int rounds = 200) {
    double best_figure = std::numeric_limits<double>::max();
    double best_yardstick = best_figure;
    for (int round = 0; round < rounds; ++round) {
      best_figure = std::min(best_figure, Microseconds(figure));
      best_yardstick = std::min(best_yardstick, Microseconds(yardstick));
    }
    const double ratio = best_figure / best_yardstick;
    const bool passed = ratio > limit;
    over_ = over_ || passed;
    std::printf("%-34s %12.1f %12.1f %7.2f %7.2f%s\n", name, best_figure, best_yardstick, ratio, limit,
                passed ? "  OVER" : "");
  }

  // A figure that must not pass so many milliseconds, whatever a yardstick would take.
  void WithinMilliseconds(const char* name, const std::function<void()>& run, double limit, int rounds) {
    double best = std::numeric_limits<double>::max();
    for (int round = 0; round < rounds; ++round) {
      best = std::min(best, Microseconds({.prepare = {}, .run = run}) / 1000);
    }
    over_ = over_ || best > limit;
    std::printf("%-34s %9.3f ms, limit %g ms%s\n", name, best, limit, best > limit ? "  OVER" : "");
  }

  // For main(): 1 when any row passed its limit.
  int ExitStatus() const { return over_ ? 1 : 0; }

 private:
  static double Microseconds(const Timed& timed) {
    if (timed.prepare) {
      timed.prepare();
    }
    const auto start = std::chrono::steady_clock::now();
    timed.run();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
  }

  bool over_ = false;
};

}  // namespace marlevo::bench
