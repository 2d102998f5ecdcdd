// One table of an Access file: its columns, its rows, reading and changing them. Columns are counted from 0 in the
// order in which Access shows them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access/bytes/schema.h"

namespace marlevo::access {

class Storage;
class LoadedTable;
class RowScan;

// A row qualifies when the numeric column holds exactly `value`. Null never does.
struct Equals {
  std::size_t column;
  std::int64_t value;
};

// Walks rows in page order, or in that of an index. Cells are decoded when asked for, and only then; texts and bytes
// that an accessor gives stay valid until the next call of Next or of the same accessor for the same column. While a
// cursor is open rows may be deleted and inserted: deleted ones do not come up any more, inserted ones may or may not;
// after a change the current row's cells must not be read before the next Next.
class Cursor {
 public:
  ~Cursor();
  Cursor(Cursor&&) noexcept;
  Cursor& operator=(Cursor&&) noexcept;

  bool Next();  // false at the end
  RowId Row() const;

  bool IsNull(std::size_t column) const;
  std::int64_t Integer(std::size_t column) const;  // Boolean, Byte, Integer, Long; 0 when null
  double Real(std::size_t column) const;           // any numeric column; 0 when null
  // Text, Memo, Guid; Currency and Numeric as exact decimal text ("12.5"); empty when null. UTF-8.
  std::string_view Text(std::size_t column);
  Bytes Raw(std::size_t column);   // Binary, Ole, internal types; empty when null
  Value Cell(std::size_t column);  // the natural kind, see schema.h

 private:
  friend class Table;
  explicit Cursor(std::unique_ptr<RowScan> state);

  std::unique_ptr<RowScan> state_;
};

class Table {
 public:
  ~Table();
  Table(Table&&) noexcept;
  Table& operator=(Table&&) noexcept;

  const std::string& Name() const;
  const std::vector<Column>& Columns() const;

  // As the file counts them; a file written by others may be off by a few.
  std::size_t RowCount() const;

  // Why the table cannot be written ("table T has an index"), empty when it can. Insert and Delete fail with the same
  // text.
  const std::string& WriteRefusal() const;

  // One value a column. A value that does not fit (range, length, fraction, a character that the code page lacks, kind)
  // is refused with a ValueError that names the column; nothing is changed then, and a caller's Statement may go on.
  RowId Insert(std::span<const Value> values);

  // False when there is no such row.
  bool Delete(RowId row);

  // A function that tells how long a text is as the column counts it (see Column::length); nothing when the file cannot
  // store it. It never looks at the file and may outlive it.
  std::function<std::optional<std::size_t>(std::string_view)> LengthCounter(std::size_t column) const;

  // Those whose order is known.
  const std::vector<IndexView>& Indexes() const;

  // Rows in the order of the index with this place in Indexes, those that have `values` in the index's first columns
  // and meet all conditions. A few others may be among them: an index does not tell apart texts that differ only in
  // case or in blanks at their end. Throws ValueError when a value has no known place in the index; a scan finds its
  // rows.
  Cursor Walk(std::size_t index, std::span<const Value> values, std::span<const Equals> conditions = {}) const;

  // Rows that meet all conditions. Conditions on fixed columns are compared on the stored bytes.
  Cursor Scan(std::span<const Equals> conditions = {}) const;

 private:
  friend class Database;
  explicit Table(std::shared_ptr<LoadedTable> state);

  std::shared_ptr<LoadedTable> state_;
};

}  // namespace marlevo::access
