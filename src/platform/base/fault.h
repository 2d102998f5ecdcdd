// The kinds of failure that an operator can do something about, whatever layer meets them. Layers below the windows
// give the kind and their own technical words; what the operator reads of a kind is said in one place
// (ui/fault_text.h).
#pragma once

#include <stdexcept>
#include <string>

namespace marlevo {

enum class Fault {
  kOther,
  kExplained,  // the words are a sentence for the operator already
  kMissing,    // there is no such file
  kWrongPassword,
  kDamaged,      // or not of the kind of file that it has to be
  kNewerFormat,  // of a version of Access that came later
  kNeedsAccess,  // the file has a feature that is not kept right; the words say what to change in Access
  kInUse,        // open for writing in another program
  kChanged,      // by another program, while it was open here; what was to be stored is not, and can be done again
  kNotOurs,      // a file of another program stands where this one's own has to be
  kDenied,       // file, folder or medium may not be read or written
  kDiskFull,
  kDiskFailed,   // the medium or the way to it
  kFileFull,     // as large as its format allows
  kNoTable,      // the file lacks a table
  kDuplicate,    // a unique index has the value already
  kRelated,      // rows of another table forbid it
  kEmpty,        // a column that requires a value has none
  kTextTooLong,  // for its column
  kNumber,       // does not fit its column
  kCharacter,    // cannot be stored in the file
  kPrinter,      // the print service did not take the job
};

// An error of a lower layer. what() are its technical words.
class FaultError : public std::runtime_error {
 public:
  FaultError(Fault kind, const std::string& words) : std::runtime_error(words), kind_(kind) {}

  Fault Kind() const { return kind_; }

 private:
  Fault kind_;
};

}  // namespace marlevo
