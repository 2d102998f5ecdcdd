// Page 0 of a file: its format, whether the other pages are encoded, the code page, the password.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/format.h"

namespace marlevo::access {

inline constexpr std::size_t kHeaderSize = 0x18 + 128;  // bytes that ParseHeader needs

struct FileHeader {
  const Format* format;
  std::uint32_t encoding_key;  // 0: pages are not encoded
  int code_page;               // the label for the texts of a Jet 3 file; it may be wrong, see code_page_guess.h
  std::string password;        // UTF-16 in Jet 4, in the code page in Jet 3; empty when the file has none
};

// Throws AccessError when the file is not an Access file, or one of a later format.
FileHeader ParseHeader(std::span<const std::byte> head);

// Encodes or decodes a page in place. Page 0 is never encoded.
void ApplyPageKey(std::uint32_t encoding_key, std::uint32_t page_number, MutableBytes page);

// Writes page 0 of a new file. `creation_date` is a DateTime value as a column stores it; Jet 4 masks the password with
// it. The password has at most Format::password_size bytes.
void WriteHeader(const FileHeader& header, std::span<const std::byte, 8> creation_date, MutableBytes page);

}  // namespace marlevo::access
