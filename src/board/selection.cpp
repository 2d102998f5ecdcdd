#include "board/selection.h"

namespace marlevo {

int CheckSelection(const Selection& picks) {
  bool four_digits = false;
  bool three_digits = false;
  for (int kind = 0; kind < kBetKinds; ++kind) {
    if (picks.kinds[kind]) {
      (IsFourDigitKind(kind) ? four_digits : three_digits) = true;
    }
  }
  if (!four_digits && !three_digits) {
    return 1;
  }
  const bool first_three = picks.columns[0] != 0 && picks.columns[1] != 0 && picks.columns[2] != 0;
  if (four_digits && !(first_three && picks.columns[3] != 0)) {
    return 2;
  }
  return three_digits && !first_three ? 3 : 0;
}

std::string_view SelectionMessage(int code) {
  switch (code) {
    case 0:
      return "";
    case 1:
      return "請先選擇彩券玩法";
    case 2:
      return "選擇四星需要有四柱號碼";
    case 3:
    case 4:
    case 5:
    case 6:
      return "選擇三星玩法\r\n一 二 三排需要有號碼";
    default:
      return "不可預知的錯誤";
  }
}

}  // namespace marlevo
