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

// The text that a caller looks for in a column of type Text, regardless of case. A scan may leave out rows whose stored
// bytes show that their text is another one. The scan lets all others pass, so the caller still compares.
struct TextHint {
  std::size_t column;
  std::string text;
};

// Walks rows in the order of their pages, or in the order of an index. A cell is decoded only when it is asked for.
// Texts and bytes that an accessor returns stay valid until the next call of Next or of the same accessor for the same
// column. While a cursor is open rows may be deleted and inserted. A deleted row does not come up any more; an inserted
// row may or may not. After a change the current row's cells must not be read until Next has been called.
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
  Bytes Raw(std::size_t column);  // Binary, Ole, internal types; empty when null

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

  // The file's own count of its rows, which may be off by a few in files that other programs have written.
  std::size_t RowCount() const;

  // `values` has one value for each column. A value that does not fit its column (kind, range, length, decimal places,
  // a character that the code page lacks) throws a ValueError that names the column; nothing is changed then, and a
  // Statement of the caller may go on.
  RowId Insert(std::span<const Value> values);

  // False when there is no such row.
  bool Delete(RowId row);

  // Returns a function that counts a text's length in the column's unit (see Column::length) and returns nothing for a
  // text that the file cannot store. The function does not use the file and may outlive it.
  std::function<std::optional<std::size_t>(std::string_view)> LengthCounter(std::size_t column) const;

  // The indexes that this engine can search.
  const std::vector<IndexView>& Indexes() const;

  // The rows that have `values` in the first columns of the index at place `index` of Indexes and meet all conditions,
  // in the order of that index. Rows with slightly different texts may be among them, because an index does not tell
  // apart texts that differ only in case or in blanks at their end. Throws ValueError when the place of a value in the
  // index is not known; Scan still finds the rows.
  Cursor Walk(std::size_t index, std::span<const Value> values, std::span<const Equals> conditions = {}) const;

  // The rows that meet all conditions, in the order of their pages.
  Cursor Scan(std::span<const Equals> conditions = {}, std::span<const TextHint> hints = {}) const;

 private:
  friend class Database;
  explicit Table(std::shared_ptr<LoadedTable> state);

  std::shared_ptr<LoadedTable> state_;
};

}  // namespace marlevo::access
