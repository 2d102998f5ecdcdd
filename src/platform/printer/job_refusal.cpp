#include "platform/printer/job_refusal.h"

#include <QLibrary>

namespace marlevo {

#ifdef Q_OS_WIN

std::string JobRefusal() {
  return {};
}

#else

std::string JobRefusal() {
  // When Qt prints through CUPS, it has loaded the CUPS library, which keeps the last error of each thread.
  QLibrary cups("cups", 2);
  const auto last_error = reinterpret_cast<int (*)()>(cups.resolve("cupsLastError"));
  const auto last_words = reinterpret_cast<const char* (*)()>(cups.resolve("cupsLastErrorString"));
  if (last_error == nullptr || last_words == nullptr) {
    return {};
  }
  constexpr int kFirstRefusal = 0x0400;  // IPP: client and server errors; below lie the successes
  const int error = last_error();
  if (error >= 0 && error < kFirstRefusal) {
    return {};
  }
  const char* const words = last_words();
  return words == nullptr || *words == 0 ? "IPP " + std::to_string(error) : words;
}

#endif

}  // namespace marlevo
