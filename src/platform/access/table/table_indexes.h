// All indexes of a table and the relationships that it takes part in: what they demand of a row that comes or goes, and
// their entries. Rows are looked at before anything is changed and entered or removed afterwards.
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
  // `page` is the table's definition page; the file outlives this.
  // Does not throw for what is wrong with the indexes: that is a Refusal.
  TableIndexes(Storage& file, std::uint32_t page, const TableDefinition& table);

  const std::vector<Index>& All() const { return indexes_; }

  // Why rows can neither come nor go; empty when they can.
  const std::string& Refusal() const { return refusal_; }

  // Throws ValueError when the row may not come in: it has no key, its key is taken, a value is missing, the row that
  // it refers to does not exist. Then, inside a statement, Insert makes the entries of that row.
  void CheckNew(const RowView& row);
  void Insert(RowId row) const;

  // Throws ValueError when the row may not go: other rows refer to it, or it has no key. Then, inside a statement,
  // Erase removes the entries of that row.
  void CheckGone(const RowView& row, RowId id);
  void Erase(RowId row) const;

 private:
  // The other side of a relationship: columns of this table, and an index of the other one that orders what they refer
  // to or are referred to by.
  struct Relationship {
    std::vector<ColumnDefinition> columns;
    Index other;
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
  std::vector<Index::RowKey> keys_;  // of the row that was looked at last, for each index
};

}  // namespace marlevo::access
