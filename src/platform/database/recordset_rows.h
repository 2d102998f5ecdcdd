// The rows behind a Recordset: written once, cell by cell, then walked once.
//
// A cell is a tag byte and the bytes of its value; an integer takes 1, 2, 4 or 8 bytes. Example: 300 is 02 2C 01, and
// the text "A01" is 0A 03 00 00 00 41 30 31. Rows follow each other in large blocks, so a row costs neither an
// allocation nor an entry in a table.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database/recordset.h"

namespace marlevo {

class Recordset::Rows {
 public:
  // `subject`: the database file, for errors.
  Rows(std::string subject, std::vector<std::string> names);

  // Writing: for each row every cell in the order of the names, then EndRow.
  void AddNull();
  void AddInteger(std::int64_t value);
  void AddReal(double value);
  void AddText(std::string_view text);
  void EndRow();
  // Ends the writing: the first row becomes current.
  void Rewind();

  // Walking, once Rewind has been called.
  bool AtEnd() const { return row_ == row_count_; }
  void MoveNext();

  struct Cell {
    enum class Kind : std::uint8_t { kNull, kInteger, kReal, kText };
    Kind kind = Kind::kNull;
    std::int64_t integer = 0;
    double real = 0;
    std::string_view text;
  };
  const Cell& Field(std::string_view name) const;

 private:
  void ReadRow();

  std::string subject_;
  std::vector<std::string> names_;
  std::vector<std::string> blocks_;  // no row crosses from one block into the next
  std::size_t row_count_ = 0;
  std::size_t row_ = 0;
  std::size_t block_ = 0;
  std::size_t place_ = 0;    // where the row behind the current one begins in block_
  std::vector<Cell> cells_;  // the current row
};

}  // namespace marlevo
