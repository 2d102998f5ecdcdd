// All indexes of a table, and the relationships in which the table takes part. Checks what they require of a row that
// is inserted or deleted, before the file is changed; afterwards enters the row in the indexes or removes it from them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/access/bytes/row.h"
#include "platform/access/bytes/table_definition.h"
#include "platform/access/index/index.h"
#include "platform/access/storage/storage.h"

namespace marlevo::access {

class TableIndexes {
 public:
  // `page` is the table's definition page; the file outlives this object. Faults of the indexes and relationships do
  // not throw: they become the Refusal.
  TableIndexes(Storage& file, std::uint32_t page, const TableDefinition& table);

  const std::vector<Index>& All() const { return indexes_; }

  // Why rows can be neither inserted nor deleted; empty when they can.
  const std::string& Refusal() const { return refusal_; }

  // CheckNew throws ValueError when the row may not be inserted: a value has no key, a unique key exists already, a
  // required value is null, or the row refers to a row that does not exist. Insert, called after it and inside a
  // statement, makes the entries of that row.
  void CheckNew(const RowView& row);
  void Insert(RowId row) const;

  // CheckGone throws ValueError when the row may not be deleted: other rows refer to it, or a value has no key. Erase,
  // called after it and inside a statement, removes the entries of that row.
  void CheckGone(const RowView& row, RowId id);
  void Erase(RowId row) const;

 private:
  // A relationship between columns of this table and columns of another one (or of the same one).
  struct Relationship {
    std::vector<ColumnDefinition> columns;  // of this table
    Index other;                            // the index of the other table's columns
    std::uint32_t other_table;
    bool to_other;  // rows of this table refer to rows of the other one
  };

  void RememberKeys(const RowView& row);
  void Refuse(const std::string& reason);
  void FindRelationship(Storage& file, const LogicalIndex& index);
  bool IsReferredTo(const Relationship& relationship, Bytes key, RowId id) const;

  std::uint32_t page_;
  std::vector<Index> indexes_;
  std::vector<Relationship> relationships_;
  std::string refusal_;
  std::vector<Index::RowKey> keys_;  // the keys that the last checked row has in each of the indexes_
};

}  // namespace marlevo::access
