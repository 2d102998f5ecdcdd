// Values of Memo and Ole columns. The table's row always holds a field of at least kLongValueHeader bytes. A short
// value follows in that field. A longer one lies on pages of the column's own, as one row or as a chain of rows, each
// of which points to the next; the field then points to the first.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/access/bytes/bytes.h"
#include "platform/access/storage/row_space.h"
#include "platform/access/storage/storage.h"

namespace marlevo::access {

// Reads the whole value into `value`. `field` is what the table's row holds; `page`, the row's page, is named in
// errors.
void ReadLongValue(const Storage& file, std::uint32_t page, Bytes field, std::vector<std::byte>& value);

// Whether a value of this many bytes is stored in the table's row.
bool FitsInRow(std::size_t size);

// The field for a value that fits in the row.
std::vector<std::byte> InlineLongValue(Bytes value);

// Stores a value that does not fit in the row on pages of `space` and writes the field for it, kLongValueHeader bytes,
// to `field`. Inside a statement.
void StoreLongValue(const Storage& file, RowSpace& space, Bytes value, MutableBytes field);

// Removes the value from the pages of `space`, unless the field itself holds it. Inside a statement.
void RemoveLongValue(const Storage& file, RowSpace& space, std::uint32_t page, Bytes field);

}  // namespace marlevo::access
