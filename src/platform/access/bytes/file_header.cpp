#include "platform/access/bytes/file_header.h"

#include <algorithm>
#include <vector>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/rc4.h"

namespace marlevo::access {

namespace {

constexpr std::string_view kSignature{"\x00\x01\x00\x00Standard Jet DB\x00", 20};
constexpr std::string_view kNewerSignature{"\x00\x01\x00\x00Standard ACE DB\x00", 20};
constexpr std::size_t kVersionAt = 0x14;
constexpr std::size_t kMaskedAt = 0x18;
constexpr std::size_t kSystemTablesAt = 0x20;
constexpr std::size_t kCountryAt = 0x38;  // Jet 3
constexpr std::size_t kJet3SortOrderAt = 0x3A;
constexpr std::size_t kCodePageAt = 0x3C;
constexpr std::size_t kEncodingKeyAt = 0x3E;
constexpr std::size_t kPasswordAt = 0x42;
constexpr std::size_t kJet3EngineBuildAt = 0x56;
constexpr std::size_t kEngineBuildAt = 0x6A;
constexpr std::size_t kSortOrderAt = 0x6E;
constexpr std::size_t kCreationDateAt = 0x72;
constexpr std::size_t kLevelAt = 0x98;
constexpr std::size_t kLevelTextAt = 0x9C;
constexpr std::size_t kUserSlotsSize = 512;  // at the page's end: two bytes for each of 256 users

constexpr std::array kMaskKey{std::byte{0xC7}, std::byte{0xDA}, std::byte{0x39}, std::byte{0x6B}};

// Jet 4 masks the password with the creation date: the whole days since 1899-12-30 as four bytes, repeated over the
// password and combined by XOR.
void ApplyDateMask(MutableBytes password, const std::byte* creation_date) {
  const double date = Load<double>(creation_date);
  // With a damaged date only the password comes out wrong; converting such a date to an integer would be undefined.
  const auto days = date > -1e9 && date < 1e9 ? static_cast<std::int32_t>(date) : 0;
  std::array<std::byte, sizeof days> mask;
  Store(mask.data(), days);
  for (std::size_t i = 0; i < password.size(); ++i) {
    password[i] ^= mask[i % mask.size()];
  }
}

}  // namespace

FileHeader ParseHeader(std::span<const std::byte> head) {
  const std::string_view signature = head.size() < kHeaderSize ? "" : AsText(head.first(kSignature.size()));
  if (signature != kSignature && signature != kNewerSignature) {
    throw AccessError("this is not an Access database (.mdb): the signature \"Standard Jet DB\" is missing",
                      Fault::kDamaged);
  }
  const std::uint32_t version = LoadU32(&head[kVersionAt]);
  if (version > 1 || signature == kNewerSignature) {
    throw AccessError("this is a database of Access 2007 or later (format version " + std::to_string(version) +
                          "); open it in Access and save it in the format of Access 2002-2003 (.mdb)",
                      Fault::kNewerFormat);
  }
  FileHeader header{.format = version == 0 ? &kJet3 : &kJet4, .encoding_key = 0, .code_page = 0, .password = {}};

  std::vector<std::byte> plain(head.begin(), head.begin() + kHeaderSize);
  ApplyRc4(kMaskKey, MutableBytes(plain).subspan(kMaskedAt, header.format->masked_header_size));
  header.encoding_key = LoadU32(&plain[kEncodingKeyAt]);
  header.code_page = LoadU16(&plain[kCodePageAt]);

  const MutableBytes password = MutableBytes(plain).subspan(kPasswordAt, header.format->password_size);
  const std::size_t unit = version == 0 ? 1 : 2;
  if (version == 1) {
    ApplyDateMask(password, &plain[kCreationDateAt]);
  }
  std::size_t length = 0;
  while (length < password.size() && std::any_of(&password[length], &password[length] + unit,
                                                 [](std::byte byte) { return byte != std::byte{0}; })) {
    length += unit;
  }
  header.password = AsText(password.first(length));
  return header;
}

void ApplyPageKey(std::uint32_t encoding_key, std::uint32_t page_number, MutableBytes page) {
  std::array<std::byte, 4> key;
  StoreU32(key.data(), encoding_key ^ page_number);
  ApplyRc4(key, page);
}

void WriteHeader(const FileHeader& header, std::span<const std::byte, 8> creation_date, MutableBytes page) {
  const Format& format = *header.format;
  const bool jet3 = format.version == 3;
  std::ranges::fill(page, std::byte{0});
  std::ranges::copy(AsBytes(kSignature), page.begin());
  StoreU32(&page[kVersionAt], jet3 ? 0 : 1);
  Store(&page[kMaskedAt], std::uint64_t{0x0000'0101'0000'0100});
  for (std::uint32_t table = 0; table < 4; ++table) {
    StoreU32(&page[kSystemTablesAt + 4 * table], kObjectsPage + table);
  }
  StoreU16(&page[kCodePageAt], header.code_page);
  StoreU32(&page[kEncodingKeyAt], header.encoding_key);
  const MutableBytes stored_password = page.subspan(kPasswordAt, format.password_size);
  std::ranges::copy(AsBytes(header.password), stored_password.begin());
  if (jet3) {
    StoreU16(&page[kCountryAt], kCountry);
    StoreU16(&page[kJet3SortOrderAt], kGeneralLanguage);
    StoreU16(&page[kJet3EngineBuildAt], 9502);
  } else {
    ApplyDateMask(stored_password, creation_date.data());
    StoreU16(&page[kEngineBuildAt], 8618);
    StoreU32(&page[kSortOrderAt], kGeneralLanguage);
    std::ranges::copy(creation_date, &page[kCreationDateAt]);
    StoreU32(&page[kLevelAt], 0x0654);
    std::ranges::copy(AsBytes("4.0"), &page[kLevelTextAt]);
  }
  ApplyRc4(kMaskKey, page.subspan(kMaskedAt, format.masked_header_size));

  const MutableBytes user_slots = page.last(kUserSlotsSize);
  for (std::size_t i = 0; i < user_slots.size(); i += 2) {
    user_slots[i] = std::byte{i == 0};
    user_slots[i + 1] = std::byte{1};
  }
}

}  // namespace marlevo::access
