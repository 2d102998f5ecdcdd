#include "platform/pager/block_cache.h"

#include <algorithm>
#include <utility>

namespace marlevo::pager {

BlockCache::BlockCache(std::uint32_t page_size, std::size_t capacity, Load load)
    : page_size_(page_size), pages_per_block_(kBlockBytes / page_size), capacity_(capacity), load_(std::move(load)) {}

std::shared_ptr<const std::byte> BlockCache::Page(std::uint32_t page) {
  const std::uint32_t number = page / pages_per_block_;
  if (number >= blocks_.size()) {
    blocks_.resize(number + 1);
  }
  if (!blocks_[number].bytes) {
    std::shared_ptr<std::byte[]> buffer = TakeBuffer(number);
    load_(number * pages_per_block_, {buffer.get(), kBlockBytes});
    resident_.push_back(number);
    blocks_[number].bytes = std::move(buffer);
    last_but_one_ = std::exchange(last_, number);
  }
  Block& block = blocks_[number];
  block.used = true;
  return {block.bytes, block.bytes.get() + page % pages_per_block_ * page_size_};
}

void BlockCache::Clear() {
  blocks_.clear();
  resident_.clear();
  hand_ = 0;
}

std::shared_ptr<std::byte[]> BlockCache::TakeBuffer(std::uint32_t block) {
  if (resident_.size() >= capacity_) {
    // A block that follows the last one loaded is asked for by a scan. The scan still holds a page of the last block,
    // so the block before that one is replaced.
    if (block == last_ + 1 && last_but_one_ < blocks_.size() && Free(last_but_one_)) {
      const auto found = std::find(resident_.rbegin(), resident_.rend(), last_but_one_);
      return Evict(resident_.rend() - found - 1);
    }
    // The clock algorithm: the first round takes the marks `used` away, the second finds a block without a mark, unless
    // callers hold all of them.
    for (std::size_t step = 0; step < 2 * resident_.size(); ++step) {
      hand_ = (hand_ + 1) % resident_.size();
      Block& candidate = blocks_[resident_[hand_]];
      if (Free(resident_[hand_]) && !std::exchange(candidate.used, false)) {
        return Evict(hand_);
      }
    }
  }
  return std::make_shared_for_overwrite<std::byte[]>(kBlockBytes);
}

bool BlockCache::Free(std::uint32_t block) const {
  return blocks_[block].bytes.use_count() == 1;
}

std::shared_ptr<std::byte[]> BlockCache::Evict(std::size_t position) {
  std::shared_ptr<std::byte[]> buffer = std::move(blocks_[resident_[position]].bytes);
  resident_[position] = resident_.back();
  resident_.pop_back();
  return buffer;
}

}  // namespace marlevo::pager
