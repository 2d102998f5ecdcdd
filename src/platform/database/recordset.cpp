#include "platform/database/recordset.h"

#include <utility>

#include "platform/base/text.h"
#include "platform/database/recordset_rows.h"

namespace marlevo {

using Kind = Recordset::Rows::Cell::Kind;

Recordset::Recordset(std::unique_ptr<Rows> rows) : rows_(std::move(rows)) {
  rows_->Rewind();
}
Recordset::Recordset(Recordset&& other) noexcept = default;
Recordset& Recordset::operator=(Recordset&& other) noexcept = default;
Recordset::~Recordset() = default;

bool Recordset::AtEnd() const {
  return rows_->AtEnd();
}

void Recordset::MoveNext() {
  rows_->MoveNext();
}

std::string Recordset::Text(std::string_view field) const {
  const Rows::Cell& cell = rows_->Field(field);
  switch (cell.kind) {
    case Kind::kNull:
      return "";
    case Kind::kInteger:
      return std::to_string(cell.integer);
    case Kind::kReal:
      return NumberText(cell.real);
    case Kind::kText:
      return std::string(cell.text);
  }
  return "";
}

double Recordset::Number(std::string_view field) const {
  const Rows::Cell& cell = rows_->Field(field);
  switch (cell.kind) {
    case Kind::kNull:
      return 0;
    case Kind::kInteger:
      return static_cast<double>(cell.integer);
    case Kind::kReal:
      return cell.real;
    case Kind::kText:
      return LenientNumber(cell.text);
  }
  return 0;
}

bool Recordset::IsNull(std::string_view field) const {
  return rows_->Field(field).kind == Kind::kNull;
}

}  // namespace marlevo
