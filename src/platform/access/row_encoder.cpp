#include "platform/access/row_encoder.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string>
#include <tuple>

#include "platform/access/access_error.h"
#include "platform/access/cell.h"
#include "platform/access/long_value.h"

namespace marlevo::access {

namespace {

// Fixed columns that were deleted keep their place; behind the last living one it does not matter.
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

MutableBytes RowEncoder::Encode(std::span<const Value> values) {
  if (values.size() != definition_.columns.size()) {
    throw ValueError(std::to_string(definition_.columns.size()) + " values are expected, not " +
                     std::to_string(values.size()));
  }
  builder_.Reset();
  long_cells_.clear();
  for (const std::size_t i : order_) {
    const ColumnDefinition& column = definition_.columns[i];
    if (column.shown.type == ColumnType::kBoolean) {
      if (EncodeBoolean(column, values[i])) {
        builder_.SetMask(column.number);
      }
    } else if (!std::holds_alternative<std::monostate>(values[i])) {
      builder_.SetMask(column.number);
      if (column.fixed) {
        EncodeFixed(column, *texts_[i], values[i]);
      } else {
        EncodeVariable(column, *texts_[i], values[i]);
      }
    }
  }
  std::vector<std::byte>& row = builder_.Finish();
  if (row.size() > format_.max_row) {
    throw ValueError("the row has " + std::to_string(row.size()) + " bytes; at most " +
                     std::to_string(format_.max_row) + " are stored");
  }
  return row;
}

void RowEncoder::EncodeFixed(const ColumnDefinition& column, const TextCodec& text, const Value& value) {
  cell_.clear();
  EncodeCell(column, text, value, cell_);
  if (column.shown.type == ColumnType::kText) {
    while (cell_.size() < column.stored_length) {
      cell_.push_back(std::byte{' '});
      if (format_.version == 4) {
        cell_.push_back(std::byte{0});
      }
    }
  }
  cell_.resize(column.stored_length);
  std::ranges::copy(cell_, builder_.Fixed(column.fixed_offset, cell_.size()).begin());
}

void RowEncoder::EncodeVariable(const ColumnDefinition& column, const TextCodec& text, const Value& value) {
  cell_.clear();
  if (IsLongValue(column.shown.type)) {
    EncodeLong(column, text, value);
  } else {
    EncodeCell(column, text, value, cell_);
  }
  builder_.AddVariable(column.variable_index, cell_);
}

void RowEncoder::EncodeLong(const ColumnDefinition& column, const TextCodec& text, const Value& value) {
  std::vector<std::byte> content;
  EncodeCell(column, text, value, content);
  if (content.empty()) {
    return;
  }
  if (FitsInRow(content.size())) {
    cell_ = InlineLongValue(content);
    return;
  }
  cell_.resize(kLongValueHeader);
  long_cells_.push_back({&column, builder_.Size(), std::move(content)});
}

}  // namespace marlevo::access
