#include "platform/database/sql_text.h"

#include <algorithm>

#include "platform/base/operation_error.h"

namespace marlevo {

namespace {

[[noreturn]] void Refuse(std::string_view value, const std::string& why) {
  throw DatabaseError("檢查要存的資料", "4star.mdb", "「" + std::string(value) + "」" + why, Fault::kExplained);
}

bool IsPlainNumber(std::string_view text) {
  const auto take = [&text](std::string_view allowed) {
    const std::size_t taken = std::min(text.find_first_not_of(allowed), text.size());
    text.remove_prefix(taken);
    return taken;
  };
  take(" \t");
  if (text.starts_with('-') || text.starts_with('+')) {
    text.remove_prefix(1);
  }
  std::size_t digits = take("0123456789");
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    digits += take("0123456789");
  }
  take(" \t");
  return digits > 0 && text.empty();
}

}  // namespace

std::string SqlText(std::string_view value) {
  if (value.find('\'') != std::string_view::npos) {
    Refuse(value, "裡有單引號 ( ' )，資料庫不能存。請刪掉單引號，或換成全形的「’」，再試一次。");
  }
  std::string text = "'";
  return text.append(value).append("'");
}

std::string SqlNumber(std::string_view value) {
  if (!IsPlainNumber(value)) {
    Refuse(value, "不是數字。號碼請選 0 到 9，期數請只打數字，再試一次。");
  }
  return std::string(value);
}

}  // namespace marlevo
