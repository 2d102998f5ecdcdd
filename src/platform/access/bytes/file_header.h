// Page 0: which format it is, whether pages are encoded, the password.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/format.h"

namespace marlevo::access {

inline constexpr std::size_t kHeaderSize = 0x18 + 128;  // what ParseHeader looks at

struct FileHeader {
  const Format* format;
  std::uint32_t encoding_key;  // 0: pages are stored plain
  int code_page;               // of Jet 3 texts, as labelled
  std::string password;        // as stored, up to its end: UTF-16 in Jet 4, in the code page in Jet 3; empty: none
};

// Throws AccessError when the file is none that this engine reads.
FileHeader ParseHeader(std::span<const std::byte> head);

// Encodes or decodes a page in place; not for page 0.
void ApplyPageKey(std::uint32_t encoding_key, std::uint32_t page_number, MutableBytes page);

// Writes page 0 of a new file. `creation_date` is the eight bytes of a date of the file's own kind, by which Jet 4
// masks the password. The password has at most Format::password_size bytes.
void WriteHeader(const FileHeader& header, std::span<const std::byte, 8> creation_date, MutableBytes page);

}  // namespace marlevo::access
