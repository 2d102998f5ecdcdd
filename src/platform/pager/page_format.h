// What the pager has to know about the pages of a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace marlevo::pager {

constexpr std::size_t kMinPageBytes = 512;
constexpr std::size_t kMaxPageBytes = 32768;

struct PageFormat {
  std::uint32_t page_size = 0;  // bytes; a power of two from kMinPageBytes to kMaxPageBytes
  // Encodes and decodes a page in place (the same operation both ways); may be empty. Never called for page 0.
  std::function<void(std::uint32_t page, std::span<std::byte>)> crypt;
  // The extension of a file that other programs keep beside this one while they have it open, such as ".ldb"; empty
  // when there is no such sign.
  std::string sign_of_use = {};
};

}  // namespace marlevo::pager
