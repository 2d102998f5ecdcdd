// The register of drawn numbers as the database keeps it: everything that the window of the draws asks and changes.
// What changes something is on the disk when the call returns; every failure is a DatabaseError.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "draws/draw_statements.h"
#include "platform/database/connection.h"

namespace marlevo {

class DrawStore {
 public:
  // Opens a connection of its own. DatabaseError when the file cannot be opened.
  explicit DrawStore(const std::string& connection_string) : connection_(connection_string) {}
  // Gives the file back; every later call is a DatabaseError.
  void Close() { connection_.Close(); }

  // All draws in the order of their numbers. A value that is missing in the table is an empty text.
  std::vector<Draw> Draws();
  // Whether the register has a draw of this number. Numbers are compared as numbers: 092001 is 92001.
  bool Has(std::string_view number);
  // False when the number is taken already; nothing is stored then.
  bool Add(const Draw& draw);
  // Deletes the draw of this number and stores the one given in its place.
  [[nodiscard]] RowChange Replace(const Draw& draw);
  // False when there is no such draw.
  bool Remove(std::string_view number);

  // How many digits a draw number has at most; nothing when the file sets no limit.
  std::optional<std::size_t> MostDigits() { return connection_.MostCharacters("NUMERIC", "VOU_NO"); }

 private:
  Connection connection_;
};

}  // namespace marlevo
