#include "platform/access/index/index_key.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <iterator>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/cell.h"
#include "platform/access/index/collation_jet3.h"
#include "platform/access/index/collation_jet4.h"

namespace marlevo::access {

namespace {

// The first byte of a column's part of a key.
constexpr std::byte kNull{0x00};
constexpr std::byte kValue{0x7F};

constexpr std::byte kTrue{0x00};
constexpr std::byte kFalse{0xFF};
constexpr std::byte kSignBit{0x80};
constexpr std::byte kComplement{0xFF};

// Binary values go into keys in groups of eight bytes. kMoreGroups stands after each group but the last; after the last
// one, which zeros fill up, stands the number of its bytes that count (1 to 8).
constexpr std::size_t kGroup = 8;
constexpr std::byte kMoreGroups{0x09};

constexpr std::byte kEndOfDescendingText{0x00};  // follows the complemented key of a Jet 4 text

void Complement(Key& key, std::size_t from) {
  for (std::size_t i = from; i < key.size(); ++i) {
    key[i] ^= kComplement;
  }
}

constexpr const char* kAdvice = "; open the file in Access and remove the index";

void AppendReversed(Bytes stored, Key& key) {
  key.insert(key.end(), std::make_reverse_iterator(stored.end()), std::make_reverse_iterator(stored.begin()));
}

// The highest byte comes first. Its sign bit is flipped, so that negative numbers are less than positive ones.
void AppendInteger(Bytes stored, Key& key) {
  const std::size_t first = key.size();
  AppendReversed(stored, key);
  key[first] ^= kSignBit;
}

// Reals of the same sign have the order of their bytes, the highest first; of two negative ones the larger bytes are
// the smaller number. So negative numbers are complemented, and positive ones only get their sign bit flipped.
void AppendReal(Bytes stored, Key& key) {
  const std::size_t first = key.size();
  AppendReversed(stored, key);
  if ((key[first] & kSignBit) != std::byte{0}) {
    Complement(key, first);
  } else {
    key[first] ^= kSignBit;
  }
}

// A sign byte, then the magnitude as four numbers of 32 bits, the highest first.
void AppendNumeric(Bytes stored, Key& key) {
  const bool negative = (stored[0] & kSignBit) != std::byte{0};
  key.push_back(negative ? std::byte{0x00} : std::byte{0xFF});
  const std::size_t magnitude = key.size();
  for (std::size_t at = 1; at < stored.size(); at += sizeof(std::uint32_t)) {
    AppendReversed(stored.subspan(at, sizeof(std::uint32_t)), key);
  }
  if (negative) {
    Complement(key, magnitude);
  }
}

void AppendGroups(Bytes bytes, Key& key) {
  while (bytes.size() > kGroup) {
    key.insert(key.end(), bytes.begin(), bytes.begin() + kGroup);
    key.push_back(kMoreGroups);
    bytes = bytes.subspan(kGroup);
  }
  key.insert(key.end(), bytes.begin(), bytes.end());
  key.insert(key.end(), kGroup - bytes.size(), std::byte{0});
  key.push_back(std::byte(bytes.size()));
}

// The first three parts of a GUID are stored as numbers; the key holds the bytes as they are printed.
void AppendGuid(Bytes stored, Key& key) {
  std::array<std::byte, 16> printed;
  std::copy(stored.begin(), stored.end(), printed.begin());
  std::reverse(printed.begin(), printed.begin() + 4);
  std::reverse(printed.begin() + 4, printed.begin() + 6);
  std::reverse(printed.begin() + 6, printed.begin() + 8);
  AppendGroups(printed, key);
}

[[noreturn]] void RefuseCharacter(const KeyColumn& column, unsigned character) {
  char code[16];
  std::snprintf(code, sizeof code, "U+%04X", character);
  throw ValueError("column " + column.name + " is indexed, and the place of the character " + code +
                       " in the order of its index is not known" + kAdvice,
                   Fault::kNeedsAccess);
}

void AppendStored(const KeyColumn& column, Bytes stored, Key& key) {
  const std::size_t size = WidthOf(column.type);
  if (size != 0 && stored.size() != size) {
    throw AccessError("column " + column.name + ": expected a value of " + std::to_string(size) + " bytes, found " +
                      std::to_string(stored.size()));
  }
  switch (column.type) {
    case ColumnType::kByte:
      key.push_back(stored[0]);
      break;
    case ColumnType::kInteger:
    case ColumnType::kLong:
    case ColumnType::kCurrency:
      AppendInteger(stored, key);
      break;
    case ColumnType::kSingle:
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
      AppendReal(stored, key);
      break;
    case ColumnType::kNumeric:
      AppendNumeric(stored, key);
      break;
    case ColumnType::kGuid:
      AppendGuid(stored, key);
      break;
    default:
      if (stored.empty()) {
        throw ValueError("column " + column.name + " is indexed, and no order is known for empty bytes" + kAdvice,
                         Fault::kNeedsAccess);
      }
      AppendGroups(stored, key);
  }
}

void AppendText(const KeyColumn& column, const KeyValue& value, Key& key) {
  if (column.order == TextOrder::kGeneralJet4) {
    const auto unknown = AppendJet4TextKey(std::get<std::u16string_view>(value), key);
    if (unknown) {
      RefuseCharacter(column, *unknown);
    }
    return;
  }
  const std::string_view text = AsText(std::get<Bytes>(value));
  if (column.order == TextOrder::kAsciiJet3) {
    if (std::ranges::any_of(text, [](char c) { return (c & 0x80) != 0; })) {
      throw ValueError(
          "column " + column.name +
              " is indexed, and the place of characters outside ASCII in the order of its index is not known" + kAdvice,
          Fault::kNeedsAccess);
    }
  }
  AppendJet3TextKey(text, key);
}

}  // namespace

std::string KeyRefusal(const KeyColumn& column) {
  std::string reason;
  switch (column.type) {
    case ColumnType::kBoolean:
    case ColumnType::kByte:
    case ColumnType::kInteger:
    case ColumnType::kLong:
    case ColumnType::kCurrency:
    case ColumnType::kSingle:
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
    case ColumnType::kBinary:
    case ColumnType::kGuid:
      return {};
    case ColumnType::kText:
      if (column.order != TextOrder::kUnknown) {
        return {};
      }
      reason = "in the order of a language that is not known";
      break;
    case ColumnType::kNumeric:
      if (!column.descending) {
        return {};
      }
      reason = "as descending decimal numbers";
      break;
    default:
      reason = "though its type cannot be ordered";
  }
  return "column " + column.name + " is indexed " + reason + kAdvice;
}

void AppendKey(const KeyColumn& column, const KeyValue& value, Key& key) {
  const std::size_t first = key.size();
  if (std::holds_alternative<std::monostate>(value)) {
    key.push_back(kNull);
  } else {
    key.push_back(kValue);
    if (const bool* truth = std::get_if<bool>(&value)) {
      key.push_back(*truth ? kTrue : kFalse);
    } else if (column.type == ColumnType::kText) {
      AppendText(column, value, key);
    } else {
      AppendStored(column, std::get<Bytes>(value), key);
    }
  }
  if (column.descending) {
    Complement(key, first);
    // Group separators are not complemented in descending keys.
    if (column.type == ColumnType::kBinary || column.type == ColumnType::kGuid) {
      for (std::size_t at = first + 1 + kGroup; at + 1 < key.size(); at += kGroup + 1) {
        key[at] = kMoreGroups;
      }
    } else if (column.type == ColumnType::kText && column.order == TextOrder::kGeneralJet4 && key.size() > first + 1) {
      key.push_back(kEndOfDescendingText);
    }
  }
}

}  // namespace marlevo::access
