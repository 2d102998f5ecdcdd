#include "platform/access/any_file.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <string>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/format.h"
#include "platform/access/cell_of.h"
#include "platform/access/random_row.h"

namespace marlevo::access {
namespace {

using namespace std::string_view_literals;
using enum ColumnType;

// False when the engine refused it.
template <typename Work>
bool Attempt(const Work& work) {
  try {
    work();
    return true;
  } catch (const AccessError&) {
    return false;
  } catch (const pager::PagerError&) {
    return false;
  }
}

bool Look(Cursor cursor, const Table& table) {
  bool well = true;
  while (cursor.Next()) {
    for (std::size_t i = 0; i < table.Columns().size(); ++i) {
      well &= Attempt([&] { CellOf(cursor, table, i); });
    }
  }
  return well;
}

// A search looks at the bytes of a row before the row is taken apart.
bool Search(const Table& table) {
  bool well = true;
  for (std::size_t i = 0; i < table.Columns().size(); ++i) {
    const Equals number{i, 7};
    const TextHint text{i, "ab"};
    if (table.Columns()[i].type == kLong) {
      well &= Look(table.Scan({&number, 1}), table);
    } else if (table.Columns()[i].type == kText) {
      well &= Look(table.Scan({}, {&text, 1}), table);
    }
  }
  return well;
}

bool ChangeTable(Table& table, std::mt19937& random) {
  bool well = true;
  int row = 0;
  for (Cursor cursor = table.Scan(); cursor.Next();) {
    if (++row % 3 == 0) {
      well &= Attempt([&] { table.Delete(cursor.Row()); });
    }
  }
  for (int n = 0; n < 2; ++n) {
    well &= Attempt([&] { table.Insert(RandomRow(table.Columns(), "x", false, random).Values()); });
  }
  return well;
}

}  // namespace

std::vector<std::byte> SmallFile(int version) {
  const std::vector<ColumnSchema> a_columns{{"n", kLong},    {"text", kText, 255}, {"memo", kMemo},    {"b", kBoolean},
                                            {"d", kDouble},  {"m", kCurrency},     {"day", kDateTime}, {"byte", kByte},
                                            {"i", kInteger}, {"s", kSingle}};
  const std::vector<IndexSchema> a_indexes{{.name = "PrimaryKey", .columns = {{"n"}}, .primary_key = true},
                                           {.name = "text", .columns = {{"text", true}, {"b"}}, .ignore_nulls = true},
                                           {.name = "d", .columns = {{"d"}, {"day"}, {"m"}, {"s"}}}};
  const std::vector<ColumnSchema> b_columns{{"n", kLong}, {"ole", kOle}, {"id", kGuid}, {"bin", kBinary, 20}};
  const TableSchema empty{"Empty", {{"text", kText, 9}}, {{.name = "text", .columns = {{"text"}}}}};
  pager::FaultFiles files;
  {
    Database database = Database::Create(kAnyFile, "", {{"A", a_columns, a_indexes}, {"B", b_columns}, empty}, files,
                                         {.version = version});
    Table a = database.OpenTable("A");
    Table b = database.OpenTable("B");
    std::mt19937 random(1);
    const std::string memo(2500, 'm');
    const Bytes ole = std::as_bytes(std::span("\0\0", 3));
    for (int i = 0; i < 20; ++i) {
      std::string key = i % 7 == 0 ? "é" : "";
      while (key.size() < 240) {
        key += static_cast<char>('a' + random() % 26);
      }
      const auto text = std::string_view(memo).substr(0, i == 5 ? 2500 : i == 6 ? 200 : 10);
      const RowId row =
          a.Insert(std::vector<Value>{i, std::string_view(key), text, i % 2 == 0, 0.5, Value(), 37000.25, i, i, 1.5});
      if (i % 11 == 3) {
        a.Delete(row);
      }
      if (i % 8 == 0) {
        b.Insert(std::vector<Value>{i, ole, "{00112233-4455-6677-8899-AABBCCDDEEFF}"sv, ole});
      }
    }
    database.Flush();
  }
  return files.Content(kAnyFile);
}

void Damage(FuzzInput& input, std::vector<std::byte>& file) {
  const Format& format = file[0x14] == std::byte{0} ? kJet3 : kJet4;
  const std::size_t size = format.page_size;
  while (!input.AtEnd() && file.size() > size) {
    const auto how = input.Take<std::uint8_t>();
    const std::size_t pages = file.size() / size;
    const MutableBytes page = MutableBytes(file).subspan(input.Take<std::uint8_t>() % pages * size, size);
    const std::size_t count = std::min<std::size_t>(LoadU16(&page[format.slot_count_at]), kMaxSlots) + 1;
    const std::size_t slot = input.Take<std::uint8_t>();
    const std::size_t slot_at = format.slots_at + 2 * (slot % count);
    const auto number = input.Take<std::uint16_t>();
    const std::size_t row = LoadU16(&page[slot_at]) & kSlotOffset;
    if (how % 9 == 8) {
      if (number % 2 == 0) {
        std::memcpy(page.data(), &file[slot % pages * size], size);
      } else {
        file.resize(file.size() - number % 1024);
      }
      continue;
    }
    const std::size_t places[] = {number % size,
                                  slot % 64,
                                  row + number % 80,
                                  format.index_page.entries + number % 600,
                                  slot_at,
                                  format.index_page.entry_mask + slot,
                                  row + 5 + slot % 16,
                                  kMapPageHeader + slot};
    const std::size_t place = places[how % 9];
    if (how % 9 > 4) {
      page[place % size] ^= std::byte{1} << number % 8;
      continue;
    }
    for (std::size_t at = place; at <= place + how / 9 % 8u && at < size; ++at) {
      page[at] = input.Take<std::byte>();
    }
  }
}

bool ReadAnyFile(pager::FaultFiles& files, bool check) {
  bool well = true;
  well &= Attempt([&] {
    const Database database = Database::Open(kAnyFile, {}, files);
    std::vector<std::string> names = database.Tables();
    names.insert(names.end(), {"MSysObjects", "MSysACEs", "MSysQueries", "MSysRelationships"});
    for (const std::string& name : names) {
      well &= Attempt([&] {
        const Table table = database.OpenTable(name);
        well &= Attempt([&] { well &= Look(table.Scan(), table); });
        well &= Attempt([&] { well &= Search(table); });
        for (std::size_t i = 0; i < table.Indexes().size(); ++i) {
          well &= Attempt([&] { well &= Look(table.Walk(i, {}), table); });
        }
      });
    }
    well &= !check || database.FindFaults().empty();
  });
  return well;
}

bool ChangeAnyFile(pager::FaultFiles& files) {
  bool well = true;
  std::mt19937 random(1);
  well &= Attempt([&] {
    Database database = Database::Open(kAnyFile, {}, files);
    for (const std::string& name : database.Tables()) {
      well &= Attempt([&] {
        Table table = database.OpenTable(name);
        well &= Attempt([&] {
          const Statement undone = database.Begin();
          ChangeTable(table, random);
        });
        well &= Attempt([&] { well &= ChangeTable(table, random); });
      });
    }
    database.Flush();
  });
  return well;
}

}  // namespace marlevo::access
