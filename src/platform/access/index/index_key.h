// Keys of index entries: bytes made of the values of a row's indexed columns so that comparing them as plain bytes
// gives the order of the index, and equal keys are what a unique index forbids.
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
  kAsciiJet3,    // the same, but the texts are in another code page: of that only the ASCII part is known
  kGeneralJet4,  // "General" of Jet 4
  kUnknown,      // any other language
};

struct KeyColumn {
  std::string name;  // for messages
  ColumnType type;
  TextOrder order;  // of Text
  bool descending;
};

// A value as the row stores it. Boolean: bool. Text of Jet 4: UTF-16. All others, also Text of Jet 3: the
// stored bytes. std::monostate is null.
using KeyValue = std::variant<std::monostate, bool, std::u16string_view, Bytes>;

// Why no keys can be made for a column at all; empty when they can.
std::string KeyRefusal(const KeyColumn& column);

// Appends the part of `column`, which has no KeyRefusal, to an entry's key. A ValueError when the value holds a
// character whose place in the order is not known, an AccessError when it does not have the length of its type.
void AppendKey(const KeyColumn& column, const KeyValue& value, Key& key);

}  // namespace marlevo::access
