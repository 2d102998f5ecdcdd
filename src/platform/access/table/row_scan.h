// The work behind a Cursor: goes through the pages of a table and their slots, or through an index; compares the
// conditions; decodes a cell only when it is asked for.
//
// Changes during a scan. The scan holds the page that it is reading and notes the version that the file had when the
// page was read (Pager::Version); every change raises the version. Before going on, Next compares the versions. If they
// differ the page is read anew, and a scan by an index searches its last entry anew, since the entry may have moved to
// another page. Example: the scan stands on slot 3 of page 7, and the caller deletes that row. Next finds the version
// raised, reads page 7 again, and goes on with slot 4. If the deletion has emptied page 7, the page belongs to the
// table no more, and Next goes on with the table's next page.
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
  RowScan(std::shared_ptr<LoadedTable> table, std::span<const Equals> conditions, std::span<const TextHint> hints = {});
  // Goes through the rows that have `values` in the first columns of `index`, in the order of the index; see
  // Table::Walk.
  RowScan(std::shared_ptr<LoadedTable> table, std::span<const Equals> conditions, const Index& index,
          std::span<const Value> values);

  bool Next();
  RowId Row() const { return ToRowId({page_, slot_}); }
  const RowView& Cells() const { return row_; }

  bool IsNull(std::size_t column) const;
  std::int64_t Integer(std::size_t column) const;
  double Real(std::size_t column) const;
  std::string_view Text(std::size_t column);
  Bytes Raw(std::size_t column);

 private:
  // A condition on an integer in the fixed part of a row, in a form that is compared with the bytes of the row.
  struct RawCondition {
    std::size_t place;    // of four bytes in the row
    std::uint32_t mask;   // selects those of the four bytes that belong to the integer
    std::uint32_t bytes;  // the value sought
  };

  // A text of ASCII characters that is sought in a variable column of a Jet 4 table.
  struct RawText {
    std::size_t variable_index;
    std::string text;
  };

  static bool MayHold(const RawText& text, Bytes row);
  std::optional<RawCondition> RawForm(const Equals& condition) const;
  bool NextByPage();
  bool NextByIndex();
  bool NextEntry();
  bool NextPage();
  bool ReloadPage();
  std::uint32_t NextCandidate(const DataPage& page) const;
  bool LookAt(Bytes row, std::uint32_t page);
  bool LookAtSlot(const DataPage& page);
  Bytes CellBytes(std::size_t column) const;
  std::uint64_t Version() const { return table_->File().Pages().Version(); }

  std::shared_ptr<LoadedTable> table_;
  pager::Reading reading_;
  std::vector<Equals> conditions_;
  std::vector<RawCondition> raw_conditions_;
  std::vector<RawText> raw_texts_;
  std::size_t least_row_ = 0;  // a row that has the places of all raw conditions has so many bytes
  bool impossible_ = false;    // no further row qualifies: the end was reached, or a value fits no row

  std::uint32_t page_ = 0;
  pager::PageRef page_ref_;
  std::uint64_t page_version_ = 0;  // the file's version when page_ref_ was read
  std::uint32_t slot_ = 0;
  std::uint32_t next_slot_ = 0;

  // These are used when rows come in the order of an index.
  const Index* index_ = nullptr;
  Key key_start_;                 // the bytes with which the keys of all qualifying rows begin
  std::vector<std::byte> entry_;  // the entry of the current row
  std::optional<IndexWalk> walk_;
  std::uint64_t walk_version_ = 0;  // the file's version when walk_ began

  pager::PageRef body_ref_;  // the page that holds the bytes of a moved row
  std::uint32_t row_page_ = 0;
  RowView row_;
  std::vector<std::string> texts_;                   // decoded cells, by column
  std::vector<std::vector<std::byte>> long_values_;  // by column
};

}  // namespace marlevo::access
