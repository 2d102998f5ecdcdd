#include "platform/access/table/table.h"

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/cell.h"
#include "platform/access/table/loaded_table.h"
#include "platform/access/table/row_scan.h"
#include "platform/access/table/statement.h"

namespace marlevo::access {

namespace {

// Runs `work` inside the open statement of the caller, or in a statement of its own when none is open.
template <typename Work>
auto InStatement(const LoadedTable& table, Work work) {
  if (!table.WriteRefusal().empty()) {
    throw AccessError(table.WriteRefusal(), Fault::kNeedsAccess);
  }
  if (table.File().InStatement()) {
    return work();
  }
  Statement statement(table.SharedFile());
  const auto result = work();
  statement.Commit();
  return result;
}

}  // namespace

Cursor::Cursor(std::unique_ptr<RowScan> state) : state_(std::move(state)) {}
Cursor::~Cursor() = default;
Cursor::Cursor(Cursor&&) noexcept = default;
Cursor& Cursor::operator=(Cursor&&) noexcept = default;

bool Cursor::Next() {
  return state_->Next();
}
RowId Cursor::Row() const {
  return state_->Row();
}
bool Cursor::IsNull(std::size_t column) const {
  return state_->IsNull(column);
}
std::int64_t Cursor::Integer(std::size_t column) const {
  return state_->Integer(column);
}
double Cursor::Real(std::size_t column) const {
  return state_->Real(column);
}
std::string_view Cursor::Text(std::size_t column) {
  return state_->Text(column);
}
Bytes Cursor::Raw(std::size_t column) {
  return state_->Raw(column);
}

Table::Table(std::shared_ptr<LoadedTable> state) : state_(std::move(state)) {}
Table::~Table() = default;
Table::Table(Table&&) noexcept = default;
Table& Table::operator=(Table&&) noexcept = default;

const std::string& Table::Name() const {
  return state_->Name();
}
const std::vector<Column>& Table::Columns() const {
  return state_->Columns();
}
std::size_t Table::RowCount() const {
  return state_->RowCount();
}

RowId Table::Insert(std::span<const Value> values) {
  return InStatement(*state_, [&] { return ToRowId(state_->Insert(values)); });
}

bool Table::Delete(RowId row) {
  return InStatement(*state_, [&] { return state_->Delete(FromRowId(row)); });
}

std::function<std::optional<std::size_t>(std::string_view)> Table::LengthCounter(std::size_t column) const {
  return [codec = state_->CodecOf(column)](std::string_view text) {
    std::vector<std::byte> stored;
    return codec.Encode(text, false, stored);
  };
}

const std::vector<IndexView>& Table::Indexes() const {
  return state_->IndexViews();
}

Cursor Table::Walk(std::size_t index, std::span<const Value> values, std::span<const Equals> conditions) const {
  return Cursor(std::make_unique<RowScan>(state_, conditions, state_->SearchedIndex(index), values));
}

Cursor Table::Scan(std::span<const Equals> conditions, std::span<const TextHint> hints) const {
  return Cursor(std::make_unique<RowScan>(state_, conditions, hints));
}

}  // namespace marlevo::access
