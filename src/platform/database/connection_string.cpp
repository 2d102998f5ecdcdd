#include "platform/database/connection_string.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <vector>

#include "platform/base/operation_error.h"
#include "platform/base/text.h"

namespace marlevo {
namespace {

constexpr std::string_view kProvider = "Microsoft.Jet.OLEDB.3.51";
constexpr std::string_view kPassword = "qorvat";

struct Setting {
  std::string_view key;
  std::string value;
};

// Takes the value that `text` begins with off its front, up to the ";" that ends it. A value in quotes may hold any
// character; a doubled quote in it stands for one.
std::string TakeValue(std::string_view& text) {
  std::string value;
  const char quote = text.starts_with('"') || text.starts_with('\'') ? text.front() : '\0';
  if (quote != '\0') {
    text.remove_prefix(1);
    while (!text.empty() && (text.front() != quote || text.substr(1).starts_with(quote))) {
      text.remove_prefix(text.front() == quote ? 1 : 0);
      value += text.front();
      text.remove_prefix(1);
    }
    text.remove_prefix(text.empty() ? 0 : 1);
  }
  const std::size_t end = std::min(text.find(';'), text.size());
  value.append(text.substr(0, end));
  text.remove_prefix(std::min(end + 1, text.size()));
  return value;
}

std::vector<Setting> Split(std::string_view text) {
  std::vector<Setting> settings;
  while (!text.empty()) {
    if (text.front() == ';') {
      text.remove_prefix(1);
      continue;
    }
    const std::size_t sign = std::min(text.find('='), text.size());
    const std::string_view key = text.substr(0, sign);
    text.remove_prefix(std::min(sign + 1, text.size()));
    settings.push_back({key, TakeValue(text)});
  }
  return settings;
}

// The value as it is written in a connection string: in quotes if it contains ";" or begins with a quote, else
// unchanged.
std::string InQuotesIfNeeded(const std::string& value) {
  if (value.find(';') == std::string::npos && !value.starts_with('"') && !value.starts_with('\'')) {
    return value;
  }
  std::string quoted = "\"";
  for (const char character : value) {
    quoted.append(character == '"' ? 2 : 1, character);
  }
  return quoted + '"';
}

}  // namespace

std::string ConnectionString(const std::filesystem::path& folder) {
  return FileConnectionString(folder / "4star.mdb");
}

std::string FileConnectionString(const std::filesystem::path& file) {
  const std::u8string path = std::filesystem::path(file).make_preferred().u8string();
  return std::string("Provider=").append(kProvider) +
         ";Persist Security Info=False;Data Source=" + InQuotesIfNeeded(std::string(path.begin(), path.end())) +
         ";Jet OLEDB:Database Password=" + std::string(kPassword);
}

DataSource ParseConnectionString(const std::string& connection_string) {
  const auto refuse = [](const std::string& subject, const std::string& reason) -> DataSource {
    throw DatabaseError("開啟資料庫", subject, reason);
  };
  DataSource source;
  std::string provider;
  for (const Setting& setting : Split(connection_string)) {
    if (SameName(setting.key, "Provider")) {
      provider = setting.value;
    } else if (SameName(setting.key, "Data Source")) {
      source.file = setting.value;
    } else if (SameName(setting.key, "Jet OLEDB:Database Password")) {
      source.password = setting.value;
    } else if (SameName(setting.key, "Code Page")) {
      const char* end = setting.value.data() + setting.value.size();
      const auto [rest, error] = std::from_chars(setting.value.data(), end, source.code_page.emplace());
      if (error != std::errc() || rest != end) {
        return refuse(source.file, "the connection string names no code page: '" + setting.value + "'");
      }
    } else if (!SameName(setting.key, "Persist Security Info")) {
      // The message shows the key only: behind a mistyped key may stand the password.
      return refuse(source.file, "unknown setting in the connection string: " + std::string(setting.key));
    }
  }
  if (!SameName(provider, kProvider)) {
    return refuse(source.file, "unknown provider: '" + provider + "'");
  }
  if (source.file.empty()) {
    return refuse("", "the connection string names no data source");
  }
  return source;
}

}  // namespace marlevo
