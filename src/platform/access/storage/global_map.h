// The map of the whole file: its members are the pages that nobody uses.
#pragma once

#include "platform/access/storage/usage_map.h"

namespace marlevo::access {

class GlobalMap : public UsageMap {
 public:
  explicit GlobalMap(Storage& file) : UsageMap(file, {kGlobalMapPage, 0}) {}

  // Makes the map long enough for the page. Of the pages that it did not know before, those that the file has count as
  // used, later ones as free. Inside a statement; may append pages.
  void Reach(std::uint32_t page);

 private:
  bool Lengthen(std::uint32_t page);
  void MakeReferences(std::uint32_t page);
  void AddReference(std::size_t index);
  void MarkUsed(std::uint32_t from);
};

}  // namespace marlevo::access
