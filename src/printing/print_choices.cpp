#include "printing/print_choices.h"

namespace marlevo {

int CheckPrintChoices(bool print_all, const std::array<KindChoice, kBetKinds>& kinds) {
  if (print_all) {
    return 0;
  }
  int code = 0;
  bool any_ticked = false;
  for (int kind = 0; kind < kBetKinds; ++kind) {
    const KindChoice& choice = kinds[kind];
    if (!choice.ticked) {
      continue;
    }
    any_ticked = true;
    const bool failures[] = {choice.start == 0, choice.end == 0, choice.end > choice.count, choice.start > choice.end};
    for (int i = 0; i < 4; ++i) {
      if (failures[i]) {
        code = 10 * kind + i + 1;
      }
    }
  }
  return any_ticked ? code : 5;
}

std::string PrintChoicesMessage(int code) {
  const std::string kind(kSlipKindNames[code / 10]);
  switch (code % 10) {
    case 1:
      return kind + "開始範圍輸入錯誤 !";
    case 2:
      return kind + "結束範圍輸入錯誤 !";
    case 3:
      return kind + "結束範圍輸入過大 !";
    case 4:
      return kind + "開始範圍不可大於結束範圍 !";
    case 5:
      return "請選擇欲列印種類";
    default:
      return {};
  }
}

}  // namespace marlevo
