// The data pages of one owner, a table or a Memo or Ole column. Adds and removes rows and keeps the owner's two usage
// maps correct: the map of the owned pages and the map of those that have room. All changes happen inside a statement.
#pragma once

#include <cstdint>

#include "platform/access/bytes/data_page.h"
#include "platform/access/storage/storage.h"
#include "platform/access/storage/usage_map.h"

namespace marlevo::access {

class RowSpace {
 public:
  // `owner`: the number in bytes 4..7 of the pages, see kOwnerAt.
  RowSpace(Storage& file, std::uint32_t owner, RowPointer owned_map, RowPointer free_map)
      : file_(&file), owner_(owner), owned_(file, owned_map), free_(file, free_map) {}

  const UsageMap& Owned() const { return owned_; }
  const UsageMap& Free() const { return free_; }

  // Puts a row on the first page that has room. The caller has checked that the row fits on an empty page.
  RowPointer Add(Bytes row);
  // Puts a row behind all rows that Append has put before, even where an earlier page has room.
  RowPointer Append(Bytes row);

  // Removes a row that exists. A page without rows is given back to the file.
  void Remove(RowPointer row);

  // Drops what the object remembers of its pages, because somebody else has changed the file.
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
  std::uint32_t last_ = 0;         // the page that got the last row; 0 when unknown
  std::uint32_t search_from_ = 0;  // the pages of the free map before this one were found too full
};

}  // namespace marlevo::access
