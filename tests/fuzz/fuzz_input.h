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

  // Overwrites some bytes, a few at a time. Much of a page is rows, and its first bytes decide more: they are as easy
  // to reach.
  void Damage(std::vector<std::byte>& file) {
    const std::size_t page_size = file[0x14] == std::byte{0} ? 2048 : 4096;
    while (!AtEnd() && file.size() > page_size) {
      const std::size_t page = Take<std::uint8_t>() % (file.size() / page_size);
      const auto place = Take<std::uint16_t>();
      const std::size_t within = (place & 0x8000) != 0 ? place % 64 : place % page_size;
      const auto length = Take<std::uint8_t>();
      if (length == 0xff) {
        file.resize(file.size() - place % 1024);
      } else if (length == 0xfe) {
        std::memcpy(&file[page * page_size], &file[place % (file.size() / page_size) * page_size], page_size);
      }
      for (std::size_t i = 0; i <= length % 8u && page * page_size + within + i < file.size(); ++i) {
        file[page * page_size + within + i] = Take<std::byte>();
      }
    }
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
