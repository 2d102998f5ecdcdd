#include "platform/access/bytes/cell.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "platform/access/bytes/access_error.h"

namespace marlevo::access {

namespace {

// Characters of a Memo and bytes of an Ole value. The stored length has 30 bits and counts bytes; UTF-16 takes two
// bytes for each character.
constexpr std::size_t kLongestLongValue = 0x1FFF'FFFF;
constexpr std::size_t kCurrencyScale = 4;
constexpr std::size_t kGuidSize = 16;
// The order in which a Guid's stored bytes are printed.
constexpr std::array<std::size_t, kGuidSize> kGuidOrder{3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
constexpr std::string_view kGuidShape = "{########-####-####-####-############}";

// Numeric: a sign, then four 32-bit groups, the most significant first.
constexpr std::size_t kNumericGroups = 4;
constexpr std::byte kNumericNegative{0x80};
using Magnitude = std::array<std::uint32_t, kNumericGroups>;

Magnitude LoadMagnitude(Bytes bytes) {
  Magnitude magnitude;
  for (std::size_t i = 0; i < kNumericGroups; ++i) {
    magnitude[i] = LoadU32(&bytes[1 + 4 * i]);
  }
  return magnitude;
}

std::string Digits(Magnitude magnitude) {
  std::string digits;
  do {
    std::uint64_t rest = 0;
    for (std::uint32_t& group : magnitude) {
      const std::uint64_t part = rest << 32 | group;
      group = static_cast<std::uint32_t>(part / 10);
      rest = part % 10;
    }
    digits += static_cast<char>('0' + rest);
  } while (magnitude != Magnitude{});
  std::ranges::reverse(digits);
  return digits;
}

// The digits with a decimal point `scale` places from the right, without trailing zeros: "1250", 2 gives "12.5".
std::string DecimalText(bool negative, std::string digits, std::size_t scale) {
  if (digits.size() <= scale) {
    digits.insert(0, scale + 1 - digits.size(), '0');
  }
  const std::size_t point = digits.size() - scale;
  const std::size_t end = std::max(point, digits.find_last_not_of('0') + 1);
  std::string text = negative ? "-" : "";
  text.append(digits, 0, point);
  if (end > point) {
    text += '.';
    text.append(digits, point, end - point);
  }
  return text == "-0" ? "0" : text;
}

// The digits of the amount without its sign. Negating the smallest number would overflow, so the sign is cut off
// instead.
std::string CurrencyDigits(std::int64_t amount) {
  const std::string text = std::to_string(amount);
  return amount < 0 ? text.substr(1) : text;
}

[[noreturn]] void Refuse(const ColumnDefinition& column, const std::string& why, Fault kind = Fault::kNumber) {
  throw ValueError("column " + column.shown.name + ": " + why, kind);
}

[[noreturn]] void RefuseKind(const ColumnDefinition& column) {
  Refuse(column, "a value of another kind is expected", Fault::kOther);
}

std::int64_t WholeNumber(const ColumnDefinition& column, const Value& value, std::int64_t least, std::int64_t most) {
  std::int64_t number = 0;
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    number = *integer;
  } else if (const auto* real = std::get_if<double>(&value)) {
    if (!(std::abs(*real) < 9e15) || std::trunc(*real) != *real) {
      Refuse(column, "a whole number from " + std::to_string(least) + " to " + std::to_string(most) + " is expected");
    }
    number = static_cast<std::int64_t>(*real);
  } else {
    RefuseKind(column);
  }
  if (number < least || number > most) {
    Refuse(column, std::to_string(number) + " is outside " + std::to_string(least) + " to " + std::to_string(most));
  }
  return number;
}

double RealNumber(const ColumnDefinition& column, const Value& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    return static_cast<double>(*integer);
  }
  if (const auto* real = std::get_if<double>(&value); real != nullptr) {
    if (!std::isfinite(*real)) {
      Refuse(column, "the number is not finite");
    }
    return *real;
  }
  RefuseKind(column);
}

// A number times 10^scale, as decimal digits.
struct ScaledDigits {
  bool negative;
  std::string digits;  // without leading zeros
};

// Refuses a value with more than `scale` decimal places.
ScaledDigits Scale(const ColumnDefinition& column, const Value& value, std::size_t scale) {
  char buffer[400];  // the largest double has 309 digits, the smallest 324 places and 17 digits
  std::to_chars_result written{};
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    written = std::to_chars(buffer, buffer + sizeof buffer, *integer);
  } else {
    written = std::to_chars(buffer, buffer + sizeof buffer, RealNumber(column, value), std::chars_format::fixed);
  }
  std::string digits(buffer, written.ptr);
  const bool negative = digits.starts_with('-');
  if (negative) {
    digits.erase(0, 1);
  }
  std::size_t places = 0;
  if (const std::size_t point = digits.find('.'); point != std::string::npos) {
    places = digits.size() - point - 1;
    digits.erase(point, 1);
  }
  if (places > scale) {
    Refuse(column, "at most " + std::to_string(scale) + " decimal places are stored");
  }
  digits.append(scale - places, '0');
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
  return {negative, digits};
}

std::int64_t Currency(const ColumnDefinition& column, const Value& value) {
  const ScaledDigits scaled = Scale(column, value, kCurrencyScale);
  const std::string text = (scaled.negative ? "-0" : "0") + scaled.digits;
  std::int64_t amount = 0;
  if (std::from_chars(text.data(), text.data() + text.size(), amount).ec != std::errc{}) {
    Refuse(column, "the amount is too large");
  }
  return amount;
}

Magnitude NumericMagnitude(const ColumnDefinition& column, const std::string& digits) {
  if (digits.size() > std::min<std::size_t>(column.precision, 28)) {
    Refuse(column, "at most " + std::to_string(column.precision) + " digits are stored");
  }
  Magnitude magnitude{};
  for (const char digit : digits) {
    std::uint64_t carry = digit - '0';
    for (auto group = magnitude.rbegin(); group != magnitude.rend(); ++group) {
      carry += std::uint64_t{*group} * 10;
      *group = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
  }
  return magnitude;
}

template <typename Number>
void Append(std::vector<std::byte>& out, Number number) {
  out.resize(out.size() + sizeof number);
  Store(&out[out.size() - sizeof number], number);
}

template <typename Number>
void AppendWhole(const ColumnDefinition& column, const Value& value, std::vector<std::byte>& out) {
  using Limits = std::numeric_limits<Number>;
  Append(out, static_cast<Number>(WholeNumber(column, value, Limits::min(), Limits::max())));
}

void AppendNumeric(const ColumnDefinition& column, const Value& value, std::vector<std::byte>& out) {
  const ScaledDigits scaled = Scale(column, value, column.scale);
  const Magnitude magnitude = NumericMagnitude(column, scaled.digits);
  out.push_back(scaled.negative && !scaled.digits.empty() ? kNumericNegative : std::byte{0});
  for (const std::uint32_t group : magnitude) {
    Append(out, group);
  }
}

void AppendSingle(const ColumnDefinition& column, const Value& value, std::vector<std::byte>& out) {
  const double real = RealNumber(column, value);
  if (std::abs(real) > double{std::numeric_limits<float>::max()}) {
    Refuse(column, "the number is too large");
  }
  Append(out, static_cast<float>(real));
}

void CheckLength(const ColumnDefinition& column, std::size_t length, const std::string& unit) {
  const std::size_t most = IsLongValue(column.shown.type) ? kLongestLongValue : column.shown.length;
  if (length > most) {
    Refuse(column, "at most " + std::to_string(most) + " " + unit + " are stored", Fault::kTextTooLong);
  }
}

void AppendBinary(const ColumnDefinition& column, const Value& value, std::vector<std::byte>& out) {
  const auto* bytes = std::get_if<Bytes>(&value);
  if (bytes == nullptr) {
    RefuseKind(column);
  }
  CheckLength(column, bytes->size(), "bytes");
  out.insert(out.end(), bytes->begin(), bytes->end());
}

void AppendText(const ColumnDefinition& column, const TextCodec& codec, const Value& value,
                std::vector<std::byte>& out) {
  const auto* text = std::get_if<std::string_view>(&value);
  if (text == nullptr) {
    RefuseKind(column);
  }
  const std::optional<std::size_t> length = codec.Encode(*text, column.compressed && !column.fixed, out);
  if (!length) {
    Refuse(column, "the file cannot store a character of \"" + std::string(*text) + "\"", Fault::kCharacter);
  }
  CheckLength(column, *length, "characters");
}

void AppendGuid(const ColumnDefinition& column, const Value& value, std::vector<std::byte>& out) {
  const auto* text = std::get_if<std::string_view>(&value);
  if (text == nullptr) {
    RefuseKind(column);
  }
  std::string hex;
  bool shaped = text->size() == kGuidShape.size();
  for (std::size_t i = 0; shaped && i < text->size(); ++i) {
    if (kGuidShape[i] == '#') {
      hex += (*text)[i];
    } else {
      shaped = (*text)[i] == kGuidShape[i];
    }
  }
  std::array<std::byte, kGuidSize> guid{};
  for (std::size_t i = 0; shaped && i < kGuidSize; ++i) {
    std::uint8_t byte = 0;
    const auto [end, error] = std::from_chars(&hex[2 * i], &hex[2 * i] + 2, byte, 16);
    shaped = error == std::errc{} && end == &hex[2 * i] + 2;
    guid[kGuidOrder[i]] = std::byte{byte};
  }
  if (!shaped) {
    Refuse(column, "\"" + std::string(*text) + "\" is not a GUID", Fault::kOther);
  }
  out.insert(out.end(), guid.begin(), guid.end());
}

}  // namespace

std::size_t WidthOf(ColumnType type) {
  switch (type) {
    case ColumnType::kByte:
      return 1;
    case ColumnType::kInteger:
      return 2;
    case ColumnType::kLong:
    case ColumnType::kSingle:
      return 4;
    case ColumnType::kCurrency:
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
      return 8;
    case ColumnType::kGuid:
      return kGuidSize;
    case ColumnType::kNumeric:
      return 1 + 4 * kNumericGroups;
    default:
      return 0;
  }
}

bool IsInteger(ColumnType type) {
  return type == ColumnType::kByte || type == ColumnType::kInteger || type == ColumnType::kLong;
}

bool IsNumber(ColumnType type) {
  return WidthOf(type) != 0 && type != ColumnType::kGuid;
}

bool IsLongValue(ColumnType type) {
  return type == ColumnType::kMemo || type == ColumnType::kOle;
}

bool IsKnown(ColumnType type) {
  return type == ColumnType::kBoolean || WidthOf(type) != 0 || IsLongValue(type) || type == ColumnType::kText ||
         type == ColumnType::kBinary;
}

std::int64_t DecodeInteger(ColumnType type, Bytes bytes) {
  switch (type) {
    case ColumnType::kByte:
      return LoadU8(bytes.data());
    case ColumnType::kInteger:
      return Load<std::int16_t>(bytes.data());
    default:
      return Load<std::int32_t>(bytes.data());
  }
}

double DecodeReal(const ColumnDefinition& column, Bytes bytes) {
  switch (column.shown.type) {
    case ColumnType::kCurrency:
      return static_cast<double>(Load<std::int64_t>(bytes.data())) / 1e4;
    case ColumnType::kSingle:
      return double{Load<float>(bytes.data())};
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
      return Load<double>(bytes.data());
    case ColumnType::kNumeric: {
      std::string buffer;
      const std::string_view text = DecodeText(column, TextCodec(), bytes, buffer);
      double number = 0;
      std::from_chars(text.data(), text.data() + text.size(), number);
      return number;
    }
    default:
      return static_cast<double>(DecodeInteger(column.shown.type, bytes));
  }
}

std::string_view DecodeText(const ColumnDefinition& column, const TextCodec& text, Bytes bytes, std::string& buffer) {
  switch (column.shown.type) {
    case ColumnType::kCurrency: {
      const auto amount = Load<std::int64_t>(bytes.data());
      buffer = DecimalText(amount < 0, CurrencyDigits(amount), kCurrencyScale);
      return buffer;
    }
    case ColumnType::kNumeric:
      buffer = DecimalText(bytes[0] == kNumericNegative, Digits(LoadMagnitude(bytes)), column.scale);
      return buffer;
    case ColumnType::kGuid: {
      constexpr std::string_view kHex = "0123456789ABCDEF";
      buffer = kGuidShape;
      std::size_t digit = 0;
      for (char& c : buffer) {
        if (c == '#') {
          const std::uint8_t byte = LoadU8(&bytes[kGuidOrder[digit / 2]]);
          c = kHex[digit % 2 == 0 ? byte >> 4 : byte & 0xF];
          ++digit;
        }
      }
      return buffer;
    }
    default:
      return text.Decode(bytes, buffer);
  }
}

bool EncodeBoolean(const ColumnDefinition& column, const Value& value) {
  if (const auto* boolean = std::get_if<bool>(&value)) {
    return *boolean;
  }
  return !std::holds_alternative<std::monostate>(value) && WholeNumber(column, value, -1, 1) != 0;
}

void EncodeCell(const ColumnDefinition& column, const TextCodec& text, const Value& value,
                std::vector<std::byte>& out) {
  switch (column.shown.type) {
    case ColumnType::kByte:
      AppendWhole<std::uint8_t>(column, value, out);
      break;
    case ColumnType::kInteger:
      AppendWhole<std::int16_t>(column, value, out);
      break;
    case ColumnType::kLong:
      AppendWhole<std::int32_t>(column, value, out);
      break;
    case ColumnType::kCurrency:
      Append(out, Currency(column, value));
      break;
    case ColumnType::kSingle:
      AppendSingle(column, value, out);
      break;
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
      Append(out, RealNumber(column, value));
      break;
    case ColumnType::kText:
    case ColumnType::kMemo:
      AppendText(column, text, value, out);
      break;
    case ColumnType::kGuid:
      AppendGuid(column, value, out);
      break;
    case ColumnType::kNumeric:
      AppendNumeric(column, value, out);
      break;
    default:
      AppendBinary(column, value, out);
      break;
  }
}

}  // namespace marlevo::access
