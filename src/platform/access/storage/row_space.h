// The data pages of one owner (a table, or a Memo or Ole column): where its rows are put and taken from. Keeps the two
// usage maps and the free space of the pages right. All changes happen inside a statement.
#pragma once

#include <cstdint>

#include "platform/access/bytes/data_page.h"
#include "platform/access/storage/storage.h"
#include "platform/access/storage/usage_map.h"

namespace marlevo::access {

class RowSpace {
 public:
  // `owner`: what bytes 4..7 of the pages say.
  RowSpace(Storage& file, std::uint32_t owner, RowPointer owned_map, RowPointer free_map)
      : file_(&file), owner_(owner), owned_(file, owned_map), free_(file, free_map) {}

  const UsageMap& Owned() const { return owned_; }
  const UsageMap& Free() const { return free_; }

  // The row has been checked to fit on a page.
  RowPointer Add(Bytes row);
  // Behind all rows that were added this way before, whatever room is left elsewhere.
  RowPointer Append(Bytes row);

  // The row exists. A page that has no rows left is given back to the file.
  void Remove(RowPointer row);

  // What is remembered may be wrong now: somebody else has changed the file.
  void Forget();

 private:
  bool HasRoom(std::uint32_t page, std::size_t size) const;
  std::uint32_t PageWithRoom(std::size_t size);
  std::uint32_t NewPage();
  RowPointer PutOnLast(Bytes row);
  bool WorthOffering(const DataPage& page) const;

  Storage* file_;
  std::uint32_t owner_;
  UsageMap owned_;
  UsageMap free_;
  std::uint32_t last_ = 0;         // where the last row went, if it is known
  std::uint32_t search_from_ = 0;  // pages of the free map below have been found too full
};

}  // namespace marlevo::access
