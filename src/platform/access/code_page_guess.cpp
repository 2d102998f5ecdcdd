#include "platform/access/code_page_guess.h"

#include <algorithm>
#include <string_view>

#include "platform/access/access_error.h"
#include "platform/access/catalog.h"
#include "platform/access/code_page.h"
#include "platform/access/scan_state.h"
#include "platform/access/table_state.h"

namespace marlevo::access {

namespace {

constexpr int kMostRows = 400;  // of one table
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

struct Evidence {
  bool for_it = false;
  bool against_it = false;
};

void Look(const CodePage& page, const std::shared_ptr<TableState>& table, Evidence& evidence) {
  ScanState rows(table, {});
  for (int i = 0; i < kMostRows && !evidence.against_it && rows.Next(); ++i) {
    for (const ColumnDefinition& column : table->Definition().columns) {
      if (column.shown.type != ColumnType::kText || column.fixed || !rows.Cells().IsSet(column.number)) {
        continue;
      }
      const std::string_view text = AsText(rows.Cells().Variable(column.variable_index));
      if (std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) >= 0x80; })) {
        std::string decoded = page.Decode(text);
        if (text.size() == column.stored_length && decoded.ends_with(kReplacement)) {
          decoded.resize(decoded.size() - kReplacement.size());  // a character cut at the column's length
        }
        evidence.for_it = true;
        evidence.against_it = evidence.against_it || decoded.find(kReplacement) != std::string::npos;
      }
    }
  }
}

}  // namespace

bool LooksTraditionalChinese(const std::shared_ptr<File>& file) {
  const std::unique_ptr<CodePage> page = CodePage::Find(kTraditionalChinese);
  Evidence evidence;
  try {
    for (const CatalogEntry& entry : ReadCatalog(file)) {
      if (page != nullptr && IsUserTable(entry)) {
        Look(*page, file->Table(entry.page, entry.name), evidence);
      }
    }
  } catch (const AccessError&) {
    // Whoever opens the damaged table is told.
  }
  return evidence.for_it && !evidence.against_it;
}

}  // namespace marlevo::access
