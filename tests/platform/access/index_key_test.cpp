#include "platform/access/index_key.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <utility>

#include "platform/access/access_error.h"
#include "platform/access/access_files.h"
#include "platform/access/bytes.h"

namespace marlevo::access {
namespace {

Key KeyOf(const KeyColumn& column, const KeyValue& value) {
  Key key;
  AppendKey(column, value, key);
  return key;
}

KeyColumn ColumnOf(ColumnType type, bool descending = false) {
  return {"N", type, TextOrder::kUnknown, descending};
}

KeyColumn TextColumn(TextOrder order, bool descending = false) {
  return {"T", ColumnType::kText, order, descending};
}

std::string Jet4(std::u16string_view text, bool descending = false) {
  return HexText(KeyOf(TextColumn(TextOrder::kGeneralJet4, descending), text));
}

std::string Jet3(std::string_view text, bool descending = false) {
  return HexText(KeyOf(TextColumn(TextOrder::kGeneralJet3, descending), AsBytes(text)));
}

// The values, given from the smallest to the greatest, have keys in that order, and in the other one where the order is
// descending; null comes before or after all of them.
template <typename Stored>
void ExpectOrder(ColumnType type, const std::vector<Stored>& values) {
  for (const bool descending : {false, true}) {
    const KeyColumn column = ColumnOf(type, descending);
    if (descending && type == ColumnType::kNumeric) {
      continue;  // not known
    }
    Key last = KeyOf(column, std::monostate{});
    for (const Stored& value : values) {
      const Key key = KeyOf(column, Bytes(std::as_bytes(std::span(&value, 1))));
      EXPECT_TRUE(descending ? key < last : last < key)
          << static_cast<int>(type) << ' ' << HexText(last) << ' ' << HexText(key);
      last = key;
    }
  }
}

TEST(IndexKey, NumbersKeepTheirOrder) {
  ExpectOrder<std::uint8_t>(ColumnType::kByte, {0, 1, 127, 128, 255});
  ExpectOrder<std::int16_t>(ColumnType::kInteger, {-32768, -256, -1, 0, 1, 255, 256, 32767});
  ExpectOrder<std::int32_t>(ColumnType::kLong, {std::numeric_limits<std::int32_t>::min(), -65536, -1, 0, 1, 65536});
  ExpectOrder<std::int64_t>(ColumnType::kCurrency, {std::numeric_limits<std::int64_t>::min(), -1, 0, 10'000});
  ExpectOrder<float>(ColumnType::kSingle, {-1e30F, -1.5F, -1e-30F, 0, 1e-30F, 1.5F, 1e30F});
  ExpectOrder<double>(ColumnType::kDateTime, {-1e300, -2.25, -1.25, 0, 0.5, 36526, 36526.5});
  // A sign, then four numbers with the highest first.
  ExpectOrder<std::array<std::uint8_t, 17>>(ColumnType::kNumeric, {{0x80, 0, 0, 0, 0, 0, 0, 0, 0, 1},
                                                                   {0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
                                                                   {0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2},
                                                                   {},
                                                                   {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2},
                                                                   {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
                                                                   {0, 0, 0, 0, 0, 0, 0, 0, 0, 1}});
}

TEST(IndexKey, OtherTypes) {
  const KeyColumn yes_no = ColumnOf(ColumnType::kBoolean);
  EXPECT_LT(KeyOf(yes_no, true), KeyOf(yes_no, false));

  const std::string_view guid("\x33\x22\x11\x00\x55\x44\x77\x66\x88\x99\xAA\xBB\xCC\xDD\xEE\xFF", 16);
  const std::tuple<KeyColumn, std::string_view, const char*> cases[] = {
      {ColumnOf(ColumnType::kGuid), guid, "7f0011223344556677098899aabbccddeeff08"},
      {ColumnOf(ColumnType::kGuid, true), guid, "80ffeeddccbbaa9988097766554433221100f7"},
      {ColumnOf(ColumnType::kBinary), "\x01\x02", "7f010200000000000002"},
      {ColumnOf(ColumnType::kBinary), "12345678", "7f313233343536373808"},
  };
  for (const auto& [column, value, key] : cases) {
    EXPECT_EQ(HexText(KeyOf(column, AsBytes(value))), key);
  }
  EXPECT_THROW(KeyOf(ColumnOf(ColumnType::kBinary), Bytes()), AccessError);
  EXPECT_THROW(KeyOf(ColumnOf(ColumnType::kLong), AsBytes("123")), AccessError);
}

TEST(IndexKey, TextOfJet3) {
  const std::pair<std::string_view, const char*> cases[] = {
      {"", "7f00"},
      {"Ab1", "7f60615700"},
      {"aB1  ", "7f60615700"},
      {"\xE9", "7f660400"},                // an accent on the first letter
      {"e\xE9", "7f66660240"},             // one letter before it
      {"bd\xE9z", "7f6164667e0400"},       // b and d do not take accents, nothing is said about what follows
      {"\xE9\x65\xE9", "7f666666042400"},  // between two accents
      {"\xDF\xE9", "7f767666022400"},      // the sharp s counts as two letters
      {"\xC6", "7f606600"},
      {"\t\x01", "7f111000"},
  };
  for (const auto& [text, key] : cases) {
    EXPECT_EQ(Jet3(text), key);
  }
  EXPECT_EQ(Jet3("A", true), "809fff");
}

TEST(IndexKey, TextOfJet4) {
  const std::pair<std::u16string_view, const char*> cases[] = {
      {u"", "7f0100"},
      {u"Ab1", "7f4a4c380100"},
      {u"aB1  ", "7f4a4c380100"},
      {u"b\u00E9b", "7f4c514c01020e00"},
      {u"\u6F22\u5B57\u4EEE\u540D\u4EA4\u6587", "7fc0b6acaca00da5479fbeb6f60100"},
      {u"\u4E00\u9FA5", "7f9f02f1b40100"},
      {u"a-b", "7f4a4c01010101800b068200"},
      {u"\u00E9'", "7f51010e010101800b068000"},
      {u"-", "7f010101018007068200"},
      {u"\t\u0001\u001F\u0080", "7f080301010101800b0603800b061c800b061e00"},
  };
  for (const auto& [text, key] : cases) {
    EXPECT_EQ(Jet4(text), key);
  }
  EXPECT_EQ(Jet4(u"A", true), "80b5feff00");
  // The 256th character does not count, and blanks that it leaves at the end neither.
  EXPECT_EQ(Jet4(std::u16string(254, u'a') + u" b"), Jet4(std::u16string(254, u'a')));
}

TEST(IndexKey, RefusesWhatItDoesNotKnow) {
  for (const std::u16string_view text : {u"\u3042", u"\uFF21", u"\U00020000", u"\u0416"}) {
    EXPECT_THROW(Jet4(text), AccessError);
  }
  const KeyColumn other_page = TextColumn(TextOrder::kAsciiJet3);
  EXPECT_THROW(KeyOf(other_page, AsBytes("\xA4\xA4")), AccessError);
  EXPECT_EQ(HexText(KeyOf(other_page, AsBytes("A"))), Jet3("A"));

  EXPECT_NE(KeyRefusal(TextColumn(TextOrder::kUnknown)), "");
  EXPECT_NE(KeyRefusal({"N", ColumnType::kNumeric, TextOrder::kUnknown, true}), "");
  EXPECT_NE(KeyRefusal({"M", ColumnType::kMemo, TextOrder::kGeneralJet4, false}), "");
  EXPECT_NE(KeyRefusal({"O", ColumnType::kOle, TextOrder::kUnknown, false}), "");
  EXPECT_EQ(KeyRefusal(TextColumn(TextOrder::kAsciiJet3)), "");
}

}  // namespace
}  // namespace marlevo::access
