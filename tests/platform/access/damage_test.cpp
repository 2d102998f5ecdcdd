// Files with random damage: whatever the bytes say, the engine reads, writes or refuses, and nothing else happens.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/database.h"
#include "platform/pager/fault_files.h"

namespace marlevo::access {
namespace {

using pager::FaultFiles;
using namespace std::string_view_literals;

constexpr const char* kFile = "/disk/4star.mdb";

std::vector<std::byte> NewFile() {
  FaultFiles files;
  {
    using enum ColumnType;
    Database database = Database::Create(
        kFile, "",
        {{"A", {{"n", kLong}, {"text", kText, 50}, {"memo", kMemo}, {"b", kBoolean}, {"d", kDouble}, {"m", kCurrency}}},
         {"B", {{"n", kLong}, {"ole", kOle}, {"id", kGuid}}}},
        files);
    Table a = database.OpenTable("A");
    Table b = database.OpenTable("B");
    const std::string memo(9000, 'm');
    for (std::int64_t i = 0; i < 200; ++i) {
      a.Insert(std::vector<Value>{
          i, "客戶 text"sv, std::string_view(memo).substr(0, i % 50 == 0 ? 9000 : 40), i % 2 == 0, 0.5, {}});
      b.Insert(std::vector<Value>{i, Bytes(), "{00112233-4455-6677-8899-AABBCCDDEEFF}"sv});
    }
    database.Flush();
  }
  return files.Content(kFile);
}

// Everything that can be done to a file. True when all of it went well.
bool UseAll(FaultFiles& files) {
  bool well = true;
  const auto attempt = [&well](const auto& work) {
    try {
      work();
    } catch (const AccessError&) {
      well = false;
    } catch (const pager::PagerError&) {
      well = false;
    }
  };
  attempt([&] {
    Database database = Database::Open(kFile, {.password = "qorvat", .code_page = {}}, files);
    for (const std::string& name : database.Tables()) {
      attempt([&] {
        Table table = database.OpenTable(name);
        attempt([&] {
          for (Cursor cursor = table.Scan(); cursor.Next();) {
            for (std::size_t i = 0; i < table.Columns().size(); ++i) {
              attempt([&] { static_cast<void>(cursor.Cell(i)); });
            }
          }
        });
        attempt([&] {
          std::size_t row = 0;
          for (Cursor cursor = table.Scan(); cursor.Next();) {
            if (++row % 3 == 0) {
              attempt([&] { table.Delete(cursor.Row()); });
            }
          }
        });
        for (int i = 0; i < 40; ++i) {
          attempt([&] { table.Insert(std::vector<Value>(table.Columns().size())); });
        }
      });
    }
    static_cast<void>(database.Check());
    database.Flush();
  });
  return well;
}

void Damage(std::vector<std::byte>& file, std::mt19937& random) {
  const std::size_t page = file[0x14] == std::byte{0} ? 2048 : 4096;
  const auto number = [&random](std::size_t below) { return static_cast<std::size_t>(random()) % below; };
  // Much of a file is rows; the first bytes of a page decide more.
  const auto place = [&] {
    const std::size_t within = random() % 2 == 0 ? number(96) : number(page);
    return std::min(page * number(file.size() / page) + within, file.size() - 1);
  };
  for (std::size_t faults = 1 + number(12); faults > 0; --faults) {
    switch (random() % 5) {
      case 0:
        file[place()] = std::byte{static_cast<std::uint8_t>(random())};
        break;
      case 1:
        file[place()] ^= std::byte{static_cast<std::uint8_t>(1u << random() % 8)};
        break;
      case 2: {
        const std::size_t from = place();
        const std::size_t to = place();
        for (std::size_t i = number(40); i > 0 && std::max(from, to) + i < file.size(); --i) {
          file[to + i] = file[from + i];
        }
        break;
      }
      case 3: {
        const std::size_t from = page * number(file.size() / page);
        const std::size_t to = page * number(file.size() / page);
        std::copy_n(file.begin() + static_cast<std::ptrdiff_t>(from), page,
                    file.begin() + static_cast<std::ptrdiff_t>(to));
        break;
      }
      default:
        if (random() % 20 == 0) {
          file.resize(file.size() - number(file.size() / 2));
        }
        break;
    }
  }
}

void TryDamaged(const std::vector<std::byte>& good) {
  const char* wanted = std::getenv("MARLEVO_DAMAGED_FILES");
  const int files_to_try = wanted != nullptr ? std::atoi(wanted) : 400;
  std::mt19937 random(1);
  int well = 0;
  for (int i = 0; i < files_to_try; ++i) {
    FaultFiles files;
    std::vector<std::byte> damaged = good;
    Damage(damaged, random);
    files.Put(kFile, std::move(damaged));
    well += UseAll(files) ? 1 : 0;
  }
  std::cout << files_to_try << " damaged files, " << well << " of them went unnoticed\n";
}

TEST(AccessDamageNew, NewFile) {
  const std::vector<std::byte> good = NewFile();
  FaultFiles files;
  files.Put(kFile, good);
  ASSERT_TRUE(UseAll(files));
  TryDamaged(good);
}

class AccessDamage : public testing::TestWithParam<const char*> {};

TEST_P(AccessDamage, Sample) {
  const char* samples = std::getenv("MARLEVO_SAMPLES");
  if (samples == nullptr) {
    GTEST_SKIP() << kNoSamples;
  }
  std::ifstream in(std::filesystem::path(samples) / GetParam(), std::ios::binary);
  const std::string content(std::istreambuf_iterator<char>(in), {});
  const auto bytes = std::as_bytes(std::span(content));
  TryDamaged({bytes.begin(), bytes.end()});
}

INSTANTIATE_TEST_SUITE_P(Samples, AccessDamage,
                         testing::Values("indexTestV1997.mdb", "test2V1997.mdb", "overflowTestV2000.mdb",
                                         "indexTestV2003.mdb", "test2V2000.mdb"));

}  // namespace
}  // namespace marlevo::access
