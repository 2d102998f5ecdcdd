// Keys of index entries. The values of a row's indexed columns are encoded as bytes in such a way that comparing keys
// byte by byte gives the order of the index. A unique index forbids two equal keys.
//
// Each column adds one part: 00 for null; otherwise 7F and the encoded value. In a descending column all bytes of the
// part are complemented. Example: the Long 5 is stored as 05 00 00 00. In a key the highest byte comes first and its
// sign bit is flipped, so that negative numbers come before positive ones: 7F 80 00 00 05. Of -1 it is 7F 7F FF FF FF,
// which is less. In a descending column 5 becomes 80 7F FF FF FA.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/access/bytes/schema.h"

namespace marlevo::access {

using Key = std::vector<std::byte>;

// How an index orders the texts of a column.
enum class TextOrder {
  kGeneralJet3,  // "General" of Jet 3, texts in code page 1252
  kAsciiJet3,    // "General" of Jet 3, texts in another code page, of which only the order of ASCII is known
  kGeneralJet4,  // "General" of Jet 4
  kUnknown,      // any other language
};

struct KeyColumn {
  std::string name;  // for messages
  ColumnType type;
  TextOrder order;  // counts for Text columns only
  bool descending;
};

// A value on its way into a key. Null: std::monostate. Boolean: bool. Text of Jet 4: UTF-16 units. All others, Text of
// Jet 3 included: the bytes that the row stores.
using KeyValue = std::variant<std::monostate, bool, std::u16string_view, Bytes>;

// Why no value of this column can be encoded; empty when the values can be.
std::string KeyRefusal(const KeyColumn& column);

// Appends the part of `column`, which has no KeyRefusal, to a key. Throws ValueError when the value holds a character
// whose place in the order is not known, AccessError when the value has not the length of its type.
void AppendKey(const KeyColumn& column, const KeyValue& value, Key& key);

}  // namespace marlevo::access
