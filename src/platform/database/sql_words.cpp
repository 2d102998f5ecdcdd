#include "platform/database/sql_words.h"

#include <algorithm>
#include <array>

#include "platform/base/text.h"

namespace marlevo {
namespace {

enum class WordKind { kEnd, kName, kQuotedName, kDoubleQuoted, kText, kNumber, kSign };

struct Word {
  WordKind kind = WordKind::kEnd;
  std::string_view text;  // without the quotes of a name or text
};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsOfName(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '_' || c == '$' || (c & 0x80) != 0;
}

// Cuts a statement into words where SQLite would.
class Words {
 public:
  explicit Words(std::string_view sql) : rest_(sql) {}

  Word Next() {
    SkipBlanks();
    if (rest_.empty()) {
      return {};
    }
    switch (rest_.front()) {
      case '\'':
        return Quoted('\'', WordKind::kText);
      case '"':
        return Quoted('"', WordKind::kDoubleQuoted);
      case '`':
        return Quoted('`', WordKind::kQuotedName);
      case '[':
        return Quoted(']', WordKind::kQuotedName);
      default:
        break;
    }
    const bool number = IsDigit(rest_.front()) || (rest_.front() == '.' && rest_.size() > 1 && IsDigit(rest_[1]));
    std::size_t length = 0;
    while (length < rest_.size() && (IsOfName(rest_[length]) || (number && rest_[length] == '.'))) {
      ++length;
    }
    return {number       ? WordKind::kNumber
            : length > 0 ? WordKind::kName
                         : WordKind::kSign,
            Take(std::max(length, std::size_t{1}))};
  }

 private:
  std::string_view Take(std::size_t length) {
    const std::string_view taken = rest_.substr(0, length);
    rest_.remove_prefix(taken.size());
    return taken;
  }

  void SkipBlanks() {
    for (;;) {
      Take(std::min(rest_.find_first_not_of(" \t\r\n\f"), rest_.size()));
      if (rest_.starts_with("--")) {
        Take(std::min(rest_.find('\n'), rest_.size()));
      } else if (rest_.starts_with("/*")) {
        const std::size_t end = rest_.find("*/", 2);
        Take(end == rest_.npos ? rest_.size() : end + 2);
      } else {
        return;
      }
    }
  }

  // Inside the quotes, a doubled `end` is a part of the text; a doubled "]" is not.
  Word Quoted(char end, WordKind kind) {
    std::size_t at = 1;
    while (at < rest_.size() && (rest_[at] != end || (end != ']' && at + 1 < rest_.size() && rest_[at + 1] == end))) {
      at += rest_[at] == end ? 2 : 1;
    }
    const std::string_view inner = rest_.substr(1, std::min(at, rest_.size()) - 1);
    Take(at + 1);
    return {kind, inner};
  }

  std::string_view rest_;
};

bool Is(const Word& word, std::string_view name) {
  return word.kind == WordKind::kName && SameName(word.text, name);
}
bool IsSign(const Word& word, std::string_view sign) {
  return word.kind == WordKind::kSign && word.text == sign;
}
bool IsColumnName(const Word& word) {
  return word.kind == WordKind::kName || word.kind == WordKind::kQuotedName;
}

}  // namespace

std::string OtherMeaning(std::string_view sql, const std::function<bool(std::string_view)>& is_number) {
  std::vector<Word> words;
  for (Words rest(sql); words.empty() || words.back().kind != WordKind::kEnd;) {
    words.push_back(rest.Next());
  }
  const auto is_sum = [&](const Word& word) {
    return word.kind == WordKind::kNumber || Is(word, "NULL") || (IsColumnName(word) && is_number(word.text));
  };
  const Word nothing;
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    const Word& word = words[i];
    const Word& before = i > 0 ? words[i - 1] : nothing;
    const Word* after = &words[i + 1];
    if (word.kind == WordKind::kDoubleQuoted) {
      return "Access takes \"" + std::string(word.text) + "\" for a text; texts stand in single quotes here";
    }
    if (IsSign(word, "&")) {
      return "Access joins texts with &";
    }
    if (IsSign(word, "/")) {
      return "Access divides 7 / 2 to 3.5";
    }
    if (IsSign(word, "#")) {
      return "Access writes dates between # signs; a date is a number here";
    }
    if (Is(word, "TRUE")) {
      return "Access takes True for -1";
    }
    if (Is(word, "LIKE") && (after->kind != WordKind::kText || after->text.find_first_of("*?#[") != after->text.npos)) {
      return "Access knows other patterns of LIKE";
    }
    if (!IsSign(word, "+") || (before.kind == WordKind::kSign && before.text != ")")) {
      continue;  // this "+" is the sign of a number
    }
    if (i + 3 < words.size() && IsSign(words[i + 2], ".")) {
      after = &words[i + 3];  // in "TABLE.COLUMN" the column decides
    }
    if (!is_sum(before) || !is_sum(*after)) {
      return "Access joins texts with +";
    }
  }
  return {};
}

std::string OtherMeaningOfFunction(std::string_view name) {
  constexpr std::array<std::string_view, 6> kOthers{"date", "time", "format", "round", "hex", "log"};
  return std::ranges::find(kOthers, name) == kOthers.end()
             ? std::string()
             : "the function " + std::string(name) + " is another one in Access";
}

std::optional<std::vector<std::string>> NamedColumns(std::string_view sql) {
  Words words(sql);
  Word word = words.Next();
  while (word.kind != WordKind::kEnd && !Is(word, "INTO")) {
    word = words.Next();
  }
  words.Next();  // the table
  word = words.Next();
  if (Is(word, "AS")) {
    words.Next();
    word = words.Next();
  }
  if (!IsSign(word, "(")) {
    return std::nullopt;
  }
  std::vector<std::string> names;
  for (word = words.Next(); word.kind != WordKind::kEnd && !IsSign(word, ")"); word = words.Next()) {
    if (IsColumnName(word)) {
      names.emplace_back(word.text);
    }
  }
  return names;
}

}  // namespace marlevo
