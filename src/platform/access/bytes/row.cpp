#include "platform/access/bytes/row.h"

#include <algorithm>
#include <string>

#include "platform/access/bytes/access_error.h"

namespace marlevo::access {

namespace {

constexpr std::size_t kBlock = 256;    // a Jet 3 offset is one byte: its value modulo 256
constexpr std::byte kDummyJump{0xFF};  // fills an entry of the jump table that is not needed

std::size_t LoadCount(const Format& format, const std::byte* at) {
  return format.row_number_width == 1 ? LoadU8(at) : LoadU16(at);
}

}  // namespace

RowView::RowView(const Format& format, std::uint32_t page, Bytes row, bool has_variable_columns)
    : format_(&format), page_(page), row_(row) {
  if (row.size() < format.row_number_width) {
    throw AccessError(page, "a row of " + std::to_string(row.size()) + " bytes is too short");
  }
  columns_ = LoadCount(format, row.data());
  const std::size_t mask_size = (columns_ + 7) / 8;
  if (row.size() < format.row_number_width + mask_size) {
    throw AccessError(page, "a row of " + std::to_string(row.size()) + " bytes cannot hold its null mask");
  }
  mask_ = row.size() - mask_size;
  data_end_ = mask_;
  if (has_variable_columns) {
    FindVariablePart();
  }
}

void RowView::FindVariablePart() {
  const std::size_t width = format_->row_number_width;
  const bool jet3 = format_->version == 3;
  const std::size_t longest_jumps = jet3 ? (row_.size() - 1) / kBlock : 0;
  // Column count, end of data, jump table, variable count.
  const std::size_t least = width + width + longest_jumps + width;
  if (mask_ < least) {
    throw AccessError(page_, "a row of " + std::to_string(row_.size()) + " bytes cannot hold its offsets");
  }
  const std::size_t count_at = mask_ - width;
  variables_ = LoadCount(*format_, &row_[count_at]);
  offsets_ = count_at - longest_jumps - width;
  if (offsets_ < width + width * variables_) {
    throw AccessError(page_, "a row of " + std::to_string(row_.size()) + " bytes cannot hold " +
                                 std::to_string(variables_) + " variable columns");
  }
  data_end_ = offsets_ - width * variables_;
  jumps_ = std::min(longest_jumps, data_end_ / kBlock);
}

Bytes RowView::Fixed(std::size_t offset, std::size_t size) const {
  const std::size_t start = std::min(format_->row_number_width + offset, data_end_);
  return row_.subspan(start, std::min(size, data_end_ - start));
}

// Jet 3 stores an offset in one byte. What lies above 255 follows from the jump table: entry n (from 1) is the first
// variable column whose offset is at least 256 * n. Example: offsets 20, 200, 300, 600 are stored as 20, 200, 44, 88
// with the jump table 2, 3: column 3 comes after both jumps, so its offset is 88 + 2 * 256 = 600.
std::size_t RowView::VariableOffset(std::size_t index) const {
  if (format_->version == 4) {
    return LoadU16(&row_[offsets_ - 2 * index]);
  }
  std::size_t offset = LoadU8(&row_[offsets_ - index]);
  const std::size_t count_at = mask_ - 1;
  for (std::size_t jump = 1; jump <= jumps_ && LoadU8(&row_[count_at - jump]) <= index; ++jump) {
    offset += kBlock;
  }
  return offset;
}

Bytes RowView::Variable(std::size_t index) const {
  if (index >= variables_) {
    return {};
  }
  const std::size_t start = VariableOffset(index);
  const std::size_t end = VariableOffset(index + 1);
  if (start > end || end > data_end_) {
    throw AccessError(page_, "a row's variable column " + std::to_string(index) + " lies at " + std::to_string(start) +
                                 " to " + std::to_string(end) + " of " + std::to_string(data_end_) + " bytes");
  }
  return row_.subspan(start, end - start);
}

RowBuilder::RowBuilder(const Format& format, std::size_t columns, std::size_t variable_columns, std::size_t fixed_size)
    : format_(format), columns_(columns), variable_columns_(variable_columns), fixed_size_(fixed_size) {
  Reset();
}

void RowBuilder::Reset() {
  row_.assign(format_.row_number_width + fixed_size_, std::byte{0});
  if (format_.row_number_width == 1) {
    StoreU8(row_.data(), columns_);
  } else {
    StoreU16(row_.data(), columns_);
  }
  offsets_.clear();
  mask_.assign((columns_ + 7) / 8, std::byte{0});
}

void RowBuilder::SetMask(std::size_t number) {
  mask_[number / 8] |= std::byte{1} << number % 8;
}

MutableBytes RowBuilder::Fixed(std::size_t offset, std::size_t size) {
  return MutableBytes(row_).subspan(format_.row_number_width + offset, size);
}

void RowBuilder::AddVariable(std::size_t index, Bytes value) {
  offsets_.resize(index + 1, row_.size());
  row_.insert(row_.end(), value.begin(), value.end());
}

void RowBuilder::PutOffsets() {
  offsets_.resize(variable_columns_ + 1, row_.size());  // the last one is the end of data
  const auto put_u8 = [this](std::size_t number) { StoreU8(&row_.emplace_back(), number); };
  if (format_.version == 4) {
    for (auto offset = offsets_.rbegin(); offset != offsets_.rend(); ++offset) {
      put_u8(*offset & 0xFF);
      put_u8(*offset >> 8);
    }
    put_u8(variable_columns_ & 0xFF);
    put_u8(variable_columns_ >> 8);
    return;
  }
  const std::size_t data_end = row_.size();
  for (auto offset = offsets_.rbegin(); offset != offsets_.rend(); ++offset) {
    put_u8(*offset & 0xFF);
  }
  // The number of jump entries follows from the length of the row, which includes the jump entries themselves.
  const std::size_t without_jumps = row_.size() + 1 + mask_.size();
  std::size_t jumps = 0;
  while ((without_jumps + jumps - 1) / kBlock > jumps) {
    ++jumps;
  }
  const std::size_t real_jumps = data_end / kBlock;
  row_.insert(row_.end(), jumps - real_jumps, kDummyJump);
  for (std::size_t jump = real_jumps; jump > 0; --jump) {
    put_u8(std::ranges::lower_bound(offsets_, jump * kBlock) - offsets_.begin());
  }
  put_u8(variable_columns_);
}

std::vector<std::byte>& RowBuilder::Finish() {
  if (variable_columns_ > 0) {
    PutOffsets();
  }
  row_.insert(row_.end(), mask_.begin(), mask_.end());
  return row_;
}

}  // namespace marlevo::access
