// Jet 3 files say in which code page their texts are, and some of them are wrong: a program that asked for the
// "General" language on a Chinese Windows has Chinese bytes under the Western label.
#pragma once

#include <memory>

#include "platform/access/file.h"

namespace marlevo::access {

inline constexpr int kTraditionalChinese = 950;

// Whether the first texts of each table that are not plain ASCII are all valid in the Traditional Chinese code page.
// False when there are none. Looks at a few pages only.
bool LooksTraditionalChinese(const std::shared_ptr<File>& file);

}  // namespace marlevo::access
