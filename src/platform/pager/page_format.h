// What the pager has to know about the pages of a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace marlevo::pager {

struct PageFormat {
  std::size_t page_size = 0;  // a power of two, 512 to 65536
  // Encodes and decodes a page in place (the same operation both ways); may be empty. Never called for page 0.
  std::function<void(std::uint32_t page, std::span<std::byte>)> crypt;
};

}  // namespace marlevo::pager
