// What the operator reads of each kind of failure: what is wrong and what can be done about it.
#pragma once

#include <QString>

#include "platform/base/fault.h"

namespace marlevo {

// Empty for Fault::kExplained, whose own words say it.
QString FaultText(Fault kind);

}  // namespace marlevo
