// The map of all pages of the file. Its members are the pages that belong to nobody.
#pragma once

#include "platform/access/storage/usage_map.h"

namespace marlevo::access {

class GlobalMap : public UsageMap {
 public:
  explicit GlobalMap(Storage& file) : UsageMap(file, {kGlobalMapPage, 0}) {}

  // Makes the map long enough to have a bit for `page`. Of the pages that get a bit by this, those that the file has
  // are marked as used, those behind its end as free. Inside a statement; may append pages to the file.
  void Reach(std::uint32_t page);

 private:
  bool Lengthen(std::uint32_t page);
  void MakeReferences(std::uint32_t page);
  void AddReference(std::uint32_t index);
  void MarkUsed(std::uint32_t from);
};

}  // namespace marlevo::access
