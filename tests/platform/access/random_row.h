#pragma once

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "platform/access/bytes/schema.h"

namespace marlevo::access {

// The texts of a column of this name are all the same, as long as they can be.
inline constexpr std::string_view kSameColumn = "same";

// A value for every column, some of them null, that live as long as this.
class RandomRow {
 public:
  // `letters`: what texts hold beside those from a to z.
  RandomRow(const std::vector<Column>& columns, const std::string& letters, bool nulls, std::mt19937& random)
      : random_(random) {
    texts_.reserve(columns.size());
    for (const Column& column : columns) {
      const bool null = nulls && random() % 6 == 0 && column.type != ColumnType::kBoolean && column.name != kSameColumn;
      row_.push_back(null ? Value() : Make(column, letters));
    }
  }

  const std::vector<Value>& Values() const { return row_; }

 private:
  int Number(std::size_t below) { return static_cast<int>(random_() % below); }

  std::string_view Text(const std::string& letters, int length) {
    std::string text;
    for (int i = 0; i < length; ++i) {
      text += Number(8) == 0 ? letters : std::string(1, static_cast<char>('a' + Number(26)));
    }
    return texts_.emplace_back(text);
  }

  Value Make(const Column& column, const std::string& letters) {
    const std::size_t length = Number(4) == 0 ? 12000 : 90;  // of a long value
    switch (column.type) {
      case ColumnType::kBoolean:
        return Number(2) == 0;
      case ColumnType::kByte:
        return Number(256);
      case ColumnType::kInteger:
        return Number(0x10000) - 0x8000;
      case ColumnType::kLong:
        return static_cast<std::int32_t>(random_());
      case ColumnType::kText:
        if (column.name == kSameColumn) {
          return texts_.emplace_back(255, 's');
        }
        // A letter takes up to three bytes of the column, so that a third of the length always fits.
        return Text(letters, Number(column.length / 3 + 1));
      case ColumnType::kMemo:
        return Text(letters, Number(length));
      case ColumnType::kBinary:
        return std::as_bytes(std::span(Text("", Number(column.length + 1))));
      case ColumnType::kOle:
        return std::as_bytes(std::span(Text("", Number(length))));
      case ColumnType::kDateTime:
        return 30000 + Number(40) / 4.0;
      case ColumnType::kGuid: {
        char id[40];
        std::snprintf(id, sizeof id, "{%08X-0000-1111-2222-%012X}", static_cast<unsigned>(random_()),
                      static_cast<unsigned>(random_()));
        return std::string_view(texts_.emplace_back(id));
      }
      case ColumnType::kNumeric:
        return Number(19) - 9;
      default:
        return (Number(2000) - 1000) / 2.0;
    }
  }

  std::mt19937& random_;
  std::vector<std::string> texts_;
  std::vector<Value> row_;
};

}  // namespace marlevo::access
