#include "platform/access/storage/long_value.h"

#include <algorithm>
#include <bit>
#include <string>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/data_page.h"

namespace marlevo::access {

namespace {

// The first four bytes of a field: two flags, and the length of the value in the other 30 bits.
constexpr std::uint32_t kInline = 0x8000'0000;     // the value follows in the field
constexpr std::uint32_t kSingleRow = 0x4000'0000;  // the value is one row; without either flag it is a chain of rows
constexpr std::uint32_t kLength = 0x3FFF'FFFF;
constexpr std::size_t kRowPointerAt = 4;
constexpr std::size_t kMaxInline = 64;    // longer values are not stored in the table's row
constexpr std::size_t kChainPointer = 4;  // bytes at the start of a chained row that point to the next one

struct Field {
  std::uint32_t flags;
  std::size_t length;
  RowPointer first;
};

Field ParseField(const Storage& file, std::uint32_t page, Bytes field) {
  if (field.size() < kLongValueHeader) {
    throw AccessError(page, "a long value's field has only " + std::to_string(field.size()) + " bytes");
  }
  const std::uint32_t word = LoadU32(field.data());
  const Field parsed{word & ~kLength, word & kLength, LoadRowPointer(&field[kRowPointerAt])};
  const std::size_t most = (parsed.flags & kInline) != 0
                               ? field.size() - kLongValueHeader
                               : file.Pages().PageCount() * std::size_t{file.Layout().page_size};
  if (parsed.length > most) {
    throw AccessError(page, "a long value cannot have " + std::to_string(parsed.length) + " bytes");
  }
  return parsed;
}

// Calls `visit` for each row of a value that is not inline, with that row's part of the value. To notice a damaged
// chain that runs in a circle, the row after the 1st, 2nd, 4th, 8th ... visited one is marked, and no row may lead to
// the marked one. Example: a chain 1 2 3 4 5 3 4 5 ... marks row 5 as the one after the 4th; three rows later row 4
// leads to row 5 again.
template <typename Visit>
void ForEachPart(const Storage& file, const Field& field, Visit visit) {
  const bool chain = (field.flags & kSingleRow) == 0;
  std::size_t rest = field.length;
  std::size_t rows = 0;
  RowPointer marked = field.first;
  for (RowPointer at = field.first; rest > 0;) {
    const pager::PageRef page = file.Read(at.page);
    const DataPage data(file.Layout(), at.page, page.Bytes());
    const Bytes row = data.Row(at.slot);
    if (data.Owner() != kOwnerLongValues || row.size() <= (chain ? kChainPointer : 0)) {
      throw AccessError(at.page, "row " + std::to_string(at.slot) + " is no part of a long value");
    }
    const Bytes part = row.subspan(chain ? kChainPointer : 0);
    const Bytes taken = part.first(std::min(part.size(), rest));
    const RowPointer next = chain ? LoadRowPointer(row.data()) : RowPointer{};
    rest -= taken.size();
    if (rest > 0 && next == RowPointer{}) {
      throw AccessError(at.page, "a long value ends " + std::to_string(rest) + " bytes too early");
    }
    if (rest > 0 && next == marked) {
      throw AccessError(at.page, "a long value leads back into itself with " + std::to_string(rest) + " bytes to come");
    }
    if (std::has_single_bit(++rows)) {
      marked = next;
    }
    visit(at, taken);
    at = next;
  }
}

}  // namespace

void ReadLongValue(const Storage& file, std::uint32_t page, Bytes field, std::vector<std::byte>& value) {
  value.clear();
  const Field parsed = ParseField(file, page, field);
  if ((parsed.flags & kInline) != 0) {
    const Bytes content = field.subspan(kLongValueHeader, parsed.length);
    value.assign(content.begin(), content.end());
    return;
  }
  ForEachPart(file, parsed, [&value](RowPointer, Bytes part) { value.insert(value.end(), part.begin(), part.end()); });
}

bool FitsInRow(std::size_t size) {
  return size <= kMaxInline;
}

std::vector<std::byte> InlineLongValue(Bytes value) {
  std::vector<std::byte> field(kLongValueHeader + value.size());
  StoreU32(field.data(), value.size() | kInline);
  std::ranges::copy(value, field.begin() + kLongValueHeader);
  return field;
}

void StoreLongValue(const Storage& file, RowSpace& space, Bytes value, MutableBytes field) {
  std::ranges::fill(field, std::byte{0});
  const std::size_t most = file.Layout().max_long_value_row;
  if (value.size() <= most) {
    StoreU32(field.data(), value.size() | kSingleRow);
    StoreRowPointer(&field[kRowPointerAt], space.Add(value));
    return;
  }
  // From the end, so that each part can point to the next one.
  const std::size_t chunk = most - kChainPointer;
  RowPointer next;
  for (std::size_t end = value.size(); end > 0;) {
    const std::size_t start = (end - 1) / chunk * chunk;
    std::vector<std::byte> row(kChainPointer);
    StoreRowPointer(row.data(), next);
    row.insert(row.end(), value.begin() + start, value.begin() + end);
    next = space.Add(row);
    end = start;
  }
  StoreU32(field.data(), value.size());
  StoreRowPointer(&field[kRowPointerAt], next);
}

void RemoveLongValue(const Storage& file, RowSpace& space, std::uint32_t page, Bytes field) {
  const Field parsed = ParseField(file, page, field);
  if ((parsed.flags & kInline) != 0) {
    return;
  }
  std::vector<RowPointer> rows;
  ForEachPart(file, parsed, [&rows](RowPointer row, Bytes) { rows.push_back(row); });
  for (const RowPointer row : rows) {
    space.Remove(row);
  }
}

}  // namespace marlevo::access
