// What the print system said about the last job.
#pragma once

#include <string>

namespace marlevo {

// The print system's own words when it refused the job that this thread handed over last; empty when it took the job.
// QPrinter does not tell. On Windows a refused job already fails to begin, and the answer is always empty.
std::string JobRefusal();

}  // namespace marlevo
