// Finds out the code page of a Jet 3 file whose label may be wrong: a program that creates a file in the "General"
// language on a Chinese Windows labels it Western but stores Chinese texts in code page 950.
#pragma once

#include <memory>

#include "platform/access/storage/storage.h"

namespace marlevo::access {

inline constexpr int kTraditionalChinese = 950;

// Whether all texts in the first rows of each table are valid in the Traditional Chinese code page. True for a file of
// plain ASCII texts as well: they are the same in both code pages, and only this one lets Chinese texts be added.
bool MayBeTraditionalChinese(const std::shared_ptr<Storage>& file);

// Makes Traditional Chinese the code page of a file whose label is doubtful and whose texts may be Traditional Chinese.
void SettleCodePage(const std::shared_ptr<Storage>& file);

}  // namespace marlevo::access
