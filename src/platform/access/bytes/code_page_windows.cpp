#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <string>

#include "platform/access/bytes/code_page.h"

namespace marlevo::access {

namespace {

std::wstring ToWide(unsigned page, unsigned long flags, std::string_view text) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(MultiByteToWideChar(page, flags, text.data(), size, nullptr, 0), L'\0');
  MultiByteToWideChar(page, flags, text.data(), size, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

std::string FromWide(unsigned page, unsigned long flags, const std::wstring& wide, int* lossy) {
  const int size = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(page, flags, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string text(length, '\0');
  WideCharToMultiByte(page, flags, wide.data(), size, text.data(), length, nullptr, lossy);
  return text;
}

class WindowsCodePage : public CodePage {
 public:
  explicit WindowsCodePage(unsigned page) : page_(page) {}

  std::string Decode(std::string_view bytes) const override {
    std::wstring wide = ToWide(page_, MB_ERR_INVALID_CHARS, bytes);
    if (wide.empty()) {
      wide = CharacterByCharacter(bytes);
    }
    return FromWide(CP_UTF8, 0, wide, nullptr);
  }

  std::optional<std::string> Encode(std::string_view text) const override {
    if (text.empty()) {
      return std::string();
    }
    const std::wstring wide = ToWide(CP_UTF8, MB_ERR_INVALID_CHARS, text);
    int lossy = 0;
    std::string bytes = FromWide(page_, WC_NO_BEST_FIT_CHARS, wide, &lossy);
    return wide.empty() || lossy != 0 ? std::nullopt : std::optional(std::move(bytes));
  }

 private:
  // Converting the whole text at once would turn invalid bytes into question marks, which a text may also hold.
  std::wstring CharacterByCharacter(std::string_view bytes) const {
    std::wstring wide;
    while (!bytes.empty()) {
      const bool two = bytes.size() > 1 && IsDBCSLeadByteEx(page_, static_cast<BYTE>(bytes[0]));
      std::size_t length = two ? 2 : 1;
      std::wstring character = ToWide(page_, MB_ERR_INVALID_CHARS, bytes.substr(0, length));
      if (character.empty()) {
        character = L'\xFFFD';
        length = 1;
      }
      wide += character;
      bytes.remove_prefix(length);
    }
    return wide;
  }

  unsigned page_;
};

}  // namespace

std::unique_ptr<CodePage> CodePage::Find(int number) {
  const unsigned page = static_cast<unsigned>(number);
  return number > 0 && IsValidCodePage(page) ? std::make_unique<WindowsCodePage>(page) : nullptr;
}

}  // namespace marlevo::access
