// Reading and writing numbers in a page. They are little-endian and need no alignment. These functions check no bounds:
// the caller has checked that the bytes exist.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace marlevo::access {

using MutableBytes = std::span<std::byte>;

static_assert(std::endian::native == std::endian::little, "loads and stores copy the file's byte order");

template <typename Number>
Number Load(const std::byte* at) {
  Number number;
  std::memcpy(&number, at, sizeof number);
  return number;
}

template <typename Number>
void Store(std::byte* at, Number number) {
  std::memcpy(at, &number, sizeof number);
}

inline std::uint8_t LoadU8(const std::byte* at) {
  return std::to_integer<std::uint8_t>(*at);
}
inline std::uint16_t LoadU16(const std::byte* at) {
  return Load<std::uint16_t>(at);
}
inline std::uint32_t LoadU32(const std::byte* at) {
  return Load<std::uint32_t>(at);
}

// Store the lowest bytes of `number`; the caller knows that the number fits into them.
inline void StoreU8(std::byte* at, std::uint64_t number) {
  std::memcpy(at, &number, 1);
}
inline void StoreU16(std::byte* at, std::uint64_t number) {
  std::memcpy(at, &number, 2);
}
inline void StoreU32(std::byte* at, std::uint64_t number) {
  std::memcpy(at, &number, 4);
}

inline std::span<const std::byte> AsBytes(std::string_view text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

inline std::string_view AsText(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace marlevo::access
