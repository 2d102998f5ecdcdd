// One index of a table: the columns that it orders, what it requires of their values, and its tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/access/bytes/row.h"
#include "platform/access/bytes/table_definition.h"
#include "platform/access/index/index_key.h"
#include "platform/access/index/index_tree.h"
#include "platform/access/storage/storage.h"

namespace marlevo::access {

// How an index with the language "General" orders texts that have this code-page label in a Jet 3 file.
TextOrder OrderOfJet3Texts(const Storage& file, int code_page_label);

class Index {
 public:
  // `page` is the table's definition page; the file outlives the index.
  Index(Storage& file, std::uint32_t page, const TableDefinition& table, std::size_t real_index);

  const std::string& Name() const { return name_; }
  const IndexTree& Tree() const { return tree_; }
  const std::vector<ColumnDefinition>& Columns() const { return columns_; }
  bool IsUnique() const { return Is(kIndexUnique); }
  bool IsComplete() const { return !Is(kIndexIgnoreNulls); }  // has an entry for every row
  bool IsDescending(std::size_t column) const { return keys_[column].descending; }

  // Why this engine can neither keep the index correct nor search it; empty when it can.
  const std::string& Refusal() const { return refusal_; }

  // False for a text index of a Jet 3 file that is not in the Western code page: of the characters that such a file may
  // hold only the ASCII ones have a known order.
  bool OrdersEveryText() const;

  struct RowKey {
    Key key;
    std::size_t nulls = 0;  // how many of the indexed columns are null
    bool taken = false;     // set by CheckNew: a row of the table has this key already
  };

  // The key of a row of the index's own table. With `columns`: the key that a row of another table refers to by these
  // of its columns, one for each column of the index. Throws ValueError when a value has no key (see index_key.h) or
  // the whole key is too long.
  RowKey KeyOf(const RowView& row) const { return KeyOf(row, columns_); }
  RowKey KeyOf(const RowView& row, std::span<const ColumnDefinition> columns) const;

  // The bytes with which the keys of all rows begin that have these values in the first columns of the index. Returns
  // nothing when a value does not fit its column, since no row can hold it then. Throws ValueError like KeyOf. Also
  // throws for the number 0 in a column with fractions: such a column may hold -0, which is equal to 0 but has another
  // key.
  std::optional<Key> KeyStart(std::span<const Value> values) const;

  // Throws ValueError when the index does not allow a new row with this key.
  void CheckNew(RowKey& key) const;

  // Whether the tree has an entry with this key, of any row or of this row.
  bool Contains(Bytes key) const;
  bool Contains(const Key& key, RowId row) const;

  // Whether a row with this key gets an entry; false when the index leaves out rows whose columns are all null.
  bool Lists(const RowKey& key) const;

  // Inside a statement. Insert takes a key that CheckNew has passed. Erase throws AccessError when the row has no
  // entry.
  void Insert(const RowKey& key, RowId row) const;
  void Erase(const RowKey& key, RowId row) const;

 private:
  bool Is(std::uint8_t flag) const { return (flags_ & flag) != 0; }
  bool ForbidsTwice(const RowKey& key) const;
  void CountKey(std::int32_t change) const;

  Storage* file_;
  std::uint32_t page_;   // the table's definition page
  std::size_t keys_at_;  // the place on that page of the count of different keys
  std::string name_;
  std::uint8_t flags_;
  std::vector<ColumnDefinition> columns_;
  std::vector<KeyColumn> keys_;  // how each of the columns_ gets into a key
  std::string refusal_;
  IndexTree tree_;
};

}  // namespace marlevo::access
