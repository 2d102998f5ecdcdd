// A table that is open: its definition, its indexes, and the rules of its columns. All Tables and Cursors of one
// Storage that concern the same table share one LoadedTable.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/access/bytes/schema.h"
#include "platform/access/bytes/table_definition.h"
#include "platform/access/storage/row_space.h"
#include "platform/access/storage/storage.h"
#include "platform/access/table/row_encoder.h"
#include "platform/access/table/table_indexes.h"

namespace marlevo::access {

class LoadedTable {
 public:
  // Opens the table whose definition begins at `page`. Returns the same object as before while somebody uses it, so
  // that there are never two that remember different things of one table.
  static std::shared_ptr<LoadedTable> Open(const std::shared_ptr<Storage>& file, std::uint32_t page,
                                           const std::string& name);
  LoadedTable(const LoadedTable&) = delete;
  LoadedTable& operator=(const LoadedTable&) = delete;

  Storage& File() const { return *file_; }
  const std::shared_ptr<Storage>& SharedFile() const { return file_; }
  std::uint32_t Page() const { return page_; }
  const std::string& Name() const { return name_; }
  // The counts in it (rows, AutoNumber, keys) are 0: they change with every row and are read from the file.
  const TableDefinition& Definition() const { return definition_; }
  const std::vector<Column>& Columns() const { return columns_; }
  const TextCodec& CodecOf(std::size_t column) const { return *texts_[column]; }
  bool HasVariableColumns() const { return definition_.variable_columns > 0; }
  const std::vector<Index>& Indexes() const { return indexes_.All(); }
  // The indexes that can be searched, as callers see them; and the index that belongs to a place in IndexViews.
  const std::vector<IndexView>& IndexViews() const { return index_views_; }
  const Index& SearchedIndex(std::size_t view) const { return indexes_.All()[searched_indexes_[view]]; }
  UsageMap OwnedPages() const { return rows_.Owned(); }
  std::size_t RowCount() const;
  std::int32_t LastAutonumber() const;  // the largest AutoNumber that a row has got
  // Why the table cannot be written; empty when it can.
  const std::string& WriteRefusal() const { return write_refusal_; }

  // Reads from the table's properties (see properties.h) which values Insert refuses. Rules that only Access can check
  // become a WriteRefusal. Throws AccessError when the properties cannot be read.
  void SetRules(Bytes properties);
  // Makes "table NAME" followed by `why` the WriteRefusal, unless there is one already.
  void RefuseWriting(const std::string& why);

  // Called before the table is read or written: when somebody else has changed the file, drops what this object
  // remembers of its pages. Throws AccessError when the definition has changed since the table was opened.
  void Refresh();

  // The slots that lead to the bytes of `row`, which is not deleted: its own slot, then for a moved row the slots to
  // which it points in turn. The last one holds the bytes. Example: a row that grew and no longer fitted on page 7
  // keeps its slot there, which points to its body on page 9; its path is those two slots.
  std::vector<RowPointer> PathOf(RowPointer row) const;

  // Inside a statement. These functions do not look at WriteRefusal; the caller has. Delete returns false when there is
  // no such row.
  RowPointer Insert(std::span<const Value> values);
  // Copies a row of another table with the same columns, see RowEncoder::EncodeStored. The row goes behind all others,
  // is not checked against the rules of the columns, and does not raise LastAutonumber.
  RowPointer AppendStored(std::span<const std::optional<Bytes>> values);
  bool Delete(RowPointer row);

 private:
  LoadedTable(std::shared_ptr<Storage> file, std::uint32_t page, std::string name);

  std::vector<std::byte> LoadDefinition() const;
  std::string FindWriteRefusal() const;
  void FindSearchedIndexes();
  bool IsLiving(RowPointer row) const;
  void EraseFromIndexes(RowId row, RowPointer body);
  void RemoveLongValues(RowPointer body);
  RowSpace& LongValueSpace(const ColumnDefinition& column);
  std::vector<Value> WithAutonumber(std::span<const Value> values) const;
  void CheckRules(std::span<const Value> values) const;
  void StoreLongValues(MutableBytes row);
  void CountRow();
  void CountAutonumber(std::span<const Value> values);

  std::shared_ptr<Storage> file_;
  std::uint32_t page_;
  std::string name_;
  std::vector<std::byte> definition_bytes_;  // with the counts set to 0
  TableDefinition definition_;
  std::vector<Column> columns_;
  std::vector<const TextCodec*> texts_;
  std::optional<std::size_t> autonumber_;  // the AutoNumber column, if there is one
  std::vector<std::size_t> ruled_;         // the columns that refuse null or an empty text
  std::string write_refusal_;
  RowEncoder encoder_;
  RowSpace rows_;
  std::map<std::uint16_t, RowSpace> long_values_;  // by column number
  std::uint64_t known_version_;                    // the file's version when this object last looked at it
  TableIndexes indexes_;
  std::vector<IndexView> index_views_;
  std::vector<std::size_t> searched_indexes_;  // for each of the index_views_, its place in indexes_
};

}  // namespace marlevo::access
