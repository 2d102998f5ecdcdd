// The bytes of one value and what they mean. For Memo and Ole columns these are the bytes of the whole value, whether
// the row holds them or pages of their own (see long_value.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/schema.h"
#include "platform/access/bytes/table_definition.h"
#include "platform/access/bytes/text_codec.h"

namespace marlevo::access {

// How many bytes each value of the type has; 0 when they differ in length. A Boolean has no bytes either: its bit in
// the null mask is the value.
std::size_t WidthOf(ColumnType type);

bool IsInteger(ColumnType type);    // Byte, Integer, Long
bool IsNumber(ColumnType type);     // the integers, Currency, Single, Double, DateTime, Numeric
bool IsLongValue(ColumnType type);  // Memo, Ole
bool IsKnown(ColumnType type);      // every type but the internal ones that ColumnType does not name

// For a column whose type IsInteger or IsNumber, respectively. `bytes` has at least WidthOf(type) bytes.
std::int64_t DecodeInteger(ColumnType type, Bytes bytes);
double DecodeReal(const ColumnDefinition& column, Bytes bytes);

// The text of a Text or Memo value; the exact decimal text of Currency and Numeric; a Guid in braces. The result is a
// view of `bytes` or of `buffer`.
std::string_view DecodeText(const ColumnDefinition& column, const TextCodec& text, Bytes bytes, std::string& buffer);

// Appends the bytes of `value`, which is not null. Throws ValueError when the value does not fit the column.
void EncodeCell(const ColumnDefinition& column, const TextCodec& text, const Value& value, std::vector<std::byte>& out);

// The value that a Boolean column gets; null counts as false.
bool EncodeBoolean(const ColumnDefinition& column, const Value& value);

}  // namespace marlevo::access
