// The numbers of the file format: first those that both formats share, then the struct Format with every size and place
// in which Jet 3 and Jet 4 differ. A place is a byte offset from the start of the structure that its group names.
#pragma once

#include <cstddef>
#include <cstdint>

namespace marlevo::access {

// Byte 0 of a page.
enum PageType : std::uint8_t {
  kDataPage = 0x01,
  kDefinitionPage = 0x02,
  kIndexNodePage = 0x03,
  kIndexLeafPage = 0x04,
  kMapPage = 0x05,
};
inline constexpr std::uint8_t kFreedPageBit = 0x08;  // set in the type of a page that belongs to nobody any more

// Bytes 4..7 of a data page name its owner: the number of a table's definition page, or one of these.
inline constexpr std::uint32_t kOwnerUsageMaps = 0;
inline constexpr std::uint32_t kOwnerGlobalMap = 1;
inline constexpr std::uint32_t kOwnerLongValues = 0x4C41564C;  // "LVAL"
inline constexpr std::size_t kOwnerAt = 4;
inline constexpr std::size_t kFreeSpaceAt = 2;  // of data and index pages

// A slot of a data page: the row's offset and two flags.
inline constexpr std::uint16_t kSlotOffset = 0x1FFF;
inline constexpr std::uint16_t kSlotFlags = 0xE000;
inline constexpr std::uint16_t kSlotMoved = 0x4000;  // the row's first four bytes point to its body
inline constexpr std::uint16_t kSlotBody = 0x8000;   // body of a moved row, reached by that pointer only
inline constexpr std::uint16_t kSlotDeleted = 0xC000;
inline constexpr std::size_t kMaxSlots = 255;  // slot numbers are bytes

// Usage maps. Byte 0 of a map's row is one of the first two numbers.
inline constexpr std::uint8_t kInlineMap = 0;       // the row holds the bits themselves
inline constexpr std::uint8_t kReferenceMap = 1;    // the row holds the numbers of pages full of bits
inline constexpr std::uint32_t kGlobalMapPage = 1;  // its row 0 is the map of all pages of the file
inline constexpr std::uint32_t kMapPageHeader = 4;  // bytes of a page of bits before the first bit

inline constexpr std::uint32_t kObjectsPage = 2;  // definition of MSysObjects

inline constexpr std::uint16_t kGeneralLanguage = 0x0409;  // language number of the sort order "General"
inline constexpr std::uint16_t kCountry = 1;               // country number that a new Jet 3 file and its columns get

inline constexpr std::size_t kIndexKeysAt = 4;  // place of the count of different keys in an index's counter block

inline constexpr std::size_t kMaxColumns = 255;
inline constexpr std::size_t kMaxNameLength = 64;
inline constexpr std::size_t kMaxIndexColumns = 10;

inline constexpr std::size_t kLongValueHeader = 12;  // bytes that a row holds of every Memo or Ole value

struct Format {
  int version;  // 3 or 4
  std::uint32_t page_size;
  std::uint32_t max_pages;
  std::size_t max_row;
  std::size_t max_long_value_row;

  // Data page.
  std::size_t slot_count_at;
  std::size_t slots_at;

  std::size_t usual_map_row;  // bytes of a usage map's row in a new file

  std::size_t row_number_width;  // bytes of the counts and offsets within a row

  // Table definition: header block.
  struct {
    std::size_t rows;
    std::size_t last_autonumber;
    std::size_t type;
    std::size_t max_columns;
    std::size_t variable_columns;
    std::size_t columns;
    std::size_t logical_indexes;
    std::size_t real_indexes;
    std::size_t owned_map;
    std::size_t free_map;
    std::size_t body;
  } definition;

  // Table definition: bytes of one real index's counter block. These blocks are the first part of the body.
  std::size_t index_counter_size;

  // Table definition: column descriptor.
  struct {
    std::size_t size;
    std::size_t number;
    std::size_t variable_index;
    std::size_t ordinal;
    std::size_t country;  // Jet 3 only
    std::size_t language;
    std::size_t code_page;  // Jet 3 only; Jet 4: sort version in the second byte
    std::size_t flags;
    std::size_t extended_flags;  // Jet 4 only
    std::size_t fixed_offset;
    std::size_t length;
  } column;

  // Table definition: real index.
  struct {
    std::size_t size;
    std::size_t columns;
    std::size_t owned_map;
    std::size_t root;
    std::size_t flags;
  } index;

  // Table definition: logical index. Every field stands `shift` bytes later than in Jet 3.
  struct {
    std::size_t size;
    std::size_t shift;
  } logical_index;

  // Index page.
  struct {
    std::size_t previous;
    std::size_t next;
    std::size_t tail;
    std::size_t prefix_length;
    std::size_t prefix_width;
    std::size_t level;
    std::size_t entry_mask;
    std::size_t entries;
  } index_page;

  // The header of the file.
  std::size_t masked_header_size;
  std::size_t password_size;
};

inline constexpr Format kJet3{
    .version = 3,
    .page_size = 2048,
    .max_pages = 0x4000'0000 / 2048,
    .max_row = 2012,
    .max_long_value_row = 2032,
    .slot_count_at = 0x08,
    .slots_at = 0x0A,
    .usual_map_row = 5 + 128,
    .row_number_width = 1,
    .definition = {.rows = 0x0C,
                   .last_autonumber = 0x10,
                   .type = 0x14,
                   .max_columns = 0x15,
                   .variable_columns = 0x17,
                   .columns = 0x19,
                   .logical_indexes = 0x1B,
                   .real_indexes = 0x1F,
                   .owned_map = 0x23,
                   .free_map = 0x27,
                   .body = 0x2B},
    .index_counter_size = 8,
    .column = {.size = 18,
               .number = 1,
               .variable_index = 3,
               .ordinal = 5,
               .country = 7,
               .language = 9,
               .code_page = 11,
               .flags = 13,
               .extended_flags = 0,
               .fixed_offset = 14,
               .length = 16},
    .index = {.size = 39, .columns = 0, .owned_map = 30, .root = 34, .flags = 38},
    .logical_index = {.size = 20, .shift = 0},
    .index_page = {.previous = 0x08,
                   .next = 0x0C,
                   .tail = 0x10,
                   .prefix_length = 0x14,
                   .prefix_width = 1,
                   .level = 0x15,
                   .entry_mask = 0x16,
                   .entries = 0xF8},
    .masked_header_size = 126,
    .password_size = 20,
};

inline constexpr Format kJet4{
    .version = 4,
    .page_size = 4096,
    .max_pages = 0x8000'0000 / 4096,
    .max_row = 4060,
    .max_long_value_row = 4076,
    .slot_count_at = 0x0C,
    .slots_at = 0x0E,
    .usual_map_row = 5 + 64,
    .row_number_width = 2,
    .definition = {.rows = 0x10,
                   .last_autonumber = 0x14,
                   .type = 0x28,
                   .max_columns = 0x29,
                   .variable_columns = 0x2B,
                   .columns = 0x2D,
                   .logical_indexes = 0x2F,
                   .real_indexes = 0x33,
                   .owned_map = 0x37,
                   .free_map = 0x3B,
                   .body = 0x3F},
    .index_counter_size = 12,
    .column = {.size = 25,
               .number = 5,
               .variable_index = 7,
               .ordinal = 9,
               .country = 0,
               .language = 11,
               .code_page = 13,
               .flags = 15,
               .extended_flags = 16,
               .fixed_offset = 21,
               .length = 23},
    .index = {.size = 52, .columns = 4, .owned_map = 34, .root = 38, .flags = 46},
    .logical_index = {.size = 28, .shift = 4},
    .index_page = {.previous = 0x0C,
                   .next = 0x10,
                   .tail = 0x14,
                   .prefix_length = 0x18,
                   .prefix_width = 2,
                   .level = 0x1A,
                   .entry_mask = 0x1B,
                   .entries = 0x1E0},
    .masked_header_size = 128,
    .password_size = 40,
};

}  // namespace marlevo::access
