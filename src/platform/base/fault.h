// The kinds of failure that an operator can do something about, whatever layer meets them. Layers below the windows
// give the kind and their own technical words; what the operator reads of a kind is said in one place
// (ui/fault_text.h).
#pragma once

#include <stdexcept>
#include <string>

namespace marlevo {

enum class Fault {
  kOther,
  kExplained,  // the words of the error are a sentence for the operator already
  kMissing,    // there is no such file
  kWrongPassword,
  kDamaged,      // the file is damaged, or is not a file of the expected kind
  kNewerFormat,  // the file is of a later version of Access
  kNeedsAccess,  // the file has a feature that this program cannot maintain; the words say what to change in Access
  kInUse,        // the file is open for writing in another program
  kChanged,      // another program has changed the file while it was open here; the failed work can be done again
  kNotOurs,      // a file of another program has the name that this program needs for a file of its own
  kDenied,       // file, folder or medium may not be read or written
  kDiskFull,
  kDiskFailed,   // the medium, or the connection to it, has failed
  kFileFull,     // the file is as large as its format allows
  kNoTable,      // the file lacks a table or a column
  kDuplicate,    // a unique index has the value already
  kRelated,      // rows of another table forbid the change
  kEmpty,        // a column that requires a value has none
  kTextTooLong,  // a text is too long for its column
  kNumber,       // a number does not fit its column
  kCharacter,    // a character cannot be stored in the file
  kPrinter,      // the print service did not take the job
};

// An error of a lower layer. what() gives its technical words.
class FaultError : public std::runtime_error {
 public:
  FaultError(Fault kind, const std::string& words) : std::runtime_error(words), kind_(kind) {}

  Fault Kind() const { return kind_; }

 private:
  Fault kind_;
};

}  // namespace marlevo
