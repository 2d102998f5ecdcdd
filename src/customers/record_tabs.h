// The tab widget SSTab1: the tickets of one purchase record, a page for each play mode with its grid mfgData(i) and its
// stake lblAmt(i).
#pragma once

#include <QTabWidget>
#include <array>
#include <functional>
#include <string>

#include "customers/prizes.h"
#include "platform/database/recordset.h"
#include "ui/text_model.h"

class QLabel;

namespace marlevo {

// The tickets of one record by play mode: grid rows (sequence, then the digits that the mode shows) and the stake.
struct PurchaseRecord {
  std::array<TextModel::Rows, kPlayModes> tickets;
  std::array<std::string, kPlayModes> stakes;
};

// Reads all rows of a result of SelectRecord. Rows with a play mode other than 0 to 4 are skipped. `step` is called
// after every row with the number of rows read so far.
PurchaseRecord ReadRecord(Recordset rows, const std::function<void(int)>& step);

class RecordTabs : public QTabWidget {
  Q_OBJECT

 public:
  explicit RecordTabs(QWidget* parent);

  // Shows the page of the first mode with tickets unless the page in front has some.
  void Show(PurchaseRecord record);
  void Clear() { Show({}); }

 private:
  std::array<TextModel*, kPlayModes> tickets_{};
  std::array<QLabel*, kPlayModes> lblAmt_{};
};

}  // namespace marlevo
