// Texts of a file <-> UTF-8. Jet 3 stores bytes of a code page; Jet 4 UTF-16, or a shorter form when every character is
// below U+0100.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/access/bytes/code_page.h"
#include "platform/access/bytes/schema.h"

namespace marlevo::access {

class TextCodec {
 public:
  // Jet 4.
  TextCodec() = default;
  // Jet 3. Throws AccessError when the system does not know the page.
  explicit TextCodec(int code_page);

  // A view of `bytes` itself when they are ASCII, of `buffer` otherwise. Never fails: what means nothing becomes
  // U+FFFD.
  std::string_view Decode(Bytes bytes, std::string& buffer) const;

  // Whether a Jet 4 text is in the shorter form: two bytes that say so, then one byte a unit; a zero byte switches to
  // two bytes a unit and back.
  static bool IsShortForm(Bytes bytes);

  // The units of a Jet 4 text.
  static std::u16string DecodeUnits(Bytes bytes);

  // Names in definitions and the password: never the shorter form.
  std::string DecodeName(Bytes bytes) const;

  // Appends the stored form; gives the length as columns count it (bytes in Jet 3, UTF-16 units in Jet 4), or nothing
  // (and appends nothing) when the text cannot be stored: not UTF-8, or a character is missing in the code page.
  // `compress`: the column allows the shorter form.
  std::optional<std::size_t> Encode(std::string_view text, bool compress, std::vector<std::byte>& out) const;

 private:
  std::shared_ptr<const CodePage> code_page_;  // none: Jet 4
};

}  // namespace marlevo::access
