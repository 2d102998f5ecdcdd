#include "platform/database/recordset_rows.h"

#include <bit>
#include <cstring>
#include <utility>

#include "platform/base/operation_error.h"
#include "platform/base/text.h"

namespace marlevo {
namespace {

constexpr std::size_t kBlockSize = 256 * 1024;

// Tags 1, 2, 4 and 8: an integer in that many bytes, lowest first, as this machine stores it.
static_assert(std::endian::native == std::endian::little);
constexpr char kRealTag = 9;
constexpr char kTextTag = 10;
constexpr char kNullTag = 11;

}  // namespace

Recordset::Rows::Rows(std::string subject, std::vector<std::string> names)
    : subject_(std::move(subject)), names_(std::move(names)), cells_(names_.size()) {
  blocks_.emplace_back();
}

void Recordset::Rows::AddNull() {
  blocks_.back().push_back(kNullTag);
}

void Recordset::Rows::AddInteger(std::int64_t value) {
  const char size = std::in_range<std::int8_t>(value)    ? 1
                    : std::in_range<std::int16_t>(value) ? 2
                    : std::in_range<std::int32_t>(value) ? 4
                                                         : 8;
  char bytes[1 + sizeof value] = {size};
  std::memcpy(bytes + 1, &value, sizeof value);
  blocks_.back().append(bytes, 1 + size);
}

void Recordset::Rows::AddReal(double value) {
  char bytes[1 + sizeof value] = {kRealTag};
  std::memcpy(bytes + 1, &value, sizeof value);
  blocks_.back().append(bytes, sizeof bytes);
}

void Recordset::Rows::AddText(std::string_view text) {
  const auto size = static_cast<std::uint32_t>(text.size());
  char head[1 + sizeof size] = {kTextTag};
  std::memcpy(head + 1, &size, sizeof size);
  blocks_.back().append(head, sizeof head).append(text);
}

void Recordset::Rows::EndRow() {
  ++row_count_;
  if (blocks_.back().size() >= kBlockSize) {
    blocks_.emplace_back().reserve(kBlockSize + kBlockSize / 8);
  }
}

void Recordset::Rows::Rewind() {
  blocks_.back().shrink_to_fit();
  row_ = block_ = place_ = 0;
  ReadRow();
}

void Recordset::Rows::MoveNext() {
  if (AtEnd()) {
    return;
  }
  ++row_;
  if (place_ == blocks_[block_].size()) {
    blocks_[block_++] = std::string();  // a walk never comes back to a block
    place_ = 0;
  }
  ReadRow();
}

void Recordset::Rows::ReadRow() {
  if (AtEnd()) {
    return;
  }
  const char* bytes = blocks_[block_].data();
  for (Cell& cell : cells_) {
    const std::uint8_t tag = bytes[place_++];
    if (tag == kNullTag) {
      cell.kind = Cell::Kind::kNull;
    } else if (tag == kTextTag) {
      std::uint32_t size = 0;
      std::memcpy(&size, bytes + place_, sizeof size);
      cell.kind = Cell::Kind::kText;
      cell.text = {bytes + place_ + sizeof size, size};
      place_ += sizeof size + size;
    } else if (tag == kRealTag) {
      cell.kind = Cell::Kind::kReal;
      std::memcpy(&cell.real, bytes + place_, sizeof cell.real);
      place_ += sizeof cell.real;
    } else {
      const std::size_t size = tag;
      const bool negative = (bytes[place_ + size - 1] & 0x80) != 0;  // the highest byte has the sign
      cell.kind = Cell::Kind::kInteger;
      cell.integer = negative ? -1 : 0;
      std::memcpy(&cell.integer, bytes + place_, size);
      place_ += size;
    }
  }
}

const Recordset::Rows::Cell& Recordset::Rows::Field(std::string_view name) const {
  if (AtEnd()) {
    throw DatabaseError("讀取資料庫", subject_, "no current row to read '" + std::string(name) + "' from");
  }
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (SameName(names_[i], name)) {
      return cells_[i];
    }
  }
  throw DatabaseError("讀取資料庫", subject_, "the result has no field '" + std::string(name) + "'");
}

}  // namespace marlevo
