// Looks for structural faults in a whole file. See Database::FindFaults.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/access/storage/storage.h"

namespace marlevo::access {

std::vector<std::string> CheckFile(const std::shared_ptr<Storage>& file);

}  // namespace marlevo::access
