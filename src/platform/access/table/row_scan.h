// The work behind a Cursor: from page to page of a table, from slot to slot, conditions first, cells when asked for.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/access/bytes/row.h"
#include "platform/access/table/loaded_table.h"
#include "platform/access/table/table.h"
#include "platform/pager/pager.h"

namespace marlevo::access {

class RowScan {
 public:
  RowScan(std::shared_ptr<LoadedTable> table, std::span<const Equals> conditions);
  // In the order of one of the table's indexes, rows with these values in its first columns; see Table::Walk.
  RowScan(std::shared_ptr<LoadedTable> table, std::span<const Equals> conditions, const Index& index,
          std::span<const Value> values);

  bool Next();
  RowId Row() const { return ToRowId({page_, static_cast<std::uint8_t>(slot_)}); }
  const LoadedTable& Table() const { return *table_; }
  const RowView& Cells() const { return row_; }

  bool IsNull(std::size_t column) const;
  std::int64_t Integer(std::size_t column) const;
  double Real(std::size_t column) const;
  std::string_view Text(std::size_t column);
  Bytes Raw(std::size_t column);

 private:
  // A condition on an integer in the fixed part of a row, as it shows in the row's bytes.
  struct RawCondition {
    std::size_t place;   // of four bytes
    std::uint32_t mask;  // those of them that are the integer
    std::uint32_t bytes;
  };

  std::optional<RawCondition> RawForm(const Equals& condition) const;
  bool NextByPage();
  bool NextByIndex();
  bool NextEntry();
  bool NextPage();
  bool ReloadPage();
  bool MayQualify(Bytes row) const;
  std::size_t NextCandidate(const DataPage& page, std::size_t slot) const;
  bool LookAt(Bytes row, std::uint32_t page);
  bool LookAtSlot(const DataPage& page);
  Bytes CellBytes(std::size_t column) const;
  std::uint64_t Version() const { return table_->File().Pages().Version(); }

  std::shared_ptr<LoadedTable> table_;
  pager::Reading reading_;
  std::vector<Equals> conditions_;
  std::vector<RawCondition> raw_conditions_;
  bool impossible_ = false;  // a value that no row can hold

  std::uint32_t page_ = 0;
  pager::PageRef page_ref_;
  std::uint64_t page_version_ = 0;  // of the file when page_ref_ was read
  std::size_t slot_ = 0;
  std::size_t next_slot_ = 0;

  // When rows come in the order of an index.
  const Index* index_ = nullptr;
  Key key_start_;                 // what the entries begin with
  std::vector<std::byte> entry_;  // of the current row
  std::optional<IndexWalk> walk_;
  std::uint64_t walk_version_ = 0;  // of the file when walk_ began

  pager::PageRef body_ref_;  // page of a moved row's body
  std::uint32_t row_page_ = 0;
  RowView row_;
  std::vector<std::string> texts_;                   // decoded cells, by column
  std::vector<std::vector<std::byte>> long_values_;  // by column
};

}  // namespace marlevo::access
