#include "platform/access/table/row_encoder.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string>
#include <tuple>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/cell.h"
#include "platform/access/storage/long_value.h"

namespace marlevo::access {

namespace {

// Bytes of the fixed area. Deleted fixed columns keep their place in it, except those behind the last one that still
// exists.
std::size_t FixedSize(const TableDefinition& definition) {
  std::size_t size = 0;
  for (const ColumnDefinition& column : definition.columns) {
    if (column.fixed && column.shown.type != ColumnType::kBoolean) {
      size = std::max<std::size_t>(size, column.fixed_offset + column.stored_length);
    }
  }
  return size;
}

}  // namespace

RowEncoder::RowEncoder(const Format& format, const TableDefinition& definition, std::vector<const TextCodec*> texts)
    : format_(format),
      definition_(definition),
      texts_(std::move(texts)),
      order_(definition.columns.size()),
      builder_(format, definition.max_columns, definition.variable_columns, FixedSize(definition)) {
  std::iota(order_.begin(), order_.end(), std::size_t{0});
  std::ranges::stable_sort(order_, {}, [&definition](std::size_t column) {
    const ColumnDefinition& of = definition.columns[column];
    return std::tuple(!of.fixed, of.fixed ? 0 : of.variable_index);
  });
}

// Builds a row of `count` values. `append` appends the bytes of column i's value to cell_; it returns false when the
// column's bit in the null mask stays clear.
template <typename AppendCell>
MutableBytes RowEncoder::Build(std::size_t count, AppendCell append) {
  if (count != definition_.columns.size()) {
    throw ValueError(std::to_string(definition_.columns.size()) + " values are expected, not " + std::to_string(count));
  }
  builder_.Reset();
  long_cells_.clear();
  for (const std::size_t i : order_) {
    const ColumnDefinition& column = definition_.columns[i];
    cell_.clear();
    if (!append(i)) {
      continue;
    }
    builder_.SetMask(column.number);
    if (column.shown.type == ColumnType::kBoolean) {
      continue;
    }
    if (column.fixed) {
      PutFixed(column);
    } else {
      PutVariable(column);
    }
  }
  std::vector<std::byte>& row = builder_.Finish();
  if (row.size() > format_.max_row) {
    throw ValueError("the row has " + std::to_string(row.size()) + " bytes; at most " +
                     std::to_string(format_.max_row) + " are stored");
  }
  return row;
}

MutableBytes RowEncoder::Encode(std::span<const Value> values) {
  return Build(values.size(), [&](std::size_t i) {
    const ColumnDefinition& column = definition_.columns[i];
    if (column.shown.type == ColumnType::kBoolean) {
      return EncodeBoolean(column, values[i]);
    }
    if (std::holds_alternative<std::monostate>(values[i])) {
      return false;
    }
    EncodeCell(column, *texts_[i], values[i], cell_);
    while (column.fixed && column.shown.type == ColumnType::kText && cell_.size() < column.stored_length) {
      cell_.push_back(std::byte{' '});
      if (format_.version == 4) {
        cell_.push_back(std::byte{0});
      }
    }
    cell_.resize(column.fixed ? column.stored_length : cell_.size());
    return true;
  });
}

MutableBytes RowEncoder::EncodeStored(std::span<const std::optional<Bytes>> values) {
  return Build(values.size(), [&](std::size_t i) {
    const ColumnDefinition& column = definition_.columns[i];
    if (!values[i]) {
      return false;
    }
    if (column.fixed && column.shown.type != ColumnType::kBoolean && values[i]->size() != column.stored_length) {
      throw AccessError(
          "a row's value of column " + column.shown.name + " has only " + std::to_string(values[i]->size()) + " bytes",
          Fault::kDamaged);
    }
    cell_.assign(values[i]->begin(), values[i]->end());
    return true;
  });
}

void RowEncoder::PutFixed(const ColumnDefinition& column) {
  std::ranges::copy(cell_, builder_.Fixed(column.fixed_offset, cell_.size()).begin());
}

void RowEncoder::PutVariable(const ColumnDefinition& column) {
  if (IsLongValue(column.shown.type)) {
    PutLong(column);
  }
  builder_.AddVariable(column.variable_index, cell_);
}

void RowEncoder::PutLong(const ColumnDefinition& column) {
  if (cell_.empty()) {
    return;
  }
  if (FitsInRow(cell_.size())) {
    cell_ = InlineLongValue(cell_);
    return;
  }
  std::vector<std::byte> content(kLongValueHeader);
  content.swap(cell_);
  long_cells_.push_back({&column, builder_.Size(), std::move(content)});
}

}  // namespace marlevo::access
