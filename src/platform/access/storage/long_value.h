// Values of Memo and Ole columns: within the row when short, else rows of pages of their own, one or a chain.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/access/bytes/bytes.h"
#include "platform/access/storage/row_space.h"
#include "platform/access/storage/storage.h"

namespace marlevo::access {

// The whole value. `field` is what the row holds; `page` is the row's, for errors.
void ReadLongValue(const Storage& file, std::uint32_t page, Bytes field, std::vector<std::byte>& value);

// Whether a value of this many bytes is stored in the row.
bool FitsInRow(std::size_t size);

// What the row holds of a value that fits there.
std::vector<std::byte> InlineLongValue(Bytes value);

// Makes the rows of a value that does not fit there and writes what the row holds of it to `field`, kLongValueHeader
// bytes (inside a statement).
void StoreLongValue(const Storage& file, RowSpace& space, Bytes value, MutableBytes field);

// Removes the rows of a value, if it has any (inside a statement).
void RemoveLongValue(const Storage& file, RowSpace& space, std::uint32_t page, Bytes field);

}  // namespace marlevo::access
