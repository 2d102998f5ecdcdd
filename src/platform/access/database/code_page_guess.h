// Jet 3 files say in which code page their texts are, and some of them are wrong: a program that asked for the
// "General" language on a Chinese Windows has Chinese bytes under the Western label.
#pragma once

#include <memory>

#include "platform/access/storage/storage.h"

namespace marlevo::access {

inline constexpr int kTraditionalChinese = 950;

// Whether the texts of a file, those in the first rows of each table, are all valid in the Traditional Chinese code
// page. Where all of it is plain ASCII both pages are right, and Chinese can be added in one of them only.
bool MayBeTraditionalChinese(const std::shared_ptr<Storage>& file);

// Takes the texts for Traditional Chinese where the file's label is doubtful and they may be.
void SettleCodePage(const std::shared_ptr<Storage>& file);

}  // namespace marlevo::access
