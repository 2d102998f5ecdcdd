// The windows that come when a list is saved.
#pragma once

#include "support/window_driver.h"

namespace marlevo {

inline std::vector<ModalStep> YesToSaving(const QString& number, const ModalStep& then = ExpectMessage("存檔完畢 !")) {
  return {ExpectQuestion("確定要將號碼組合資料存檔到 [" + number + "] ?", QMessageBox::Yes), then};
}

}  // namespace marlevo
