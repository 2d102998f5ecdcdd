// Looks for structural faults in a whole file. See Database::Check.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/access/storage/file.h"

namespace marlevo::access {

std::vector<std::string> CheckFile(const std::shared_ptr<File>& file);

}  // namespace marlevo::access
