// Files, tables, columns and values as callers see them, for both formats: Jet 3 (Access 97) and Jet 4 (Access
// 2000-2003).
#pragma once

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
  std::string password;  // compared exactly; a file without a password opens with any
  // The code page of a Jet 3 file's texts, for a file whose own label is wrong (e.g. 936). If this is not given, a file
  // labelled Western (1252) is read as Traditional Chinese (950) when all its texts are valid in that code page.
  std::optional<int> code_page;
  // Opens the file without asking for its password, for maintenance. No secret is lost by this: whoever can read the
  // file can read the password in its header.
  bool any_password = false;
};

// The kind of file that Database::Create makes.
struct NewFile {
  int version = 4;                 // 4: Jet 4; 3: Jet 3
  int code_page = 1252;            // the label for the texts of a Jet 3 file
  std::uint32_t encoding_key = 0;  // other than 0: the pages are encoded with it
  // The code page in which a Jet 3 file's texts are stored when it differs from the label; see OpenOptions.
  std::optional<int> stored_code_page = {};
};

// The numbers are those that the file stores.
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
  // Types that only Access itself uses (0x0D, 0x0E, 0x11) are read as bytes; a table with such a column is not written.
};

// The value of one cell. Texts (UTF-8) and bytes are views: whoever makes the Value keeps them alive. Null is
// std::monostate. For each type of column, the kind that reading gives and that writing takes:
//   Boolean                  bool (writing takes the integers 0, 1 and -1, too)
//   Byte, Integer, Long      std::int64_t (writing takes a double without fraction, too)
//   Currency, Single, Double, DateTime, Numeric   double (writing takes std::int64_t, too)
//   Text, Memo               text
//   Guid                     text "{00112233-4455-6677-8899-AABBCCDDEEFF}"
//   Binary, Ole, internal    bytes
using Bytes = std::span<const std::byte>;
using Value = std::variant<std::monostate, bool, std::int64_t, double, std::string_view, Bytes>;

struct Column {
  std::string name;
  ColumnType type;
  // Text: the largest number of characters (UTF-16 units in Jet 4, bytes of the code page in Jet 3). Memo and Ole: 0.
  // Other types: the number of bytes.
  std::size_t length;
  bool autonumber;  // inserting null gives the row the next number
  // The column's properties in Access's table design:
  bool required = false;           // null is refused
  bool empty_allowed = true;       // an empty text is allowed
  std::string default_value = {};  // an expression of Access; see DefaultOf in properties.h
};

// A column of a table that Database::Create makes. `length` is needed for Text (1..255 characters) and Binary (1..255
// bytes) only.
struct ColumnSchema {
  std::string name;
  ColumnType type;
  std::size_t length = 0;
};

// An index of a table that Database::Create makes. A unique index does not tell upper from lower case and ignores
// trailing blanks. Rows whose indexed columns are all null never clash in a unique index.
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

// An index of an open table, for whoever wants to search by it. Columns are named by their place in the table.
struct IndexView {
  std::string name;
  std::vector<std::size_t> columns;
  std::vector<bool> descending;  // of the same columns
  bool unique;
  bool complete;  // the index lists every row, also those whose indexed columns are all null
};

// Identifies a row of a file from its insertion to its deletion: page number * 256 + slot.
enum class RowId : std::uint32_t {};

}  // namespace marlevo::access
