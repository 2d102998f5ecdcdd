#include "platform/access/bytes/rc4.h"

#include <array>
#include <cstdint>
#include <numeric>
#include <utility>

namespace marlevo::access {

void ApplyRc4(std::span<const std::byte> key, std::span<std::byte> data) {
  std::array<std::uint8_t, 256> state;
  std::iota(state.begin(), state.end(), std::uint8_t{0});
  unsigned j = 0;
  for (std::size_t i = 0; i < state.size(); ++i) {
    j = (j + state[i] + std::to_integer<unsigned>(key[i % key.size()])) % 256;
    std::swap(state[i], state[j]);
  }
  unsigned i = 0;
  j = 0;
  for (std::byte& byte : data) {
    i = (i + 1) % 256;
    j = (j + state[i]) % 256;
    std::swap(state[i], state[j]);
    byte ^= std::byte{state[(state[i] + state[j]) % 256]};
  }
}

}  // namespace marlevo::access
