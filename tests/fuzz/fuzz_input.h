// What a fuzzer's bytes are made into. An input that has come to its end goes on with zeros.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace marlevo {

class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : left_(data, size) {}

  bool AtEnd() const { return left_.empty(); }

  template <typename T>
  T Take() {
    T value = {};
    const std::size_t size = std::min(sizeof value, left_.size());
    std::memcpy(&value, left_.data(), size);
    left_ = left_.subspan(size);
    return value;
  }

  // The rest as text: a byte above 127 stands for one of the words.
  std::string Text(std::span<const std::string_view> words) {
    std::string text;
    while (!AtEnd()) {
      const auto byte = Take<std::uint8_t>();
      if (byte < 128) {
        text += static_cast<char>(byte);
      } else {
        text += words[(byte - 128u) % words.size()];
      }
    }
    return text;
  }

 private:
  std::span<const std::uint8_t> left_;
};

// Ends the program with a finding.
inline void Require(bool holds) {
  if (!holds) {
    __builtin_trap();
  }
}

}  // namespace marlevo
