// What the print system said about the last job.
#pragma once

#include <string>

namespace marlevo {

// The print system's own words when it refused the job that this thread handed over last; empty when it took the job.
// QPrinter does not say whether a job was taken. On Windows a job that will be refused does not even begin, so the
// answer is always empty there.
std::string JobRefusal();

}  // namespace marlevo
