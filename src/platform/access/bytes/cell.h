// One value's bytes. Of Memo and Ole these are the value's own, wherever they are kept (see long_value.h).
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

// Bytes that a value of the type has; 0 when that varies. A Boolean has none: it is its null bit.
std::size_t WidthOf(ColumnType type);

bool IsInteger(ColumnType type);  // Byte, Integer, Long
bool IsNumber(ColumnType type);   // those and Currency, Single, Double, DateTime, Numeric
bool IsLongValue(ColumnType type);
bool IsKnown(ColumnType type);  // not one of the engine's internal types

// `bytes` holds at least WidthOf bytes. Of a column that IsInteger / IsNumber.
std::int64_t DecodeInteger(ColumnType type, Bytes bytes);
double DecodeReal(const ColumnDefinition& column, Bytes bytes);

// The text of a Text column's bytes; the exact decimal text of Currency and Numeric; a Guid in braces. The result is
// part of `bytes` or of `buffer`.
std::string_view DecodeText(const ColumnDefinition& column, const TextCodec& text, Bytes bytes, std::string& buffer);

// Appends the value's bytes. `value` is not null. Throws ValueError when it does not fit the column.
void EncodeCell(const ColumnDefinition& column, const TextCodec& text, const Value& value, std::vector<std::byte>& out);

// Of a Boolean column.
bool EncodeBoolean(const ColumnDefinition& column, const Value& value);

}  // namespace marlevo::access
