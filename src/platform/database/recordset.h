// The result of a SELECT, walked from its first row to its end.
//
// A Recordset holds all its rows, packed, from the moment it is opened. So nothing written later, on this connection or
// another, changes what a walk gives, and a Recordset may outlive its connection. A row takes about the bytes of its
// values: a million purchase rows take some 50 MB.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace marlevo {

class Recordset {
 public:
  class Rows;  // made by Connection::Open only

  explicit Recordset(std::unique_ptr<Rows> rows);
  Recordset(Recordset&& other) noexcept;
  Recordset& operator=(Recordset&& other) noexcept;
  ~Recordset();

  // True when no row is current: behind the last one, or when there is none.
  bool AtEnd() const;
  // Does nothing at the end.
  void MoveNext();

  // A field of the current row, by its name in any letter case. Throws DatabaseError for a name that the result does
  // not have, and at the end. Null is "" as text and 0 as number. Text gives a number in its shortest decimal form
  // without exponent; Number gives the number that a text begins with, else 0. Yes/No columns give -1 and 0, date
  // columns the days since 1899-12-30.
  std::string Text(std::string_view field) const;
  double Number(std::string_view field) const;
  bool IsNull(std::string_view field) const;

 private:
  std::unique_ptr<Rows> rows_;
};

}  // namespace marlevo
