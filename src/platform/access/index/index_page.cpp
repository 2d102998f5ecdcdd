#include "platform/access/index/index_page.h"

#include <algorithm>

#include "platform/access/bytes/access_error.h"

namespace marlevo::access {

namespace {

// A valid page stays far below 1 MiB when its entries are unpacked; only a forged prefix expands beyond it.
constexpr std::size_t kMostFullBytes = 1 << 20;

}  // namespace

IndexPage::IndexPage(const Format& format, std::uint32_t number, const IndexPageView& page)
    : links(page.Links()), format_(&format), shortened_(page.HasPrefix()) {
  std::vector<std::byte> buffer;
  for (IndexPageView::Place place = page.First(); !page.IsEnd(place); place = page.After(place)) {
    const Bytes entry = page.Entry(place, buffer);
    // An entry has to fit into a page of its own, and so has its copy with a child in the page above.
    if (entry.size() + kEntryChildSize > format.page_size - format.index_page.entries ||
        bytes_.size() + entry.size() > kMostFullBytes) {
      throw AccessError(number, "the entries of the index page do not fit into it");
    }
    bytes_.insert(bytes_.end(), entry.begin(), entry.end());
    ends_.push_back(bytes_.size());
  }
}

Bytes IndexPage::Entry(std::size_t i) const {
  return Bytes(bytes_).subspan(Start(i), ends_[i] - Start(i));
}

Bytes IndexPage::Bound(std::size_t i) const {
  const Bytes entry = Entry(i);
  return IsLeaf() ? entry : entry.first(entry.size() - kEntryChildSize);
}

std::uint32_t IndexPage::Child(std::size_t i) const {
  return i < Count() ? EntryChild(Entry(i)) : links.tail;
}

std::size_t IndexPage::LowerBound(Bytes sought) const {
  std::size_t first = 0;
  std::size_t end = Count();
  while (first < end) {
    const std::size_t middle = first + (end - first) / 2;
    if (std::ranges::lexicographical_compare(Bound(middle), sought)) {
      first = middle + 1;
    } else {
      end = middle;
    }
  }
  return first;
}

void IndexPage::Insert(std::size_t i, Bytes entry) {
  bytes_.insert(bytes_.begin() + Start(i), entry.begin(), entry.end());
  ends_.insert(ends_.begin() + i, Start(i));
  for (std::size_t later = i; later < Count(); ++later) {
    ends_[later] += entry.size();
  }
}

void IndexPage::InsertChild(std::size_t i, Bytes bound, std::uint32_t child) {
  std::vector<std::byte> entry(bound.begin(), bound.end());
  AppendEntryChild(child, entry);
  Insert(i, entry);
}

void IndexPage::Erase(std::size_t i) {
  const std::size_t start = Start(i);
  const std::size_t size = ends_[i] - start;
  const auto at = bytes_.begin() + start;
  bytes_.erase(at, at + size);
  ends_.erase(ends_.begin() + i);
  for (std::size_t later = i; later < Count(); ++later) {
    ends_[later] -= size;
  }
}

std::size_t IndexPage::CommonPrefix() const {
  if (!shortened_ || Count() < 2) {
    return 0;
  }
  const Bytes first = Entry(0);
  const Bytes last = Entry(Count() - 1);
  const std::size_t most = format_->index_page.prefix_width == 1 ? 0xFF : 0xFFFF;
  const auto differ = std::mismatch(first.begin(), first.end(), last.begin(), last.end()).first;
  return std::min<std::size_t>(differ - first.begin(), most);
}

std::size_t IndexPage::StoredSize(std::size_t prefix) const {
  return bytes_.size() - prefix * (Count() - 1);
}

bool IndexPage::Fits() const {
  return ends_.empty() || StoredSize(CommonPrefix()) <= format_->page_size - format_->index_page.entries;
}

IndexPage IndexPage::SplitFront(bool all_but_last) {
  const auto half = std::ranges::lower_bound(ends_, bytes_.size() / 2);
  std::size_t count = all_but_last ? Count() - 1 : half - ends_.begin();
  count = std::clamp<std::size_t>(count, 1, Count() - 1);
  IndexPage front(*format_, {.level = links.level});
  front.shortened_ = shortened_;
  for (;; count = all_but_last ? count - 1 : count / 2) {
    front.bytes_.assign(bytes_.begin(), bytes_.begin() + ends_[count - 1]);
    front.ends_.assign(ends_.begin(), ends_.begin() + count);
    if (count == 1 || front.Fits()) {
      break;
    }
  }
  bytes_.erase(bytes_.begin(), bytes_.begin() + front.bytes_.size());
  ends_.erase(ends_.begin(), ends_.begin() + count);
  for (std::size_t& end : ends_) {
    end -= front.bytes_.size();
  }
  return front;
}

void IndexPage::Store(std::uint32_t table, MutableBytes page) const {
  const auto& places = format_->index_page;
  const std::size_t prefix = CommonPrefix();
  std::memset(page.data(), 0, places.entries);
  StoreU8(&page[0], IsLeaf() ? kIndexLeafPage : kIndexNodePage);
  StoreU8(&page[1], 1);
  StoreU32(&page[kOwnerAt], table);
  StoreU32(&page[places.previous], links.previous);
  StoreU32(&page[places.next], links.next);
  StoreU32(&page[places.tail], links.tail);
  if (places.prefix_width == 1) {
    StoreU8(&page[places.prefix_length], prefix);
  } else {
    StoreU16(&page[places.prefix_length], prefix);
  }
  StoreU8(&page[places.level], links.level);
  std::size_t end = 0;
  for (std::size_t i = 0; i < Count(); ++i) {
    const Bytes stored = Entry(i).subspan(i == 0 ? 0 : prefix);
    std::memcpy(&page[places.entries + end], stored.data(), stored.size());
    end += stored.size();
    page[places.entry_mask + end / 8] |= std::byte{1} << (end % 8);
  }
  StoreU16(&page[kFreeSpaceAt], page.size() - places.entries - end);
}

}  // namespace marlevo::access
