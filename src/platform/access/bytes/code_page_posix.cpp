#include <iconv.h>

#include <cerrno>
#include <memory>
#include <string>

#include "platform/access/bytes/code_page.h"

namespace marlevo::access {

namespace {

struct CloseConverter {
  using pointer = iconv_t;
  void operator()(iconv_t converter) const { iconv_close(converter); }
};
using Converter = std::unique_ptr<iconv_t, CloseConverter>;

const iconv_t kNoConverter = reinterpret_cast<iconv_t>(-1);

// Converts up to the first invalid or missing character; the rest stays in `in`.
std::string Convert(iconv_t converter, std::string_view& in) {
  std::string out(in.size() * 4 + 16, '\0');
  char* from = const_cast<char*>(in.data());  // iconv's signature; it does not write there
  std::size_t from_left = in.size();
  char* to = out.data();
  std::size_t to_left = out.size();
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  iconv(converter, &from, &from_left, &to, &to_left);
  iconv(converter, nullptr, nullptr, &to, &to_left);
  out.resize(out.size() - to_left);
  in = in.substr(in.size() - from_left);
  return out;
}

class IconvCodePage : public CodePage {
 public:
  IconvCodePage(Converter decoder, Converter encoder) : decoder_(std::move(decoder)), encoder_(std::move(encoder)) {}

  std::string Decode(std::string_view bytes) const override {
    std::string text = Convert(decoder_.get(), bytes);
    while (!bytes.empty()) {
      text += kUndecodable;
      bytes.remove_prefix(1);
      text += Convert(decoder_.get(), bytes);
    }
    return text;
  }

  std::optional<std::string> Encode(std::string_view text) const override {
    std::string bytes = Convert(encoder_.get(), text);
    return text.empty() ? std::optional(std::move(bytes)) : std::nullopt;
  }

 private:
  Converter decoder_;
  Converter encoder_;
};

Converter OpenConverter(const std::string& to, const std::string& from) {
  const iconv_t converter = iconv_open(to.c_str(), from.c_str());
  return Converter(converter == kNoConverter ? nullptr : converter);
}

}  // namespace

std::unique_ptr<CodePage> CodePage::Find(int number) {
  const std::string name = "CP" + std::to_string(number);
  Converter decoder = OpenConverter("UTF-8", name);
  Converter encoder = OpenConverter(name, "UTF-8");
  if (decoder == nullptr || encoder == nullptr) {
    return nullptr;
  }
  return std::make_unique<IconvCodePage>(std::move(decoder), std::move(encoder));
}

}  // namespace marlevo::access
