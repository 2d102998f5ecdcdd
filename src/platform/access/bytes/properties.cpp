#include "platform/access/bytes/properties.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/bytes.h"
#include "platform/base/text.h"

namespace marlevo::access {

namespace {

constexpr std::size_t kSignatureSize = 4;  // "KKD" or "MR2", and a NUL
// A block: u32 length (these four bytes included), u16 kind, content. The kind kNames lists names; blocks of all other
// kinds hold values.
constexpr std::size_t kBlockHeader = 6;
constexpr std::uint16_t kNames = 0x80;
// A value: u16 length (these two bytes included), u8 flag, u8 type, u16 place in the list of names, u16 length of the
// content, content.
constexpr std::size_t kEntryHeader = 8;

constexpr std::string_view kRequired = "Required";
constexpr std::string_view kAllowZeroLength = "AllowZeroLength";
constexpr std::string_view kDefaultValue = "DefaultValue";
constexpr std::string_view kValidationRule = "ValidationRule";
constexpr std::string_view kValidationText = "ValidationText";

class PropertyReader {
 public:
  explicit PropertyReader(Bytes bytes) : rest_(bytes) {}

  bool AtEnd() const { return rest_.empty(); }

  Bytes Take(std::size_t size) {
    if (size > rest_.size()) {
      throw AccessError("the properties of the table cannot be read", Fault::kDamaged);
    }
    const Bytes taken = rest_.first(size);
    rest_ = rest_.subspan(size);
    return taken;
  }

  // Takes a structure whose first bytes are its length, but at least `least` bytes.
  template <typename Length>
  Bytes TakeCounted(std::size_t least) {
    PropertyReader ahead(rest_);
    const auto size = std::size_t{Load<Length>(ahead.Take(sizeof(Length)).data())};
    return Take(std::max(size, least));
  }

  Bytes TakeName() { return Take(LoadU16(Take(2).data())); }

 private:
  Bytes rest_;
};

struct Property {
  std::string name;
  ColumnType type;
  Bytes value;
  Bytes whole;
};

struct Block {
  Bytes head;         // header and owner; a list of names as a whole
  std::string owner;  // a column's name, or empty for the table
  std::vector<Property> properties;
};

Block ParseValues(const TextCodec& text, const std::vector<std::string>& names, Bytes whole) {
  Block block;
  PropertyReader reader(whole.subspan(kBlockHeader));
  if (!reader.AtEnd()) {
    const Bytes owner = reader.TakeCounted<std::uint32_t>(4);
    if (owner.size() > 6) {
      block.owner = text.DecodeName(PropertyReader(owner.subspan(4)).TakeName());
    }
    block.head = whole.first(kBlockHeader + owner.size());
  } else {
    block.head = whole;
  }
  while (!reader.AtEnd()) {
    const Bytes entry = reader.TakeCounted<std::uint16_t>(kEntryHeader);
    const std::size_t name = LoadU16(&entry[4]);
    block.properties.push_back({.name = name < names.size() ? names[name] : std::string(),
                                .type = static_cast<ColumnType>(LoadU8(&entry[3])),
                                .value = PropertyReader(entry.subspan(6)).TakeName(),
                                .whole = entry});
  }
  return block;
}

std::vector<Block> Parse(const TextCodec& text, Bytes properties) {
  std::vector<Block> blocks;
  if (properties.empty()) {
    return blocks;
  }
  PropertyReader reader(properties);
  reader.Take(kSignatureSize);
  std::vector<std::string> names;
  while (!reader.AtEnd()) {
    const Bytes whole = reader.TakeCounted<std::uint32_t>(kBlockHeader);
    if (LoadU16(&whole[4]) != kNames) {
      blocks.push_back(ParseValues(text, names, whole));
      continue;
    }
    names.clear();
    for (PropertyReader list(whole.subspan(kBlockHeader)); !list.AtEnd();) {
      names.push_back(text.DecodeName(list.TakeName()));
    }
    blocks.push_back({.head = whole, .owner = {}, .properties = {}});
  }
  return blocks;
}

std::string TextOf(const TextCodec& text, const Property& property) {
  std::string buffer;
  return std::string(text.Decode(property.value, buffer));
}

bool IsYes(const Property& property) {
  return !property.value.empty() && property.value[0] != std::byte{0};
}

// Reads a text in single or double quotes; a quote within the text is doubled. False for anything else.
bool Unquote(std::string_view expression, std::string& text) {
  const char quote = expression.front();
  if ((quote != '"' && quote != '\'') || expression.size() < 2 || expression.back() != quote) {
    return false;
  }
  text.clear();
  expression = expression.substr(1, expression.size() - 2);
  for (std::size_t i = 0; i < expression.size(); ++i) {
    if (expression[i] == quote && (++i == expression.size() || expression[i] != quote)) {
      return false;
    }
    text += expression[i];
  }
  return true;
}

}  // namespace

TableRules ReadRules(const TextCodec& text, Bytes properties) {
  TableRules rules;
  for (const Block& block : Parse(text, properties)) {
    for (const Property& property : block.properties) {
      if (block.owner.empty()) {
        if (property.name == kValidationRule) {
          rules.validation_rule = TextOf(text, property);
        }
        continue;
      }
      ColumnRules& column = rules.columns[block.owner];
      if (property.name == kRequired) {
        column.required = IsYes(property);
      } else if (property.name == kAllowZeroLength) {
        column.empty_allowed = IsYes(property);
      } else if (property.name == kDefaultValue) {
        column.default_value = TextOf(text, property);
      } else if (property.name == kValidationRule) {
        column.validation_rule = TextOf(text, property);
      }
    }
  }
  return rules;
}

std::vector<std::byte> WithoutValidation(const TextCodec& text, Bytes properties) {
  std::vector<std::byte> kept;
  const auto append = [&kept](Bytes bytes) { kept.insert(kept.end(), bytes.begin(), bytes.end()); };
  append(properties.first(std::min(properties.size(), kSignatureSize)));
  for (const Block& block : Parse(text, properties)) {
    const std::size_t begin = kept.size();
    append(block.head);
    for (const Property& property : block.properties) {
      if (property.name != kValidationRule && property.name != kValidationText) {
        append(property.whole);
      }
    }
    StoreU32(&kept[begin], kept.size() - begin);
  }
  return kept;
}

Value DefaultOf(const Column& column, std::string& buffer) {
  std::string_view expression = column.default_value;
  const auto trim = [&expression] {
    while (!expression.empty() && expression.front() == ' ') {
      expression.remove_prefix(1);
    }
    while (!expression.empty() && expression.back() == ' ') {
      expression.remove_suffix(1);
    }
  };
  trim();
  if (expression.starts_with('=')) {
    expression.remove_prefix(1);
    trim();
  }
  if (expression.empty() || SameName(expression, "Null")) {
    return {};
  }
  const bool text = column.type == ColumnType::kText || column.type == ColumnType::kMemo;
  if (text && Unquote(expression, buffer)) {
    return std::string_view(buffer);
  }
  double number = 0;
  const auto [end, error] = std::from_chars(expression.data(), expression.data() + expression.size(), number);
  if (error == std::errc{} && end == expression.data() + expression.size()) {
    buffer = expression;
    return text ? Value(std::string_view(buffer)) : Value(number);
  }
  if (column.type == ColumnType::kBoolean) {
    if (SameName(expression, "Yes") || SameName(expression, "True") || SameName(expression, "On")) {
      return true;
    }
    if (SameName(expression, "No") || SameName(expression, "False") || SameName(expression, "Off")) {
      return false;
    }
  }
  throw AccessError("the default value of column " + column.name + " is the expression " + column.default_value +
                        ", which only Access can work out; give the column a value, or make its default a plain value",
                    Fault::kNeedsAccess);
}

}  // namespace marlevo::access
