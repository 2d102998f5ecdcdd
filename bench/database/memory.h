// What this process takes in memory, as Linux counts it.
#pragma once

#include <fstream>
#include <string>

namespace marlevo::bench {

// "VmRSS" now, "VmHWM" at most so far.
inline double MemoryMiB(const std::string& kind) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word == kind + ":") {
      double kib = 0;
      status >> kib;
      return kib / 1024;
    }
  }
  return 0;
}

}  // namespace marlevo::bench
