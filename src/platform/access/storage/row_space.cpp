#include "platform/access/storage/row_space.h"

namespace marlevo::access {

namespace {

constexpr std::size_t kSlotSize = 2;  // bytes of a row's entry in the slot table

}  // namespace

void RowSpace::Forget() {
  last_ = 0;
  search_from_ = 0;
}

bool RowSpace::HasRoom(std::uint32_t page, std::size_t size) const {
  const pager::PageRef ref = file_->Read(page);
  const DataPage data(file_->Layout(), page, ref.Bytes());
  return data.Owner() == owner_ && data.SlotCount() < kMaxSlots && data.Room() >= size + kSlotSize;
}

// Whether the page belongs in the map of pages with room. A page that is nearly full does not: each new row would look
// at it in vain.
bool RowSpace::WorthOffering(const DataPage& page) const {
  return page.SlotCount() < kMaxSlots && page.Room() >= file_->Layout().page_size / 16;
}

std::uint32_t RowSpace::PageWithRoom(std::size_t size) {
  if (last_ != 0 && HasRoom(last_, size)) {
    return last_;
  }
  for (auto page = free_.Next(search_from_); page; page = free_.Next(*page + 1)) {
    search_from_ = *page;
    if (HasRoom(*page, size)) {
      return *page;
    }
  }
  return NewPage();
}

std::uint32_t RowSpace::NewPage() {
  const std::uint32_t page = file_->TakePage();
  {
    const pager::PageEdit edit = file_->Change(page);
    FormatDataPage(file_->Layout(), edit.Bytes(), owner_);
  }
  owned_.Add(page);
  free_.Add(page);
  return page;
}

RowPointer RowSpace::Add(Bytes row) {
  last_ = PageWithRoom(row.size());
  return PutOnLast(row);
}

RowPointer RowSpace::Append(Bytes row) {
  if (last_ == 0 || !HasRoom(last_, row.size())) {
    last_ = NewPage();
  }
  return PutOnLast(row);
}

RowPointer RowSpace::PutOnLast(Bytes row) {
  const pager::PageEdit edit = file_->Change(last_);
  const RowPointer added{last_, AppendRow(file_->Layout(), edit.Bytes(), row)};
  if (!WorthOffering(DataPage(file_->Layout(), last_, edit.Bytes()))) {
    free_.Remove(last_);
  }
  return added;
}

void RowSpace::Remove(RowPointer row) {
  {
    const pager::PageEdit edit = file_->Change(row.page);
    DeleteRow(file_->Layout(), row.page, edit.Bytes(), row.slot);
    const DataPage data(file_->Layout(), row.page, edit.Bytes());
    if (data.SlotCount() != 0) {
      if (WorthOffering(data) && !free_.Contains(row.page) && owned_.Contains(row.page)) {
        free_.Add(row.page);
      }
      search_from_ = std::min(search_from_, row.page);
      return;
    }
  }
  if (!owned_.Contains(row.page)) {
    return;  // some writers leave a long value's page out of the map; another column may use the page, too: it stays
  }
  owned_.Remove(row.page);
  free_.Remove(row.page);
  file_->GivePage(row.page);
  if (last_ == row.page) {
    last_ = 0;
  }
}

}  // namespace marlevo::access
