// What can be done to a file of which nothing is known: whatever its bytes say, the engine does it or refuses with an
// AccessError or a PagerError. Anything else escapes from here.
#pragma once

#include <cstddef>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "platform/access/database/database.h"
#include "platform/pager/fault_files.h"

namespace marlevo::access {

constexpr const char* kAnyFile = "/disk/4star.mdb";

// A small sound file with a bit of everything: all column types, long values of every kind, deleted rows, and indexes
// of two levels. `version` is that of NewFile; no password.
std::vector<std::byte> SmallFile(int version);

// Breaks a few places of a file: bytes anywhere, or a field of a page's head, a slot, a place in a row, an entry of an
// index or its end, a bit of a map.
void Damage(FuzzInput& input, std::vector<std::byte>& file);

// Every cell of every table, also the system's; every index from end to end; the check if it is wanted. True when
// nothing was refused and the check found no fault.
bool ReadAnyFile(pager::FaultFiles& files, bool check = true);

// Deletes and inserts in every table, some of it undone, then flushes. True when nothing was refused.
bool ChangeAnyFile(pager::FaultFiles& files);

}  // namespace marlevo::access
