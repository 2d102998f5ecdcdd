// The tab widget SSTab1: the tickets of one purchase record, a page for each play mode with its grid mfgData(i) and its
// stake lblAmt(i).
#pragma once

#include <QTabWidget>
#include <array>

#include "customers/purchase_record.h"
#include "ui/text_model.h"

class QLabel;

namespace marlevo {

class RecordTabs : public QTabWidget {
  Q_OBJECT

 public:
  explicit RecordTabs(QWidget* parent);

  // Fills all five pages, each with as many digits of a ticket as its play mode has. The page in front stays in front
  // when it has tickets; otherwise the first page that has some comes to the front.
  void Show(PurchaseRecord record);
  void Clear() { Show({}); }

  // What is shown; empty when nothing is.
  const PurchaseRecord& Shown() const { return record_; }

 private:
  PurchaseRecord record_;
  std::array<TextModel*, kPlayModes> tickets_{};
  std::array<QLabel*, kPlayModes> lblAmt_{};
};

}  // namespace marlevo
