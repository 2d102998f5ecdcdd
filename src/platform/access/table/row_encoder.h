// Turns the values of a row into its bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/access/bytes/row.h"
#include "platform/access/bytes/schema.h"
#include "platform/access/bytes/table_definition.h"
#include "platform/access/storage/storage.h"

namespace marlevo::access {

class RowEncoder {
 public:
  // A Memo or Ole value that is too long for the row: in the row it has a place of kLongValueHeader bytes.
  struct LongCell {
    const ColumnDefinition* column;
    std::size_t place;  // in the row
    std::vector<std::byte> value;
  };

  // `definition` outlives this; `texts`: for each of its columns.
  RowEncoder(const Format& format, const TableDefinition& definition, std::vector<const TextCodec*> texts);

  // One value a column. The row can be changed and is valid until the next call. Throws ValueError when a value or the
  // whole row does not fit.
  MutableBytes Encode(std::span<const Value> values);

  // The same of values as another table with this definition stores them: nothing where one is null, no bytes of a
  // Boolean that is true, of a Memo or Ole those of the value itself. Throws AccessError when a fixed value has not the
  // length of its column.
  MutableBytes EncodeStored(std::span<const std::optional<Bytes>> values);

  // Of the last row; their places are still empty.
  const std::vector<LongCell>& LongCells() const { return long_cells_; }

 private:
  template <typename AppendCell>
  MutableBytes Build(std::size_t count, AppendCell append);
  void PutFixed(const ColumnDefinition& column);
  void PutVariable(const ColumnDefinition& column);
  void PutLong(const ColumnDefinition& column);

  const Format& format_;
  const TableDefinition& definition_;
  std::vector<const TextCodec*> texts_;
  std::vector<std::size_t> order_;  // fixed columns, then variable ones as they follow each other in the row
  RowBuilder builder_;
  std::vector<std::byte> cell_;  // the bytes of the column on its way
  std::vector<LongCell> long_cells_;
};

}  // namespace marlevo::access
