// One row's bytes: a count, the fixed values, the variable values, their offsets, the null mask.
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
  // A row without any cell.
  RowView() = default;

  // `page` is for errors. Throws AccessError when the row's parts do not fit into it.
  RowView(const Format& format, std::uint32_t page, Bytes row, bool has_variable_columns);

  // The null mask's bit of a column number: not null, or true. Columns that came after the row are null.
  bool IsSet(std::size_t number) const {
    return number < columns_ && (LoadU8(&row_[mask_ + number / 8]) >> number % 8 & 1) != 0;
  }

  // What the row holds of a fixed value; shorter than `size` when the row ends before it.
  Bytes Fixed(std::size_t offset, std::size_t size) const;

  // Empty when the row has no such variable column. Throws AccessError when its offsets make no sense.
  Bytes Variable(std::size_t index) const;

 private:
  void FindVariablePart();
  std::size_t VariableOffset(std::size_t index) const;

  const Format* format_ = nullptr;
  std::uint32_t page_ = 0;
  Bytes row_;
  std::size_t columns_ = 0;    // when the row was written
  std::size_t mask_ = 0;       // where the null mask begins
  std::size_t variables_ = 0;  // when the row was written
  std::size_t offsets_ = 0;    // where the offset of variable column 0 stands; the others follow downwards
  std::size_t data_end_ = 0;   // where fixed and variable values must have ended
  std::size_t jumps_ = 0;      // Jet 3: entries of the jump table
};

// Puts a row together. Columns are given in any order; those not given are null.
class RowBuilder {
 public:
  // `columns`, `variable_columns`: those that the table ever had; `fixed_size`: of the whole fixed area.
  RowBuilder(const Format& format, std::size_t columns, std::size_t variable_columns, std::size_t fixed_size);

  void SetMask(std::size_t number);
  MutableBytes Fixed(std::size_t offset, std::size_t size);
  // In ascending order of `index`.
  void AddVariable(std::size_t index, Bytes value);

  // Bytes so far: the place of the next variable value.
  std::size_t Size() const { return row_.size(); }

  // The row; nothing can be added afterwards. It may be longer than the format allows.
  std::vector<std::byte>& Finish();

  // To be used for another row.
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
