// One index of a table: which columns it orders, what it demands of their values, and its tree.
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

// What is known of "General" for texts with this code-page label in a Jet 3 file.
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

  // Why it can neither be kept right nor be searched; empty when it can.
  const std::string& Refusal() const { return refusal_; }

  // False when the order is known of a part of the characters only that the texts of the file can have by design: of
  // a Jet 3 file in another code page than the Western one.
  bool OrdersEveryText() const;

  struct RowKey {
    Key key;
    std::size_t nulls = 0;  // indexed columns that are null
    bool taken = false;     // a row of the table has it; set by CheckNew
  };

  // Of a row of the index's own table; or of another one, of which `columns` refer to this index's columns in turn.
  // Throws ValueError when a value has no key (see index_key.h) or all of it is too long.
  RowKey KeyOf(const RowView& row) const { return KeyOf(row, columns_); }
  RowKey KeyOf(const RowView& row, std::span<const ColumnDefinition> columns) const;

  // What the keys begin with of the rows that have these values in the first columns of the index. Nothing when a value
  // does not fit its column, so that no row can have it. Throws as KeyOf, and for the number 0 where -0 has another
  // key.
  std::optional<Key> KeyStart(std::span<const Value> values) const;

  // Throws ValueError when a row with this key may not come into the table.
  void CheckNew(RowKey& key) const;

  // Whether some row has the key; whether this row has it.
  bool Contains(Bytes key) const;
  bool Contains(const Key& key, RowId row) const;

  // Whether the index has an entry for a row with this key.
  bool Lists(const RowKey& key) const;

  // Inside a statement. `key` has been given to CheckNew before Insert. Erase throws AccessError when there is no entry
  // of the row.
  void Insert(const RowKey& key, RowId row) const;
  void Erase(const RowKey& key, RowId row) const;

 private:
  bool Is(std::uint8_t flag) const { return (flags_ & flag) != 0; }
  bool ForbidsTwice(const RowKey& key) const;
  void CountKey(std::int32_t change) const;

  Storage* file_;
  std::uint32_t page_;   // the table's definition page
  std::size_t keys_at_;  // on that page: how many different keys there are
  std::string name_;
  std::uint8_t flags_;
  std::vector<ColumnDefinition> columns_;
  std::vector<KeyColumn> keys_;  // of the same columns
  std::string refusal_;
  IndexTree tree_;
};

}  // namespace marlevo::access
