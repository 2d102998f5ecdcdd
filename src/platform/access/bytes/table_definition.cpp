#include "platform/access/bytes/table_definition.h"

#include <algorithm>
#include <bitset>
#include <tuple>

#include "platform/access/bytes/access_error.h"

namespace marlevo::access {

namespace {

constexpr std::size_t kLengthAt = 8;  // the definition's length in bytes
// Numbers that Access writes in front of many parts of a Jet 4 definition.
constexpr std::uint32_t kDefinitionMark = 1625;
constexpr std::uint32_t kIndexMark = 1923;
constexpr std::uint16_t kNoColumn = 0xFFFF;   // an unused place among an index's columns
constexpr std::uint16_t kEndMark = 0xFFFF;    // stands after the last long-value map
constexpr std::size_t kIndexColumnSize = 3;   // u16 number of the column, u8 1 when it is ascending
constexpr std::size_t kMaxIndexesRead = 240;  // Access allows 32; the counters of 240 still fit on the first page

// Reading, part by part.

// Hands out the definition's bytes from front to back.
class Reader {
 public:
  Reader(const Format& format, std::uint32_t page, Bytes bytes) : format_(format), page_(page), rest_(bytes) {}

  const std::byte* Take(std::size_t size) { return TakeBytes(size).data(); }

  std::string TakeName(const TextCodec& text) {
    const std::size_t size = format_.version == 3 ? LoadU8(Take(1)) : LoadU16(Take(2));
    return text.DecodeName(TakeBytes(size));
  }

 private:
  Bytes TakeBytes(std::size_t size) {
    if (size > rest_.size()) {
      throw AccessError(page_, "the table's definition ends too early");
    }
    const Bytes taken = rest_.first(size);
    rest_ = rest_.subspan(size);
    return taken;
  }

  const Format& format_;
  std::uint32_t page_;
  Bytes rest_;
};

// One column descriptor. For a Numeric, Jet 4 stores precision and scale where other types have their language.
ColumnDefinition ParseColumn(const Format& format, const std::byte* at) {
  const auto& place = format.column;
  ColumnDefinition column;
  column.number = LoadU16(at + place.number);
  column.variable_index = LoadU16(at + place.variable_index);
  column.ordinal = LoadU16(at + place.ordinal);
  column.flags = LoadU8(at + place.flags);
  column.fixed = (column.flags & kColumnFixed) != 0;
  column.fixed_offset = LoadU16(at + place.fixed_offset);
  column.stored_length = LoadU16(at + place.length);
  column.shown.type = static_cast<ColumnType>(LoadU8(at));
  column.shown.autonumber = (column.flags & kColumnAutonumber) != 0 && column.shown.type == ColumnType::kLong;
  column.shown.length = column.stored_length;
  if (format.version == 4) {
    column.compressed = (LoadU8(at + place.extended_flags) & 1) != 0;
    if (column.shown.type == ColumnType::kNumeric) {
      column.precision = LoadU8(at + place.language);
      column.scale = LoadU8(at + place.language + 1);
    } else {
      column.language = LoadU16(at + place.language);
      column.sort_version = LoadU8(at + place.code_page + 1);
    }
    if (column.shown.type == ColumnType::kText) {
      column.shown.length = column.stored_length / 2;
    }
  } else {
    column.language = LoadU16(at + place.language);
    column.code_page = LoadU16(at + place.code_page);
  }
  return column;
}

// One tree of keys. There is always room for ten columns; unused places hold kNoColumn.
RealIndex ParseRealIndex(const Format& format, const std::byte* at) {
  RealIndex index;
  for (std::size_t i = 0; i < kMaxIndexColumns; ++i) {
    const std::byte* column = at + format.index.columns + kIndexColumnSize * i;
    if (LoadU16(column) != kNoColumn) {
      index.columns.push_back({LoadU16(column), LoadU8(column + 2) != 0});
    }
  }
  index.owned_map = LoadRowPointer(at + format.index.owned_map);
  index.root = LoadU32(at + format.index.root);
  index.flags = LoadU8(at + format.index.flags);
  return index;
}

// One name or one side of a relationship. The related_ fields name the other side.
LogicalIndex ParseLogicalIndex(const Format& format, const std::byte* at) {
  at += format.logical_index.shift;
  LogicalIndex index;
  index.number = LoadU32(at);
  index.real_index = LoadU32(at + 4);
  index.related_type = LoadU8(at + 8);
  index.related_index = LoadU32(at + 9);
  index.related_table = LoadU32(at + 13);
  index.cascade_updates = LoadU8(at + 17);
  index.cascade_deletes = LoadU8(at + 18);
  index.kind = static_cast<IndexKind>(LoadU8(at + 19));
  return index;
}

// Two columns must not share a bit of the null mask or a place among the variable values: writing the one would
// overwrite the other.
void CheckNumbers(std::uint32_t page, const TableDefinition& table) {
  std::bitset<kMaxColumns> seen;
  std::bitset<kMaxColumns> places;
  for (const ColumnDefinition& column : table.columns) {
    if (column.number >= table.max_columns || seen[column.number]) {
      throw AccessError(page, "column number " + std::to_string(column.number) + " is used twice or too large");
    }
    if (!column.fixed) {
      const std::size_t place = column.variable_index;
      if (place >= table.variable_columns || place >= places.size() || places[place]) {
        throw AccessError(page, "variable column \"" + column.shown.name + "\" lies outside the row or on another");
      }
      places[place] = true;
    }
    seen[column.number] = true;
  }
}

// Writing, part by part, in the same order.

class Writer {
 public:
  Writer(const Format& format, const TextCodec& text) : format_(format), text_(text) {}

  // Appends `size` zero bytes and returns the first of them, valid until the next call.
  std::byte* Put(std::size_t size) { return &*bytes_.insert(bytes_.end(), size, std::byte{0}); }

  void PutName(const std::string& name) {
    std::vector<std::byte> encoded;
    const std::optional<std::size_t> length = text_.Encode(name, false, encoded);
    if (!length || *length == 0 || *length > kMaxNameLength) {
      throw AccessError("\"" + name + "\" cannot be a name in this file");
    }
    if (format_.version == 3) {
      StoreU8(Put(1), encoded.size());
    } else {
      StoreU16(Put(2), encoded.size());
    }
    bytes_.insert(bytes_.end(), encoded.begin(), encoded.end());
  }

  // The finished definition, with its length in its header.
  std::vector<std::byte> Take() {
    StoreU32(&bytes_[kLengthAt], bytes_.size());
    return std::move(bytes_);
  }

 private:
  const Format& format_;
  const TextCodec& text_;
  std::vector<std::byte> bytes_;
};

void BuildHeader(const Format& format, const TableDefinition& table, std::byte* at) {
  const auto& place = format.definition;
  StoreU8(at, kDefinitionPage);
  StoreU8(at + 1, 1);
  if (format.version == 4) {
    StoreU32(at + 0x0C, kDefinitionMark);
    StoreU32(at + 0x18, 1);  // without this number Access does not count AutoNumbers on
  }
  StoreU32(at + place.rows, table.rows);
  Store(at + place.last_autonumber, table.last_autonumber);
  StoreU8(at + place.type, table.type);
  StoreU16(at + place.max_columns, table.max_columns);
  StoreU16(at + place.variable_columns, table.variable_columns);
  StoreU16(at + place.columns, table.columns.size());
  StoreU32(at + place.logical_indexes, table.logical_indexes.size());
  StoreU32(at + place.real_indexes, table.real_indexes.size());
  StoreRowPointer(at + place.owned_map, table.owned_map);
  StoreRowPointer(at + place.free_map, table.free_map);
}

void BuildColumn(const Format& format, const ColumnDefinition& column, std::byte* at) {
  const auto& place = format.column;
  StoreU8(at, static_cast<std::uint8_t>(column.shown.type));
  StoreU16(at + place.number, column.number);
  StoreU16(at + place.variable_index, column.variable_index);
  StoreU16(at + place.ordinal, column.ordinal);
  StoreU16(at + place.language, column.language);
  if (format.version == 4) {
    StoreU32(at + 1, kDefinitionMark);
    if (column.shown.type == ColumnType::kNumeric) {
      StoreU8(at + place.language, column.precision);
      StoreU8(at + place.language + 1, column.scale);
    }
    StoreU8(at + place.code_page + 1, column.sort_version);
    StoreU8(at + place.extended_flags, column.compressed ? 1 : 0);
  } else {
    StoreU16(at + place.country, kCountry);
    StoreU16(at + place.code_page, column.code_page);
  }
  StoreU8(at + place.flags, column.flags);
  StoreU16(at + place.fixed_offset, column.fixed_offset);
  StoreU16(at + place.length, column.stored_length);
}

void BuildRealIndex(const Format& format, const RealIndex& index, std::byte* at) {
  if (format.version == 4) {
    StoreU32(at, kIndexMark);
  }
  for (std::size_t i = 0; i < kMaxIndexColumns; ++i) {
    std::byte* column = at + format.index.columns + kIndexColumnSize * i;
    StoreU16(column, i < index.columns.size() ? index.columns[i].number : kNoColumn);
    StoreU8(column + 2, i < index.columns.size() && index.columns[i].ascending ? 1 : 0);
  }
  StoreRowPointer(at + format.index.owned_map, index.owned_map);
  StoreU32(at + format.index.root, index.root);
  StoreU8(at + format.index.flags, index.flags | (format.version == 4 ? kIndexJet4 : 0));
}

void BuildLogicalIndex(const Format& format, const LogicalIndex& index, std::byte* at) {
  if (format.version == 4) {
    StoreU32(at, kDefinitionMark);
  }
  at += format.logical_index.shift;
  StoreU32(at, index.number);
  StoreU32(at + 4, index.real_index);
  StoreU8(at + 8, index.related_type);
  StoreU32(at + 9, index.related_index);
  StoreU32(at + 13, index.related_table);
  StoreU8(at + 17, index.cascade_updates);
  StoreU8(at + 18, index.cascade_deletes);
  StoreU8(at + 19, static_cast<std::uint8_t>(index.kind));
}

}  // namespace

const ColumnDefinition* TableDefinition::FindColumn(std::uint16_t number) const {
  const auto found = std::ranges::find(columns, number, &ColumnDefinition::number);
  return found == columns.end() ? nullptr : &*found;
}

TableDefinition ParseDefinition(const Format& format, const TextCodec& text, std::uint32_t page, Bytes joined) {
  Reader reader(format, page, joined);
  const std::byte* header = reader.Take(format.definition.body);
  const auto& place = format.definition;
  TableDefinition table;
  table.type = LoadU8(header + place.type);
  table.rows = LoadU32(header + place.rows);
  table.last_autonumber = Load<std::int32_t>(header + place.last_autonumber);
  table.max_columns = LoadU16(header + place.max_columns);
  table.variable_columns = LoadU16(header + place.variable_columns);
  table.owned_map = LoadRowPointer(header + place.owned_map);
  table.free_map = LoadRowPointer(header + place.free_map);
  const std::size_t columns = LoadU16(header + place.columns);
  const std::size_t logical_indexes = LoadU32(header + place.logical_indexes);
  const std::size_t real_indexes = LoadU32(header + place.real_indexes);
  if (columns > kMaxColumns || columns > table.max_columns || table.max_columns > kMaxColumns ||
      table.variable_columns > table.max_columns || logical_indexes > kMaxIndexesRead ||
      real_indexes > kMaxIndexesRead) {
    throw AccessError(page, "the table's definition has impossible counts");
  }

  // The body follows in the order that table_definition.h lists.
  const std::byte* counters = reader.Take(real_indexes * format.index_counter_size);
  for (std::size_t i = 0; i < columns; ++i) {
    table.columns.push_back(ParseColumn(format, reader.Take(format.column.size)));
  }
  for (ColumnDefinition& column : table.columns) {
    column.shown.name = reader.TakeName(text);
  }
  for (std::size_t i = 0; i < real_indexes; ++i) {
    table.real_indexes.push_back(ParseRealIndex(format, reader.Take(format.index.size)));
    table.real_indexes.back().keys = LoadU32(counters + i * format.index_counter_size + kIndexKeysAt);
  }
  for (std::size_t i = 0; i < logical_indexes; ++i) {
    table.logical_indexes.push_back(ParseLogicalIndex(format, reader.Take(format.logical_index.size)));
  }
  for (LogicalIndex& index : table.logical_indexes) {
    index.name = reader.TakeName(text);
  }
  const std::ptrdiff_t long_values = std::ranges::count_if(table.columns, [](const ColumnDefinition& column) {
    return column.shown.type == ColumnType::kMemo || column.shown.type == ColumnType::kOle;
  });
  for (std::ptrdiff_t i = 0; i < long_values; ++i) {
    const std::uint16_t column = LoadU16(reader.Take(2));
    if (column == kEndMark) {
      break;
    }
    const std::byte* maps = reader.Take(8);
    table.long_value_maps.push_back({column, LoadRowPointer(maps), LoadRowPointer(maps + 4)});
  }

  std::ranges::sort(table.columns, {},
                    [](const ColumnDefinition& column) { return std::tuple(column.ordinal, column.number); });
  CheckNumbers(page, table);
  return table;
}

std::vector<std::byte> BuildDefinition(const Format& format, const TextCodec& text, const TableDefinition& table) {
  Writer writer(format, text);
  BuildHeader(format, table, writer.Put(format.definition.body));
  for (const RealIndex& index : table.real_indexes) {
    StoreU32(writer.Put(format.index_counter_size) + kIndexKeysAt, index.keys);
  }
  for (const ColumnDefinition& column : table.columns) {
    BuildColumn(format, column, writer.Put(format.column.size));
  }
  for (const ColumnDefinition& column : table.columns) {
    writer.PutName(column.shown.name);
  }
  for (const RealIndex& index : table.real_indexes) {
    BuildRealIndex(format, index, writer.Put(format.index.size));
  }
  for (const LogicalIndex& index : table.logical_indexes) {
    BuildLogicalIndex(format, index, writer.Put(format.logical_index.size));
  }
  for (const LogicalIndex& index : table.logical_indexes) {
    writer.PutName(index.name);
  }
  for (const LongValueMaps& maps : table.long_value_maps) {
    std::byte* at = writer.Put(10);
    StoreU16(at, maps.column);
    StoreRowPointer(at + 2, maps.owned);
    StoreRowPointer(at + 6, maps.free);
  }
  StoreU16(writer.Put(2), kEndMark);
  return writer.Take();
}

}  // namespace marlevo::access
