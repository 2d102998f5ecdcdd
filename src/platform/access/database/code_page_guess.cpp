#include "platform/access/database/code_page_guess.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/code_page.h"
#include "platform/access/database/catalog.h"
#include "platform/access/table/loaded_table.h"
#include "platform/access/table/row_scan.h"

namespace marlevo::access {

namespace {

constexpr int kMostRows = 400;  // that are looked at in each table

// Whether the texts in the first rows of the table are valid in this code page.
bool IsValid(const CodePage& page, const std::shared_ptr<LoadedTable>& table) {
  RowScan rows(table, {});
  for (int i = 0; i < kMostRows && rows.Next(); ++i) {
    for (const ColumnDefinition& column : table->Definition().columns) {
      if (column.shown.type != ColumnType::kText || column.fixed || !rows.Cells().IsSet(column.number)) {
        continue;
      }
      const std::string_view text = AsText(rows.Cells().Variable(column.variable_index));
      if (std::ranges::none_of(text, [](char c) { return (c & 0x80) != 0; })) {
        continue;
      }
      std::string decoded = page.Decode(text);
      if (text.size() == column.stored_length && decoded.ends_with(kUndecodable)) {
        decoded.resize(decoded.size() - kUndecodable.size());  // a character cut at the column's length
      }
      if (decoded.find(kUndecodable) != std::string::npos) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace

bool MayBeTraditionalChinese(const std::shared_ptr<Storage>& file) {
  const std::unique_ptr<CodePage> page = CodePage::Find(kTraditionalChinese);
  if (page == nullptr) {
    return false;
  }
  std::vector<CatalogEntry> entries;
  try {
    entries = ReadCatalog(file);
  } catch (const AccessError&) {
    // A damaged catalog or table is passed over here; whoever opens the table gets the error.
  }
  return std::ranges::all_of(entries, [&](const CatalogEntry& entry) {
    try {
      return entry.type != kLocalTable || IsValid(*page, LoadedTable::Open(file, entry.page, entry.name));
    } catch (const AccessError&) {
      return true;
    }
  });
}

void SettleCodePage(const std::shared_ptr<Storage>& file) {
  if (file->IsCodePageDoubtful()) {
    const pager::Reading reading(file->Pages());
    if (MayBeTraditionalChinese(file)) {
      file->SetCodePage(kTraditionalChinese);
    }
  }
}

}  // namespace marlevo::access
