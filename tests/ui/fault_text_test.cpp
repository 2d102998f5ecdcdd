#include "ui/fault_text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <utility>

namespace marlevo {
namespace {

// The document that maintainers look a message up in has the words that the operator reads.
TEST(FaultText, IsInTheTableOfWhatIsRefused) {
  std::ifstream file(FILE_FORMAT);
  const std::string table{std::istreambuf_iterator<char>(file), {}};
  using enum Fault;
  for (const auto& [kind, name] : {std::pair(kMissing, "kMissing"),
                                   {kNewerFormat, "kNewerFormat"},
                                   {kWrongPassword, "kWrongPassword"},
                                   {kDamaged, "kDamaged"},
                                   {kInUse, "kInUse"},
                                   {kChanged, "kChanged"},
                                   {kNotOurs, "kNotOurs"},
                                   {kFileFull, "kFileFull"},
                                   {kNoTable, "kNoTable"},
                                   {kNeedsAccess, "kNeedsAccess"},
                                   {kDuplicate, "kDuplicate"},
                                   {kEmpty, "kEmpty"},
                                   {kRelated, "kRelated"},
                                   {kTextTooLong, "kTextTooLong"},
                                   {kNumber, "kNumber"},
                                   {kCharacter, "kCharacter"},
                                   {kOther, "kOther"}}) {
    const std::string row = "| `" + std::string(name) + "` " + FaultText(kind).toStdString() + " |";
    EXPECT_NE(table.find(row), std::string::npos) << row;
  }
}

}  // namespace
}  // namespace marlevo
