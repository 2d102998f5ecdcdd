// Gives files what Access gives them and this engine does not make itself.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/bytes/table_definition.h"
#include "platform/access/database/catalog.h"
#include "platform/access/database/system_tables.h"
#include "platform/access/storage/definition_pages.h"
#include "platform/access/storage/storage.h"

namespace marlevo::access {

inline std::shared_ptr<Storage> OpenFile(const std::filesystem::path& path) {
  return Storage::Open(path, {.password = {}, .code_page = {}, .any_password = true}, pager::NativeFiles());
}

template <typename Change>
void ChangeDefinition(const std::filesystem::path& path, std::string_view table, const Change& change) {
  const auto file = OpenFile(path);
  const std::uint32_t page = FindTable(file, table).page;
  TableDefinition definition =
      ParseDefinition(file->Layout(), file->CodecFor(0), page, ReadDefinitionPages(*file, page));
  change(definition);
  Statement statement(file);
  WriteDefinitionPages(*file, page, BuildDefinition(file->Layout(), file->CodecFor(0), definition));
  statement.Commit();
  file->Pages().Flush();
}

// Replaces a value of the last table's row in the catalog.
inline void ChangeCatalog(const std::filesystem::path& path, std::size_t column, Value value) {
  Database database = Database::Open(path, {.password = {}, .code_page = {}, .any_password = true});
  Table objects = database.OpenTable("MSysObjects");
  const RowId last = RowsOf(objects).rbegin()->first;
  Cursor cursor = objects.Scan();
  while (cursor.Next() && cursor.Row() != last) {
  }
  const std::string name(cursor.Text(2));
  Row row(objects.Columns().size());
  for (const std::size_t number : {0, 1, 3, 4, 5, 7}) {
    row[number] = CellOf(cursor, objects, number);
  }
  row[2] = std::string_view(name);
  row[column] = value;
  EXPECT_TRUE(objects.Delete(last));
  objects.Insert(row);
  database.Flush();
}

struct OddProperty {
  std::string column;  // none: of the table
  std::string name;
  std::variant<bool, std::string> value;
};

// Of the last table.
inline void SetProperties(const std::filesystem::path& path, const std::vector<OddProperty>& properties) {
  const bool jet4 = OpenFile(path)->Layout().version == 4;
  const auto number = [](std::size_t size, std::size_t value) {
    return std::string(reinterpret_cast<const char*>(&value), size);  // the lowest byte comes first
  };
  const auto counted = [&](const std::string& text) {
    std::vector<std::byte> bytes;
    (jet4 ? TextCodec() : TextCodec(950)).Encode(text, false, bytes);
    return number(2, bytes.size()).append(AsText(bytes));
  };
  const auto block = [&](std::size_t kind, const std::string& rest) {
    return number(4, rest.size() + 6) + number(2, kind) + rest;
  };
  std::string names;
  std::string values;
  for (std::size_t i = 0; i < properties.size(); ++i) {
    const auto& [column, name, value] = properties[i];
    const auto* text = std::get_if<std::string>(&value);
    const std::string stored = text != nullptr ? counted(*text) : number(2, 1) + number(1, std::get<bool>(value));
    const std::string owner = counted(column);
    names += counted(name);
    values +=
        block(column.empty() ? 0 : 1, number(4, owner.size() + 4) + owner + number(2, stored.size() + 6) +
                                          number(1, 0) + number(1, text != nullptr ? 12 : 1) + number(2, i) + stored);
  }
  const std::string all = std::string(jet4 ? "MR2" : "KKD", 4) + block(0x80, names) + values;
  ChangeCatalog(path, kPropertiesColumn, AsBytes(all));
}

}  // namespace marlevo::access
