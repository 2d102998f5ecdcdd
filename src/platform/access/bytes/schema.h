// Files, tables, columns and values as callers see them, for both formats: Jet 3 (Access 97) and Jet 4 (Access
// 2000-2003).
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace marlevo::access {

struct OpenOptions {
  std::string password;  // compared exactly; a file without password opens with any
  // Code page of the texts of a Jet 3 file when its own label is wrong (e.g. 936). Without one, a file whose label says
  // Western (1252) is taken as Traditional Chinese (950) when its texts can be that.
  std::optional<int> code_page;
  // Opens the file with the password that its own header tells, for whoever looks after a file: the password keeps
  // nobody out who can read the file.
  bool any_password = false;
};

// What Database::Create makes.
struct NewFile {
  int version = 4;                 // 4: Jet 4; 3: Jet 3
  int code_page = 1252;            // of the texts of a Jet 3 file
  std::uint32_t encoding_key = 0;  // other than 0: the pages are encoded with it
  // Of a Jet 3 file, when its texts shall not be in the code page that its label names; see OpenOptions.
  std::optional<int> stored_code_page = {};
};

// The numbers are those of the file.
enum class ColumnType : std::uint8_t {
  kBoolean = 0x01,   // never null
  kByte = 0x02,      // 0..255
  kInteger = 0x03,   // 16 bits
  kLong = 0x04,      // 32 bits
  kCurrency = 0x05,  // 64 bits, in ten-thousandths
  kSingle = 0x06,
  kDouble = 0x07,
  kDateTime = 0x08,  // days since 1899-12-30, the fraction is the time of day (also of negative days)
  kBinary = 0x09,    // at most 255 bytes (510 in Jet 4)
  kText = 0x0A,      // at most 255 characters
  kOle = 0x0B,       // bytes of any length
  kMemo = 0x0C,      // text of any length
  kGuid = 0x0F,
  kNumeric = 0x10,  // 28 digits and a scale; Jet 4
  // The engine's internal types (0x0D, 0x0E, 0x11) are read as bytes and never written.
};

// Names of tables and columns are compared regardless of ASCII case.
inline bool SameName(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::ranges::equal(a, b, {}, lower, lower);
}

// One cell, borrowed: texts (UTF-8) and bytes belong to somebody else and are only looked at during the call.
// The kinds that a column gives and takes:
//   Boolean                  bool (takes also the integers 0, 1 and -1)
//   Byte, Integer, Long      std::int64_t (takes also a double without fraction)
//   Currency, Single, Double, DateTime, Numeric   double (takes also std::int64_t)
//   Text, Memo               text
//   Guid                     text "{00112233-4455-6677-8899-AABBCCDDEEFF}"
//   Binary, Ole, internal    bytes
// std::monostate is null.
using Bytes = std::span<const std::byte>;
using Value = std::variant<std::monostate, bool, std::int64_t, double, std::string_view, Bytes>;

struct Column {
  std::string name;
  ColumnType type;
  // Text: the most characters (UTF-16 units in Jet 4, bytes of the code page in Jet 3). Others: bytes; 0 for Memo and
  // Ole.
  std::size_t length;
  bool autonumber;  // null inserts the next number
  // What Access's table design says of the column:
  bool required = false;           // null is refused
  bool empty_allowed = true;       // an empty text is taken
  std::string default_value = {};  // an expression of Access; see DefaultOf in properties.h
};

// What Database::Create makes of a table. `length` is needed for Text (1..255 characters) and Binary (1..255 bytes)
// only.
struct ColumnSchema {
  std::string name;
  ColumnType type;
  std::size_t length = 0;
};

// Names columns of its table. A unique index does not tell upper from lower case and ignores trailing blanks; rows
// whose indexed columns are all null do not disturb each other.
struct IndexSchema {
  struct Part {
    std::string column;
    bool descending = false;
  };

  std::string name;
  std::vector<Part> columns;  // 1 to 10
  bool primary_key = false;   // unique and required, and Access shows it as the key
  bool unique = false;
  bool required = false;      // null is refused
  bool ignore_nulls = false;  // rows whose indexed columns are all null have no entry
};

struct TableSchema {
  std::string name;
  std::vector<ColumnSchema> columns;
  std::vector<IndexSchema> indexes = {};
};

// An index of a table, as far as it can be searched: columns by their place in the table.
struct IndexView {
  std::string name;
  std::vector<std::size_t> columns;
  std::vector<bool> descending;  // of the same columns
  bool unique;
  bool complete;  // rows whose indexed columns are all null are in it, too
};

// Names a row as long as it is stored: page number * 256 + slot.
enum class RowId : std::uint32_t {};

}  // namespace marlevo::access
