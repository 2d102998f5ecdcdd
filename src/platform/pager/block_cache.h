// The clean pages of a file in memory, in aligned blocks of 64 KiB: one read brings a page together with its
// neighbours, which is all the read-ahead that a scan needs.
//
// The cache holds at most `capacity` blocks, and more only while callers hold pages of more blocks than that. A scan of
// a larger file replaces the blocks that it has loaded itself: blocks that others use stay, and the few that the scan
// uses in turn stay in the processor's cache.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace marlevo::pager {

class BlockCache {
 public:
  static constexpr std::uint32_t kBlockBytes = 65536;
  // Fills `block` with the pages from `first_page` on, as far as the file goes.
  using Load = std::function<void(std::uint32_t first_page, std::span<std::byte> block)>;

  BlockCache(std::uint32_t page_size, std::size_t capacity, Load load);

  // The page stays valid as long as the pointer lives. Throws what `load` throws.
  std::shared_ptr<const std::byte> Page(std::uint32_t page);
  void Clear();

 private:
  struct Block {
    std::shared_ptr<std::byte[]> bytes;
    bool used = false;
  };

  std::shared_ptr<std::byte[]> TakeBuffer(std::uint32_t block);
  bool Free(std::uint32_t block) const;
  std::shared_ptr<std::byte[]> Evict(std::size_t position);

  std::uint32_t page_size_;
  std::uint32_t pages_per_block_;
  std::size_t capacity_;
  Load load_;
  std::vector<Block> blocks_;            // by block number; in a large file most have no bytes
  std::vector<std::uint32_t> resident_;  // the numbers of the blocks that have bytes
  std::size_t hand_ = 0;                 // place in resident_ of the block last considered for eviction
  std::uint32_t last_ = 0;               // the block loaded last
  std::uint32_t last_but_one_ = 0;       // the block loaded before last_
};

}  // namespace marlevo::pager
