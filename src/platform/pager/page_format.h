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
  std::size_t page_size = 0;  // a power of two within these bounds
  // Encodes and decodes a page in place (the same operation both ways); may be empty. Never called for page 0.
  std::function<void(std::uint32_t page, std::span<std::byte>)> crypt;
  // Other programs keep a file of this extension beside the file while they have it open; empty: there is no such sign.
  std::string sign_of_use = {};
};

}  // namespace marlevo::pager
