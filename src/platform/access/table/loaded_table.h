// A table that is open: its definition and what follows from it, shared by a Table and its Cursors.
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
  // The table whose definition begins at `page`; the same one while somebody has it, so that what it remembers stays
  // true.
  static std::shared_ptr<LoadedTable> Open(const std::shared_ptr<Storage>& file, std::uint32_t page,
                                           const std::string& name);
  LoadedTable(const LoadedTable&) = delete;
  LoadedTable& operator=(const LoadedTable&) = delete;

  Storage& File() const { return *file_; }
  const std::shared_ptr<Storage>& SharedFile() const { return file_; }
  std::uint32_t Page() const { return page_; }
  const std::string& Name() const { return name_; }
  // Without its counters, which change with every row.
  const TableDefinition& Definition() const { return definition_; }
  const std::vector<Column>& Columns() const { return columns_; }
  const TextCodec& CodecOf(std::size_t column) const { return *texts_[column]; }
  bool HasVariableColumns() const { return definition_.variable_columns > 0; }
  const std::vector<Index>& Indexes() const { return indexes_.All(); }
  // Indexes that can be searched: as callers see them, and themselves.
  const std::vector<IndexView>& IndexViews() const { return index_views_; }
  const Index& SearchedIndex(std::size_t view) const { return indexes_.All()[searched_indexes_[view]]; }
  UsageMap OwnedPages() const { return rows_.Owned(); }
  std::size_t RowCount() const;
  std::uint32_t LastAutonumber() const;  // that was handed out
  const std::string& WriteRefusal() const { return write_refusal_; }

  // Takes in what the catalog keeps of the columns (see properties.h): which values Insert refuses. Rules that cannot
  // be kept are a WriteRefusal. Throws AccessError when they cannot be read.
  void SetRules(Bytes properties);
  // Unless there is a reason already. `why` follows the table's name.
  void RefuseWriting(const std::string& why);

  // Throws AccessError when somebody else has changed the columns since the table was opened.
  void Refresh();

  // The slots that lead to a row's bytes: its own, and those of its body when it was moved. `row` is not deleted.
  std::vector<RowPointer> PathOf(RowPointer row) const;

  // Inside a statement. Without asking WriteRefusal.
  RowPointer Insert(std::span<const Value> values);
  // A row of another table with this definition, see RowEncoder::EncodeStored; behind all others, whatever the rules of
  // the columns say. The AutoNumber is not counted on.
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
  std::vector<std::byte> definition_bytes_;  // without the counters
  TableDefinition definition_;
  std::vector<Column> columns_;
  std::vector<const TextCodec*> texts_;
  std::optional<std::size_t> autonumber_;  // that column
  std::vector<std::size_t> ruled_;         // columns that do not take every value
  std::string write_refusal_;
  RowEncoder encoder_;
  RowSpace rows_;
  std::map<std::uint16_t, RowSpace> long_values_;  // by column number
  std::uint64_t known_version_;                    // of the file, to which belongs what is remembered
  TableIndexes indexes_;
  std::vector<IndexView> index_views_;
  std::vector<std::size_t> searched_indexes_;  // places in indexes_ of index_views_
};

}  // namespace marlevo::access
