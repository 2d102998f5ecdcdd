// How much a text box takes when the file sets the limit.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

class QLineEdit;

namespace marlevo {

// The box takes no more than `most` characters, if there is such a limit, and nothing that makes its text one that the
// file has no room for.
void LimitBox(QLineEdit& box, std::optional<std::size_t> most, std::function<bool(std::string_view text)> has_room_for);

}  // namespace marlevo
