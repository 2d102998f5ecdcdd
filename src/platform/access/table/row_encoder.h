// Encodes the values of a row as the bytes of the row.
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
  // A Memo or Ole value that is too long for the row. The row has kLongValueHeader bytes for it, which the caller fills
  // in after storing the value.
  struct LongCell {
    const ColumnDefinition* column;
    std::size_t place;  // of these bytes in the row
    std::vector<std::byte> value;
  };

  // `definition` outlives the encoder; `texts` are the codecs of its columns.
  RowEncoder(const Format& format, const TableDefinition& definition, std::vector<const TextCodec*> texts);

  // `values` has one value for each column. The row may be changed and is valid until the next call. Throws ValueError
  // when a value does not fit its column or the row is too long.
  MutableBytes Encode(std::span<const Value> values);

  // The same for values as another table with the same columns stores them: std::nullopt for null and for a Boolean
  // that is false, empty bytes for a Boolean that is true, the whole value for Memo and Ole. Throws AccessError when a
  // fixed value has not the length of its column.
  MutableBytes EncodeStored(std::span<const std::optional<Bytes>> values);

  // The long values of the last row, whose places in the row are not filled in yet.
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
  std::vector<std::size_t> order_;  // the columns as they are encoded: fixed ones, then variable ones by their place
  RowBuilder builder_;
  std::vector<std::byte> cell_;  // the bytes of the column that is being encoded
  std::vector<LongCell> long_cells_;
};

}  // namespace marlevo::access
