// What Access keeps of a table and its columns beside the definition, in the column LvProp of the table's row in
// MSysObjects: which values a column demands and takes, and much about how forms show it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/access/bytes/schema.h"
#include "platform/access/bytes/text_codec.h"

namespace marlevo::access {

struct ColumnRules {
  bool required = false;        // null is refused
  bool empty_allowed = true;    // an empty text is taken
  std::string default_value;    // an expression, as DefaultOf reads it
  std::string validation_rule;  // an expression of Access that values have to meet
};

struct TableRules {
  std::map<std::string, ColumnRules> columns;  // by the columns' names; those without any rule may be missing
  std::string validation_rule;                 // about several columns
};

// No bytes give no rules. Throws AccessError when the bytes are no properties.
TableRules ReadRules(const TextCodec& text, Bytes properties);

// The same properties without validation rules and the messages that belong to them.
std::vector<std::byte> WithoutValidation(const TextCodec& text, Bytes properties);

// What a new row gets in a column of which nothing is said: null, or the default value where it is a number, a text in
// quotes, or Yes or No. The text lives in `buffer`. Throws AccessError for any other expression.
Value DefaultOf(const Column& column, std::string& buffer);

}  // namespace marlevo::access
