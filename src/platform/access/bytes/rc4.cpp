#include "platform/access/bytes/rc4.h"

#include <array>
#include <cstdint>
#include <utility>

namespace marlevo::access {

void ApplyRc4(std::span<const std::byte> key, std::span<std::byte> data) {
  std::array<std::uint8_t, 256> state;
  for (std::size_t i = 0; i < state.size(); ++i) {
    state[i] = static_cast<std::uint8_t>(i);
  }
  std::uint8_t j = 0;
  for (std::size_t i = 0; i < state.size(); ++i) {
    j = static_cast<std::uint8_t>(j + state[i] + std::to_integer<std::uint8_t>(key[i % key.size()]));
    std::swap(state[i], state[j]);
  }
  std::uint8_t i = 0;
  j = 0;
  for (std::byte& byte : data) {
    ++i;
    j = static_cast<std::uint8_t>(j + state[i]);
    std::swap(state[i], state[j]);
    byte ^= std::byte{state[static_cast<std::uint8_t>(state[i] + state[j])]};
  }
}

}  // namespace marlevo::access
