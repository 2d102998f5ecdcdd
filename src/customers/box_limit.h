// How much a text box takes when the file sets the limit.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

class QLineEdit;

namespace marlevo {

// Lets the box take at most `most` characters, and refuses every edit after which `has_room_for` says no to the box's
// whole text. Both are needed: in an old file a column of 50 characters has room for only 25 Chinese ones.
void LimitBox(QLineEdit& box, std::optional<std::size_t> most, std::function<bool(std::string_view text)> has_room_for);

}  // namespace marlevo
