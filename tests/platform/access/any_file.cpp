#include "platform/access/any_file.h"

#include <random>
#include <string>

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

bool Look(Cursor cursor, std::size_t columns) {
  bool well = true;
  while (cursor.Next()) {
    for (std::size_t i = 0; i < columns; ++i) {
      well &= Attempt([&] { static_cast<void>(cursor.Cell(i)); });
    }
  }
  return well;
}

// A value that the column takes; `n` tells rows apart.
Value AnyValue(const Column& column, std::int64_t n, std::string& text) {
  switch (column.type) {
    case kBoolean:
      return n % 2 == 0;
    case kText:
    case kMemo:
      text = std::to_string(n * 7919) + std::string(column.length / 2 + static_cast<std::size_t>(n % 5), 'x');
      text.resize(column.length == 0 ? text.size() : std::min(text.size(), column.length));
      return std::string_view(text);
    case kGuid:
      return "{00112233-4455-6677-8899-AABBCCDDEEFF}"sv;
    case kBinary:
    case kOle:
      return Bytes();
    default:
      return n % 200;
  }
}

bool ChangeTable(Table& table) {
  bool well = true;
  int row = 0;
  for (Cursor cursor = table.Scan(); cursor.Next();) {
    if (++row % 3 == 0) {
      well &= Attempt([&] { table.Delete(cursor.Row()); });
    }
  }
  std::vector<std::string> texts(table.Columns().size());
  for (std::int64_t n = 100; n < 104; ++n) {
    std::vector<Value> values;
    for (std::size_t i = 0; i < texts.size(); ++i) {
      values.push_back(AnyValue(table.Columns()[i], n, texts[i]));
    }
    well &= Attempt([&] { table.Insert(values); });
  }
  return well;
}

}  // namespace

std::vector<std::byte> SmallFile(int version) {
  pager::FaultFiles files;
  {
    Database database = Database::Create(kAnyFile, "",
                                         {{"A",
                                           {{"n", kLong},
                                            {"text", kText, 255},
                                            {"memo", kMemo},
                                            {"b", kBoolean},
                                            {"d", kDouble},
                                            {"m", kCurrency},
                                            {"day", kDateTime},
                                            {"byte", kByte},
                                            {"i", kInteger},
                                            {"s", kSingle}},
                                           {{.name = "PrimaryKey", .columns = {{"n"}}, .primary_key = true},
                                            {.name = "text", .columns = {{"text", true}, {"b"}}, .ignore_nulls = true},
                                            {.name = "d", .columns = {{"d"}, {"day"}, {"m"}, {"s"}}}}},
                                          {"B", {{"n", kLong}, {"ole", kOle}, {"id", kGuid}, {"bin", kBinary, 20}}},
                                          {"Empty", {{"text", kText, 9}}, {{.name = "text", .columns = {{"text"}}}}}},
                                         files, {.version = version});
    Table a = database.OpenTable("A");
    Table b = database.OpenTable("B");
    std::mt19937 random(1);
    const std::string memo(4200, 'm');
    const std::byte ole[3] = {};
    for (std::int64_t i = 0; i < 20; ++i) {
      std::string key = i % 7 == 0 ? "é" : "";
      while (key.size() < 240) {
        key += static_cast<char>('a' + random() % 26);
      }
      const std::size_t length = i == 5 ? 4200 : i == 6 ? 200 : 10;
      const RowId row = a.Insert(std::vector<Value>{i,
                                                    std::string_view(key),
                                                    std::string_view(memo).substr(0, length),
                                                    i % 2 == 0,
                                                    0.5,
                                                    {},
                                                    37000.25,
                                                    i,
                                                    i,
                                                    1.5});
      if (i % 11 == 3) {
        a.Delete(row);
      }
      if (i % 8 == 0) {
        b.Insert(std::vector<Value>{i, Bytes(ole), "{00112233-4455-6677-8899-AABBCCDDEEFF}"sv, Bytes(ole)});
      }
    }
    database.Flush();
  }
  return files.Content(kAnyFile);
}

bool ReadAnyFile(pager::FaultFiles& files) {
  bool well = true;
  well &= Attempt([&] {
    const Database database = Database::Open(kAnyFile, {}, files);
    std::vector<std::string> names = database.Tables();
    names.insert(names.end(), {"MSysObjects", "MSysACEs", "MSysQueries", "MSysRelationships"});
    for (const std::string& name : names) {
      well &= Attempt([&] {
        const Table table = database.OpenTable(name);
        well &= Attempt([&] { well &= Look(table.Scan(), table.Columns().size()); });
        for (std::size_t i = 0; i < table.Indexes().size(); ++i) {
          well &= Attempt([&] { well &= Look(table.Walk(i, {}), table.Columns().size()); });
        }
      });
    }
    well &= database.Check().empty();
  });
  return well;
}

bool ChangeAnyFile(pager::FaultFiles& files) {
  bool well = true;
  well &= Attempt([&] {
    Database database = Database::Open(kAnyFile, {}, files);
    for (const std::string& name : database.Tables()) {
      well &= Attempt([&] {
        Table table = database.OpenTable(name);
        well &= Attempt([&] {
          Statement undone(database);
          ChangeTable(table);
        });
        well &= Attempt([&] { well &= ChangeTable(table); });
      });
    }
    database.Flush();
  });
  return well;
}

}  // namespace marlevo::access
