#include "platform/database/column_value.h"

#include "platform/access/bytes/bytes.h"
#include "platform/base/text.h"

namespace marlevo {

using access::ColumnType;

SqlKind SqlKindOf(ColumnType type) {
  switch (type) {
    case ColumnType::kBoolean:
    case ColumnType::kByte:
    case ColumnType::kInteger:
    case ColumnType::kLong:
      return SqlKind::kInteger;
    case ColumnType::kCurrency:
    case ColumnType::kSingle:
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
    case ColumnType::kNumeric:
      return SqlKind::kReal;
    case ColumnType::kText:
    case ColumnType::kMemo:
    case ColumnType::kGuid:
      return SqlKind::kText;
    default:
      return SqlKind::kBytes;
  }
}

std::string_view TextAt(const void* bytes, int size) {
  return std::string_view(static_cast<const char*>(bytes), size);
}

std::string_view TextOf(sqlite3_value* value) {
  const unsigned char* const text = sqlite3_value_text(value);  // SQLite counts the bytes of what it gave last
  return TextAt(text, sqlite3_value_bytes(value));
}

access::Value ColumnValue(sqlite3_value* value, ColumnType type, std::string& buffer) {
  const SqlKind kind = SqlKindOf(type);
  const bool number = kind == SqlKind::kInteger || kind == SqlKind::kReal;
  switch (number ? sqlite3_value_numeric_type(value) : sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      if (kind == SqlKind::kText) {
        return std::string_view(buffer = std::to_string(sqlite3_value_int64(value)));
      }
      return std::int64_t{sqlite3_value_int64(value)};
    case SQLITE_FLOAT:
      if (kind == SqlKind::kText) {
        return std::string_view(buffer = NumberText(sqlite3_value_double(value)));
      }
      return sqlite3_value_double(value);
    case SQLITE_TEXT:
      return TextOf(value);
    case SQLITE_BLOB:
      return access::AsBytes(TextAt(sqlite3_value_blob(value), sqlite3_value_bytes(value)));
    default:
      return std::monostate();
  }
}

void SetResult(sqlite3_context* result, access::Cursor& row, std::size_t column, ColumnType type) {
  if (row.IsNull(column)) {
    sqlite3_result_null(result);
    return;
  }
  switch (SqlKindOf(type)) {
    case SqlKind::kInteger: {
      const std::int64_t value = row.Integer(column);
      sqlite3_result_int64(result, type == ColumnType::kBoolean && value != 0 ? -1 : value);
      break;
    }
    case SqlKind::kReal:
      sqlite3_result_double(result, row.Real(column));
      break;
    case SqlKind::kText: {
      const std::string_view text = row.Text(column);
      sqlite3_result_text64(result, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
      break;
    }
    case SqlKind::kBytes: {
      const access::Bytes bytes = row.Raw(column);
      sqlite3_result_blob64(result, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
      break;
    }
  }
}

}  // namespace marlevo
