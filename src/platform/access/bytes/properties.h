// The properties of a table and its columns that Access keeps outside the table's definition, in the column LvProp of
// the table's row in MSysObjects: which values a column requires and allows, and much about how forms show it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/access/bytes/schema.h"
#include "platform/access/bytes/text_codec.h"

namespace marlevo::access {

struct ColumnRules {
  bool required = false;        // null is refused
  bool empty_allowed = true;    // an empty text is allowed
  std::string default_value;    // an expression of Access; DefaultOf evaluates the simple ones
  std::string validation_rule;  // an expression of Access that every value must satisfy
};

struct TableRules {
  std::map<std::string, ColumnRules> columns;  // by column name; a column without rules may be missing
  std::string validation_rule;                 // the table's own rule, which may compare several columns
};

// Empty `properties` hold no rules. Throws AccessError when the bytes are not in the form of properties.
TableRules ReadRules(const TextCodec& text, Bytes properties);

// A copy of the properties without validation rules and the messages that belong to them.
std::vector<std::byte> WithoutValidation(const TextCodec& text, Bytes properties);

// The value that a new row gets in a column for which the INSERT gives none. Understands the default values that are a
// number, a text in quotes, Yes or No; null when the column has no default. A text is kept in `buffer`. Throws
// AccessError for any other expression.
Value DefaultOf(const Column& column, std::string& buffer);

}  // namespace marlevo::access
