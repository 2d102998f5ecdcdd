// The bytes of one row, in this order: the number of columns, the fixed values, the variable values, the offsets of the
// variable values (the last one first), the number of variable columns, the null mask.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/format.h"
#include "platform/access/bytes/schema.h"

namespace marlevo::access {

class RowView {
 public:
  // A row without cells.
  RowView() = default;

  // `page` is named in errors. Throws AccessError when the parts of the row do not fit into its bytes.
  RowView(const Format& format, std::uint32_t page, Bytes row, bool has_variable_columns);

  // The bit of a column number in the null mask: set when the value is not null, in a Boolean column when it is true.
  // Columns that were added to the table after the row was written are null.
  bool IsSet(std::size_t number) const {
    return number < columns_ && (LoadU8(&row_[mask_ + number / 8]) >> number % 8 & 1) != 0;
  }

  // The bytes of a fixed value; fewer than `size` when the row ends before the value does.
  Bytes Fixed(std::size_t offset, std::size_t size) const;

  // Empty when the row has no such variable column. Throws AccessError when its offsets make no sense.
  Bytes Variable(std::size_t index) const;

 private:
  void FindVariablePart();
  std::size_t VariableOffset(std::size_t index) const;

  const Format* format_ = nullptr;
  std::uint32_t page_ = 0;
  Bytes row_;
  std::size_t columns_ = 0;    // that the table had when the row was written
  std::size_t mask_ = 0;       // where the null mask begins
  std::size_t variables_ = 0;  // variable columns that the table had when the row was written
  std::size_t offsets_ = 0;    // place of the offset of variable column 0; those of later columns stand before it
  std::size_t data_end_ = 0;   // no fixed or variable value reaches beyond this place
  std::size_t jumps_ = 0;      // Jet 3: entries of the jump table, see VariableOffset
};

// Builds the bytes of a row. Fixed columns are given in any order; columns that are not given are null.
class RowBuilder {
 public:
  // `columns` and `variable_columns` count deleted columns, too; `fixed_size`: bytes of the whole fixed area.
  RowBuilder(const Format& format, std::size_t columns, std::size_t variable_columns, std::size_t fixed_size);

  void SetMask(std::size_t number);
  MutableBytes Fixed(std::size_t offset, std::size_t size);
  // Variable values are added in ascending order of `index`.
  void AddVariable(std::size_t index, Bytes value);

  // The bytes so far, which is where the next variable value will begin.
  std::size_t Size() const { return row_.size(); }

  // Completes the row and returns it; nothing can be added afterwards. The builder does not check Format::max_row.
  std::vector<std::byte>& Finish();

  // Starts another row.
  void Reset();

 private:
  void PutOffsets();

  const Format& format_;
  std::size_t columns_;
  std::size_t variable_columns_;
  std::size_t fixed_size_;
  std::vector<std::byte> row_;
  std::vector<std::size_t> offsets_;
  std::vector<std::byte> mask_;
};

}  // namespace marlevo::access
