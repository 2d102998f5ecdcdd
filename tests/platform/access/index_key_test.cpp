#include "platform/access/index/index_key.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "platform/access/access_files.h"
#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/bytes.h"

namespace marlevo::access {
namespace {

using enum ColumnType;
using namespace std::string_view_literals;

constexpr auto kJet3 = TextOrder::kGeneralJet3;
constexpr auto kJet4 = TextOrder::kGeneralJet4;
constexpr auto kAscii = TextOrder::kAsciiJet3;

KeyColumn ColumnOf(ColumnType type, TextOrder order = TextOrder::kUnknown, bool descending = false) {
  return {"N", type, order, descending};
}

// In hexadecimal digits, which have the order of the bytes.
std::string KeyOf(const KeyColumn& column, const KeyValue& value) {
  Key key;
  AppendKey(column, value, key);
  return HexText(key);
}

// The values, given from the smallest to the greatest, have keys in that order, and in the other one where the order is
// descending; null comes before or after all of them.
template <typename Stored>
void ExpectOrder(ColumnType type, const std::vector<Stored>& values) {
  for (const bool descending : {false, true}) {
    if (descending && type == kNumeric) {
      continue;  // not known
    }
    const KeyColumn column = ColumnOf(type, TextOrder::kUnknown, descending);
    std::string last = KeyOf(column, std::monostate{});
    for (const Stored& value : values) {
      const std::string key = KeyOf(column, std::as_bytes(std::span(&value, 1)));
      EXPECT_TRUE(descending ? key < last : last < key) << static_cast<int>(type) << ' ' << last << ' ' << key;
      last = key;
    }
  }
}

TEST(IndexKey, NumbersKeepTheirOrder) {
  ExpectOrder<std::uint8_t>(kByte, {0, 1, 127, 128, 255});
  ExpectOrder<std::int16_t>(kInteger, {-32768, -256, -1, 0, 1, 255, 256, 32767});
  ExpectOrder<std::int32_t>(kLong, {std::numeric_limits<std::int32_t>::min(), -65536, -1, 0, 1, 65536});
  ExpectOrder<std::int64_t>(kCurrency, {std::numeric_limits<std::int64_t>::min(), -1, 0, 10'000});
  ExpectOrder<float>(kSingle, {-1e30F, -1.5F, -1e-30F, 0, 1e-30F, 1.5F, 1e30F});
  ExpectOrder<double>(kDateTime, {-1e300, -2.25, -1.25, 0, 0.5, 36526, 36526.5});
  // A sign, then four numbers with the highest first.
  ExpectOrder<std::array<std::uint8_t, 17>>(kNumeric, {{0x80, 0, 0, 0, 0, 0, 0, 0, 0, 1},
                                                       {0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
                                                       {0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2},
                                                       {},
                                                       {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2},
                                                       {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
                                                       {0, 0, 0, 0, 0, 0, 0, 0, 0, 1}});
}

TEST(IndexKey, IsRightToTheByte) {
  const Bytes guid = AsBytes("\x33\x22\x11\0\x55\x44\x77\x66\x88\x99\xAA\xBB\xCC\xDD\xEE\xFF"sv);
  const std::tuple<KeyColumn, KeyValue, const char*> cases[] = {
      {ColumnOf(kBoolean), true, "7f00"},
      {ColumnOf(kBoolean), false, "7fff"},
      {ColumnOf(kGuid), guid, "7f0011223344556677098899aabbccddeeff08"},
      {ColumnOf(kGuid, TextOrder::kUnknown, true), guid, "80ffeeddccbbaa9988097766554433221100f7"},
      {ColumnOf(kBinary), AsBytes("\x01\x02"), "7f010200000000000002"},
      {ColumnOf(kBinary), AsBytes("12345678"), "7f313233343536373808"},
      {ColumnOf(kText, kJet3), AsBytes(""), "7f00"},
      {ColumnOf(kText, kJet3), AsBytes("Ab1"), "7f60615700"},
      {ColumnOf(kText, kJet3), AsBytes("aB1  "), "7f60615700"},
      {ColumnOf(kText, kJet3), AsBytes("\xE9"), "7f660400"},     // an accent on the first letter
      {ColumnOf(kText, kJet3), AsBytes("e\xE9"), "7f66660240"},  // one letter before it
      // b and d do not take accents, nothing is said about what follows
      {ColumnOf(kText, kJet3), AsBytes("bd\xE9z"), "7f6164667e0400"},
      {ColumnOf(kText, kJet3), AsBytes("\xE9\x65\xE9"), "7f666666042400"},  // between two accents
      {ColumnOf(kText, kJet3), AsBytes("\xDF\xE9"), "7f767666022400"},      // the sharp s counts as two letters
      {ColumnOf(kText, kJet3), AsBytes("\xC6"), "7f606600"},
      {ColumnOf(kText, kJet3), AsBytes("\t\x01"), "7f111000"},
      {ColumnOf(kText, kJet3, true), AsBytes("A"), "809fff"},
      {ColumnOf(kText, kAscii), AsBytes("A"), "7f6000"},
      {ColumnOf(kText, kJet4), u""sv, "7f0100"},
      {ColumnOf(kText, kJet4), u"Ab1"sv, "7f4a4c380100"},
      {ColumnOf(kText, kJet4), u"aB1  "sv, "7f4a4c380100"},
      {ColumnOf(kText, kJet4), u"b\u00E9b"sv, "7f4c514c01020e00"},
      {ColumnOf(kText, kJet4), u"\u6F22\u5B57\u4EEE\u540D\u4EA4\u6587"sv, "7fc0b6acaca00da5479fbeb6f60100"},
      {ColumnOf(kText, kJet4), u"\u4E00\u9FA5"sv, "7f9f02f1b40100"},
      {ColumnOf(kText, kJet4), u"a-b"sv, "7f4a4c01010101800b068200"},
      {ColumnOf(kText, kJet4), u"\uFF41\uFF0D\uFF22"sv, "7f4a4c01010101800b068200"},
      {ColumnOf(kText, kJet4), u"\u00E9'"sv, "7f51010e010101800b068000"},
      {ColumnOf(kText, kJet4), u"-"sv, "7f010101018007068200"},
      {ColumnOf(kText, kJet4), u"\t\u0001\u001F\u0080"sv, "7f080301010101800b0603800b061c800b061e00"},
      {ColumnOf(kText, kJet4, true), u"A"sv, "80b5feff00"},
  };
  for (const auto& [column, value, key] : cases) {
    EXPECT_EQ(KeyOf(column, value), key);
  }
  // The 256th character does not count, and blanks that it leaves at the end neither.
  const KeyColumn text = ColumnOf(kText, kJet4);
  EXPECT_EQ(KeyOf(text, std::u16string(254, u'a') + u" b"), KeyOf(text, std::u16string(254, u'a')));
}

TEST(IndexKey, RefusesWhatItDoesNotKnow) {
  for (const std::u16string_view text : {u"\u3042", u"\u3000", u"\U00020000", u"\u0416"}) {
    EXPECT_THROW(KeyOf(ColumnOf(kText, kJet4), text), AccessError);
  }
  EXPECT_THROW(KeyOf(ColumnOf(kText, kAscii), AsBytes("\xA4\xA4")), AccessError);
  EXPECT_THROW(KeyOf(ColumnOf(kBinary), Bytes()), AccessError);
  EXPECT_THROW(KeyOf(ColumnOf(kLong), AsBytes("123")), AccessError);

  EXPECT_EQ(KeyRefusal(ColumnOf(kText, kAscii)), "");
  for (const KeyColumn& column :
       {ColumnOf(kText), ColumnOf(kNumeric, TextOrder::kUnknown, true), ColumnOf(kMemo, kJet4), ColumnOf(kOle)}) {
    EXPECT_NE(KeyRefusal(column), "") << static_cast<int>(column.type);
  }
}

}  // namespace
}  // namespace marlevo::access
