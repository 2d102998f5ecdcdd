#include "board/kind_rows.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/appearance.h"

namespace marlevo {

namespace {

constexpr int kMultiplierWidth = 84;
constexpr int kAmountWidth = 94;

// A list of the stakes; an entry's position is the same in every such list.
DropDownList* NewStakeList(QWidget* parent, const QString& name, const QStringList& entries, int width) {
  auto* const list = new DropDownList(parent, name);
  list->addItems(entries);
  list->setFixedWidth(width);
  list->setMaxVisibleItems(kStakes);
  return list;
}

}  // namespace

KindRows::KindRows(QWidget* parent) : QFrame(parent) {
  SetUpPanel(*this);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(10, 10, 10, 10);
  column->setSpacing(6);
  for (int kind = 0; kind < kBetKinds; ++kind) {
    column->addWidget(NewRow(kind), 1);
  }
}

QWidget* KindRows::NewRow(int kind) {
  auto* const row = Named(new QFrame(this), ElementName("fraPlay", kind));
  SetUpPanel(*row);
  // The row has the font, not its drop-down lists: one that is given a font of its own makes its list window at once.
  row->setFont(LargeFont());

  auto* const tick = Named(new QCheckBox(QString::fromUtf8(kBetKindNames[kind]), row), ElementName("chkPlay", kind));
  tick->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  connect(tick, &QCheckBox::toggled, this, [this, kind] { chkPlay_Click(kind); });

  QStringList multipliers;
  QStringList amounts;
  for (int stake = 0; stake < kStakes; ++stake) {
    multipliers += QString::fromUtf8(kMultipliers[stake]);
    amounts += QString::number(kAmounts[stake]);
  }
  DropDownList* const multiplier = NewStakeList(row, ElementName("cboPlay2", kind), multipliers, kMultiplierWidth);
  multiplier->setToolTip("倍數：每張金額跟著倍數走");
  // Choosing the entry that is already chosen counts too.
  connect(multiplier, &QComboBox::activated, this, [this, kind] { cboPlay2_Click(kind); });
  connect(multiplier, &QComboBox::currentIndexChanged, this, [this, kind] { cboPlay2_Click(kind); });
  DropDownList* const amount = NewStakeList(row, ElementName("cboPlay", kind), amounts, kAmountWidth);
  amount->setToolTip("每張金額（元）：計價與存檔用這個金額");

  QLabel* const yuan = NewLabel(row, ElementName("lblYuan", kind), "元");
  yuan->setFont(WindowFont());

  auto* const line = new QHBoxLayout(row);
  line->setContentsMargins(10, 3, 10, 3);
  line->setSpacing(8);
  line->addWidget(tick, 1);
  line->addWidget(multiplier);
  line->addWidget(amount);
  line->addWidget(yuan);

  chkPlay_[kind] = tick;
  cboPlay_[kind] = amount;
  cboPlay2_[kind] = multiplier;
  return row;
}

void KindRows::ReadInto(CurrentList& list) const {
  for (int kind = 0; kind < kBetKinds; ++kind) {
    list.kinds[kind].ticked = chkPlay_[kind]->isChecked();
    list.kinds[kind].amount = kAmounts[cboPlay_[kind]->currentIndex()];
    list.kinds[kind].multiplier = cboPlay2_[kind]->currentIndex();
  }
}

void KindRows::Write(const CurrentList& list) {
  for (int kind = 0; kind < kBetKinds; ++kind) {
    const KindList& shown = list.kinds[kind];
    chkPlay_[kind]->setChecked(shown.ticked);
    if (shown.ticked) {
      cboPlay2_[kind]->setCurrentIndex(shown.multiplier);  // takes the amount with it
      cboPlay_[kind]->setCurrentIndex(StakeOf(shown.amount).value());
    }
  }
}

void KindRows::UntickAll() {
  for (QCheckBox* const tick : chkPlay_) {
    tick->setChecked(false);
  }
}

void KindRows::chkPlay_Click(int kind) {
  const QCheckBox& tick = *chkPlay_[kind];
  tick.parentWidget()->setBackgroundRole(tick.isChecked() ? QPalette::Midlight : QPalette::Base);
}

void KindRows::cboPlay2_Click(int kind) {
  cboPlay_[kind]->setCurrentIndex(cboPlay2_[kind]->currentIndex());
}

}  // namespace marlevo
