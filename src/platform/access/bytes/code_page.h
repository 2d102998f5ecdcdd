// Converts between UTF-8 and the code pages of one or two bytes a character in which Jet 3 stores texts. A code page is
// named by its Windows number (1252 Western, 950 Traditional Chinese, 936 Simplified Chinese ...).
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace marlevo::access {

inline constexpr int kWesternCodePage = 1252;

// Stands in a decoded text for each byte that is not part of a character of the code page.
inline constexpr std::string_view kUndecodable = "\uFFFD";

class CodePage {
 public:
  // Null when the operating system does not know the code page.
  static std::unique_ptr<CodePage> Find(int number);

  virtual ~CodePage() = default;

  // Invalid bytes become kUndecodable, so that one bad byte (for instance of a character that was cut in two at the
  // column's length) does not hide the rest of the text.
  virtual std::string Decode(std::string_view bytes) const = 0;

  // Nothing when the code page lacks a character of `text`, or `text` is not UTF-8.
  virtual std::optional<std::string> Encode(std::string_view text) const = 0;
};

}  // namespace marlevo::access
