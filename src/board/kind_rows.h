// The five bet kinds of the board: tick box, multiplier list and amount list of a kind on one line.
#pragma once

#include <QCheckBox>
#include <QFrame>

#include "tickets/tickets.h"
#include "ui/widgets.h"

namespace marlevo {

class KindRows : public QFrame {
  Q_OBJECT

 public:
  explicit KindRows(QWidget* parent);

  // Takes over which kinds are ticked, their amounts and multipliers; tickets stay as they are.
  void ReadInto(CurrentList& list) const;
  // Shows which kinds of a list are ticked, and the amounts and multipliers of those.
  void Write(const CurrentList& list);
  void UntickAll();
  // Makes the rows that many times as large; see board/growth.h.
  void SetGrowth(double growth);

 private:
  QWidget* NewRow(int kind);
  void chkPlay_Click(int kind);
  void cboPlay_Click(int kind);
  void cboPlay2_Click(int kind);
  // The two lists can be chosen apart. Then the money says one thing and the slip another, and the row says that.
  void MarkStakes(int kind);

  PerKind<QCheckBox*> chkPlay_{};
  PerKind<DropDownList*> cboPlay_{};
  PerKind<DropDownList*> cboPlay2_{};
  PerKind<QLabel*> lblDiffers_{};
  PerKind<QLabel*> lblYuan_{};
};

}  // namespace marlevo
