// Texts of the single- and double-byte code pages in which Jet 3 stores them, by the number that Windows gives a page
// (1252 Western, 950 Traditional Chinese, 936 Simplified Chinese ...).
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace marlevo::access {

// What stands for bytes that mean nothing in a page.
inline constexpr std::string_view kUndecodable = "\uFFFD";

class CodePage {
 public:
  // Null when this system does not know the page.
  static std::unique_ptr<CodePage> Find(int number);

  virtual ~CodePage() = default;

  // Bytes that mean nothing in this page become kUndecodable, so that one bad byte (a character cut at the column's
  // length) does not hide the rest.
  virtual std::string Decode(std::string_view bytes) const = 0;

  // Nothing when the page lacks a character or `text` is not UTF-8.
  virtual std::optional<std::string> Encode(std::string_view text) const = 0;
};

}  // namespace marlevo::access
