// Converts between UTF-8 and the texts of a file. Jet 3 stores texts in a code page. Jet 4 stores UTF-16, or a short
// form: the bytes FF FE, then one byte for each UTF-16 unit; a zero byte switches to two bytes a unit and the next one
// back.
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
  // Jet 3. Throws AccessError when the operating system does not know the code page.
  explicit TextCodec(int code_page);

  // A view of `bytes` itself when they are ASCII, of `buffer` otherwise. Never fails: invalid bytes become U+FFFD.
  std::string_view Decode(Bytes bytes, std::string& buffer) const;

  // Whether the bytes of a Jet 4 text are in the short form.
  static bool IsShortForm(Bytes bytes);

  // The UTF-16 units of a Jet 4 text.
  static std::u16string DecodeUnits(Bytes bytes);

  // For names in table definitions and the password, which never have the short form.
  std::string DecodeName(Bytes bytes) const;

  // Appends the stored form of `text`. Returns its length as columns count it: bytes in Jet 3, UTF-16 units in Jet 4.
  // Returns nothing, and appends nothing, when the text is not UTF-8 or has a character that the file cannot store.
  // `compress`: the column allows the short form.
  std::optional<std::size_t> Encode(std::string_view text, bool compress, std::vector<std::byte>& out) const;

 private:
  std::shared_ptr<const CodePage> code_page_;  // null in a Jet 4 file
};

}  // namespace marlevo::access
