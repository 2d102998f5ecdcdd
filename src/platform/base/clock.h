// The local date and time as the stamp that records bear.
#pragma once

#include <string>

namespace marlevo {

// 14 digits: year, month, day, hour (24), minute, second of the local time, e.g. "20021005143012".
std::string LocalStamp();

}  // namespace marlevo
