#include "platform/access/table/table_indexes.h"

#include <algorithm>

#include "platform/access/bytes/access_error.h"
#include "platform/access/storage/definition_pages.h"

namespace marlevo::access {

namespace {

// Values of LogicalIndex::related_type.
constexpr std::uint8_t kReferredTo = 1;  // rows of the other table refer to rows of this one
constexpr std::uint8_t kReferring = 2;   // rows of this table refer to rows of the other one

}  // namespace

TableIndexes::TableIndexes(Storage& file, std::uint32_t page, const TableDefinition& table) : page_(page) {
  for (std::size_t i = 0; i < table.real_indexes.size(); ++i) {
    indexes_.emplace_back(file, page, table, i);
    Refuse(indexes_.back().Refusal());
  }
  for (const LogicalIndex& index : table.logical_indexes) {
    if (index.kind == IndexKind::kForeignKey && index.related_table != 0) {
      FindRelationship(file, index);
    }
  }
}

void TableIndexes::Refuse(const std::string& reason) {
  if (refusal_.empty()) {
    refusal_ = reason;
  }
}

void TableIndexes::FindRelationship(Storage& file, const LogicalIndex& index) {
  const auto refuse = [&](const std::string& why) {
    Refuse("the relationship " + index.name + " " + why + "; open the file in Access and remove it");
  };
  TableDefinition other;
  try {
    other = ParseDefinition(file.Layout(), file.CodecFor(0), index.related_table,
                            ReadDefinitionPages(file, index.related_table));
  } catch (const AccessError&) {
    return refuse("leads to a damaged table");
  }
  const auto theirs = std::ranges::find(other.logical_indexes, index.related_index, &LogicalIndex::number);
  const bool known = index.related_type == kReferredTo || index.related_type == kReferring;
  if (!known || theirs == other.logical_indexes.end() || index.real_index >= indexes_.size() ||
      theirs->real_index >= other.real_indexes.size()) {
    return refuse("is not whole");
  }
  Relationship relationship{indexes_[index.real_index].Columns(),
                            Index(file, index.related_table, other, theirs->real_index), index.related_table,
                            index.related_type == kReferring};
  const auto type = [](const ColumnDefinition& column) { return column.shown.type; };
  if (!std::ranges::equal(relationship.columns, relationship.other.Columns(), {}, type, type)) {
    return refuse("is between columns of different types");
  }
  Refuse(relationship.other.Refusal());
  relationships_.push_back(std::move(relationship));
}

void TableIndexes::RememberKeys(const RowView& row) {
  keys_.clear();
  for (const Index& index : indexes_) {
    keys_.push_back(index.KeyOf(row));
  }
}

void TableIndexes::CheckNew(const RowView& row) {
  RememberKeys(row);
  for (std::size_t i = 0; i < indexes_.size(); ++i) {
    indexes_[i].CheckNew(keys_[i]);
  }
  for (const Relationship& relationship : relationships_) {
    if (!relationship.to_other) {
      continue;
    }
    const Index& other = relationship.other;
    const Index::RowKey sought = other.KeyOf(row, relationship.columns);
    const bool itself = relationship.other_table == page_ && other.KeyOf(row).key == sought.key;
    if (sought.nulls == 0 && !itself && !other.Contains(sought.key)) {
      throw ValueError("the row refers by " + relationship.columns.front().shown.name +
                           " to a row that does not exist; add that row first",
                       Fault::kRelated);
    }
  }
}

void TableIndexes::Insert(RowId row) const {
  for (std::size_t i = 0; i < indexes_.size(); ++i) {
    indexes_[i].Insert(keys_[i], row);
  }
}

void TableIndexes::CheckGone(const RowView& row, RowId id) {
  RememberKeys(row);
  for (const Relationship& relationship : relationships_) {
    if (relationship.to_other) {
      continue;
    }
    const Index::RowKey sought = relationship.other.KeyOf(row, relationship.columns);
    if (sought.nulls == 0 && IsReferredTo(relationship, sought.key, id)) {
      throw ValueError(
          "other rows refer to the row by " + relationship.columns.front().shown.name + "; delete those rows first",
          Fault::kRelated);
    }
  }
}

// Whether a row other than `id` refers to the row with this key. A reference from a row to itself does not forbid
// deleting that row.
bool TableIndexes::IsReferredTo(const Relationship& relationship, Bytes key, RowId id) const {
  IndexWalk walk(relationship.other.Tree(), key);
  while (walk.Next() && walk.Entry().size() == key.size() + kEntryRowSize &&
         std::ranges::equal(walk.Entry().first(key.size()), key)) {
    if (relationship.other_table != page_ || EntryRow(walk.Entry()) != id) {
      return true;
    }
  }
  return false;
}

void TableIndexes::Erase(RowId row) const {
  for (std::size_t i = 0; i < indexes_.size(); ++i) {
    indexes_[i].Erase(keys_[i], row);
  }
}

}  // namespace marlevo::access
