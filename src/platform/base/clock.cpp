#include "platform/base/clock.h"

#include <array>
#include <ctime>

namespace marlevo {

std::string LocalStamp() {
  const std::time_t now = std::time(nullptr);
  std::array<char, 15> text{};
  std::strftime(text.data(), text.size(), "%Y%m%d%H%M%S", std::localtime(&now));
  return text.data();
}

}  // namespace marlevo
