#include "platform/access/bytes/text_codec.h"

#include <algorithm>
#include <cstdint>

#include "platform/access/bytes/access_error.h"
#include "platform/access/bytes/bytes.h"
#include "platform/base/text.h"

namespace marlevo::access {

namespace {

constexpr std::byte kShortForm[] = {std::byte{0xFF}, std::byte{0xFE}};
constexpr std::size_t kLongestShortForm = 1024;
constexpr char32_t kReplacement = 0xFFFD;

// A zero byte does not count as ASCII here, since it is a switch in the short form.
bool IsAscii(Bytes bytes) {
  return std::ranges::all_of(bytes, [](std::byte byte) { return byte > std::byte{0} && byte < std::byte{0x80}; });
}

void AppendUtf8(std::string& out, char32_t c) {
  const auto put = [&out](char32_t byte) { out += static_cast<char>(byte); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6);
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

// Takes UTF-16 units one by one, joins surrogate pairs, and appends UTF-8. A lone half of a pair becomes U+FFFD.
class Utf8Writer {
 public:
  explicit Utf8Writer(std::string& out) : out_(out) {}

  void Put(char16_t unit) {
    if (high_ != 0 && unit >= 0xDC00 && unit < 0xE000) {
      AppendUtf8(out_, 0x10000 + (char32_t{high_} - 0xD800) * 0x400 + (char32_t{unit} - 0xDC00));
      high_ = 0;
      return;
    }
    Finish();
    if (unit >= 0xD800 && unit < 0xDC00) {
      high_ = unit;
    } else {
      AppendUtf8(out_, unit >= 0xDC00 && unit < 0xE000 ? kReplacement : char32_t{unit});
    }
  }

  void Finish() {
    if (high_ != 0) {
      AppendUtf8(out_, kReplacement);
      high_ = 0;
    }
  }

 private:
  std::string& out_;
  char16_t high_ = 0;  // the first half of a pair, when one is waiting
};

template <typename Put>
void ForEachUnit(Bytes bytes, Put put) {
  for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) {
    put(char16_t{LoadU16(&bytes[i])});
  }
}

template <typename Put>
void ForEachShortUnit(Bytes bytes, Put put) {
  bool single = true;
  for (std::size_t i = 0; i < bytes.size();) {
    if (bytes[i] == std::byte{0}) {
      single = !single;
      ++i;
    } else if (single) {
      put(char16_t{LoadU8(&bytes[i])});
      ++i;
    } else if (i + 2 <= bytes.size()) {
      put(char16_t{LoadU16(&bytes[i])});
      i += 2;
    } else {
      break;
    }
  }
}

void DecodeUtf16(Bytes bytes, std::string& out) {
  Utf8Writer writer(out);
  ForEachUnit(bytes, [&](char16_t unit) { writer.Put(unit); });
  writer.Finish();
}

void DecodeShortForm(Bytes bytes, std::string& out) {
  Utf8Writer writer(out);
  ForEachShortUnit(bytes, [&](char16_t unit) { writer.Put(unit); });
  writer.Finish();
}

std::optional<std::u16string> ToUtf16(std::string_view text) {
  std::u16string units;
  units.reserve(text.size());
  while (!text.empty()) {
    const char32_t c = TakeCharacter(text);
    if (c >= kNoCharacter) {
      return std::nullopt;
    }
    const auto put = [&units](char32_t unit) { units += static_cast<char16_t>(unit); };
    if (c < 0x10000) {
      put(c);
    } else {
      put(0xD800 + ((c - 0x10000) >> 10));
      put(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
  }
  return units;
}

std::optional<std::size_t> EncodeJet4(std::string_view text, bool compress, std::vector<std::byte>& out) {
  const std::optional<std::u16string> units = ToUtf16(text);
  if (!units) {
    return std::nullopt;
  }
  const bool fits_short_form = std::ranges::all_of(*units, [](char16_t unit) { return unit >= 1 && unit <= 0xFF; });
  if (compress && fits_short_form && units->size() > 2 && units->size() <= kLongestShortForm) {
    out.insert(out.end(), std::begin(kShortForm), std::end(kShortForm));
    for (const char16_t unit : *units) {
      StoreU8(&out.emplace_back(), unit);
    }
    return units->size();
  }
  if (units->starts_with(char16_t{0xFEFF})) {
    return std::nullopt;  // its bytes would announce the short form
  }
  const Bytes plain = std::as_bytes(std::span(*units));
  out.insert(out.end(), plain.begin(), plain.end());
  return units->size();
}

}  // namespace

TextCodec::TextCodec(int code_page) : code_page_(CodePage::Find(code_page)) {
  if (code_page_ == nullptr) {
    throw AccessError("this system does not know code page " + std::to_string(code_page) + " of the file's texts");
  }
}

bool TextCodec::IsShortForm(Bytes bytes) {
  return bytes.size() >= 2 && bytes[0] == kShortForm[0] && bytes[1] == kShortForm[1];
}

std::string_view TextCodec::Decode(Bytes bytes, std::string& buffer) const {
  const bool short_form = code_page_ == nullptr && IsShortForm(bytes);
  if (short_form) {
    bytes = bytes.subspan(2);
  }
  const bool single = short_form || code_page_ != nullptr;
  if (single && IsAscii(bytes)) {
    return AsText(bytes);
  }
  buffer.clear();
  if (code_page_ != nullptr) {
    buffer = code_page_->Decode(AsText(bytes));
  } else if (short_form) {
    DecodeShortForm(bytes, buffer);
  } else {
    DecodeUtf16(bytes, buffer);
  }
  return buffer;
}

std::u16string TextCodec::DecodeUnits(Bytes bytes) {
  std::u16string units;
  const auto put = [&units](char16_t unit) { units += unit; };
  if (IsShortForm(bytes)) {
    ForEachShortUnit(bytes.subspan(std::size(kShortForm)), put);
  } else {
    ForEachUnit(bytes, put);
  }
  return units;
}

std::string TextCodec::DecodeName(Bytes bytes) const {
  std::string name;
  if (code_page_ != nullptr) {
    name = code_page_->Decode(AsText(bytes));
  } else {
    DecodeUtf16(bytes, name);
  }
  return name;
}

std::optional<std::size_t> TextCodec::Encode(std::string_view text, bool compress, std::vector<std::byte>& out) const {
  if (code_page_ == nullptr) {
    return EncodeJet4(text, compress, out);
  }
  if (IsAscii(AsBytes(text))) {
    out.insert(out.end(), AsBytes(text).begin(), AsBytes(text).end());
    return text.size();
  }
  const std::optional<std::string> encoded = code_page_->Encode(text);
  if (!encoded) {
    return std::nullopt;
  }
  out.insert(out.end(), AsBytes(*encoded).begin(), AsBytes(*encoded).end());
  return encoded->size();
}

}  // namespace marlevo::access
