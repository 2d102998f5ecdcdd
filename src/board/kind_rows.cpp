#include "board/kind_rows.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "board/growth.h"

namespace marlevo {

namespace {

constexpr int kMultiplierWidth = 80;
constexpr int kAmountWidth = 88;
constexpr int kDiffersWidth = 16;

// A list of the stakes; an entry's position is the same in every such list.
DropDownList* NewStakeList(QWidget* parent, const QString& name, const QStringList& entries) {
  auto* const list = new DropDownList(parent, name);
  list->addItems(entries);
  list->setMaxVisibleItems(kStakes);
  return list;
}

}  // namespace

KindRows::KindRows(QWidget* parent) : QFrame(parent) {
  SetUpPanel(*this);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(distances::kHair, distances::kNear, distances::kHair, distances::kNear);
  column->setSpacing(distances::kHair);
  for (int kind = 0; kind < kBetKinds; ++kind) {
    column->addWidget(NewRow(kind), 1);
  }
  SetGrowth(1);
}

void KindRows::SetGrowth(double growth) {
  for (int kind = 0; kind < kBetKinds; ++kind) {
    chkPlay_[kind]->parentWidget()->setFont(Grown(LargeFont(), growth));
    cboPlay2_[kind]->setFixedWidth(Grown(kMultiplierWidth, growth));
    cboPlay_[kind]->setFixedWidth(Grown(kAmountWidth, growth));
    lblDiffers_[kind]->setFixedWidth(Grown(kDiffersWidth, growth));
    lblDiffers_[kind]->setFont(Grown(WindowFont(), growth));
    lblYuan_[kind]->setFont(Grown(WindowFont(), growth));
  }
}

QWidget* KindRows::NewRow(int kind) {
  auto* const row = Named(new QFrame(this), ElementName("fraPlay", kind));
  SetUpPanel(*row);
  // A drop-down list whose font changes makes its list window at once, which would delay the start: the row has the
  // font before the lists are made.
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
  DropDownList* const multiplier = NewStakeList(row, ElementName("cboPlay2", kind), multipliers);
  multiplier->setAccessibleName(tick->text() + " 倍數");
  // Choosing the entry that is already chosen counts too.
  connect(multiplier, &QComboBox::activated, this, [this, kind] { cboPlay2_Click(kind); });
  connect(multiplier, &QComboBox::currentIndexChanged, this, [this, kind] { cboPlay2_Click(kind); });
  DropDownList* const amount = NewStakeList(row, ElementName("cboPlay", kind), amounts);
  amount->setAccessibleName(tick->text() + " 金額");
  connect(amount, &QComboBox::currentIndexChanged, this, [this, kind] { cboPlay_Click(kind); });
  QLabel* const differs = NewLabel(row, ElementName("lblDiffers", kind), {});
  differs->setAlignment(Qt::AlignCenter);

  QLabel* const yuan = NewLabel(row, ElementName("lblYuan", kind), "元");

  auto* const line = new QHBoxLayout(row);
  line->setContentsMargins(distances::kNear, 0, distances::kNear, 0);
  line->addWidget(tick, 1);
  auto* const stakes = new QHBoxLayout;
  stakes->setSpacing(0);
  stakes->addWidget(multiplier);
  stakes->addWidget(differs);
  stakes->addWidget(amount);
  line->addLayout(stakes);
  line->addWidget(yuan);

  chkPlay_[kind] = tick;
  cboPlay_[kind] = amount;
  cboPlay2_[kind] = multiplier;
  lblDiffers_[kind] = differs;
  lblYuan_[kind] = yuan;
  MarkStakes(kind);
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

void KindRows::cboPlay_Click(int kind) {
  MarkStakes(kind);
}

void KindRows::cboPlay2_Click(int kind) {
  cboPlay_[kind]->setCurrentIndex(cboPlay2_[kind]->currentIndex());
  MarkStakes(kind);
}

void KindRows::MarkStakes(int kind) {
  const int stake = cboPlay_[kind]->currentIndex();
  const int multiplier = cboPlay2_[kind]->currentIndex();
  const bool differ = stake != multiplier;
  const QString tip = QString("金額與倍數不一致：\n計價與存檔用金額 %1 元，\n投注單上印的倍數是 %2（%3 元）")
                          .arg(cboPlay_[kind]->currentText(), cboPlay2_[kind]->currentText())
                          .arg(kAmounts[multiplier]);
  QPalette palette;
  if (differ) {
    palette.setColor(QPalette::Base, QColor(colours::kWarningPale));
    palette.setColor(QPalette::WindowText, QColor(colours::kWarning));
  }
  lblDiffers_[kind]->setText(differ ? "≠" : "");
  lblDiffers_[kind]->setToolTip(differ ? tip : QString());
  cboPlay_[kind]->setToolTip(differ ? tip : "每張金額（元）：計價與存檔用這個金額");
  cboPlay2_[kind]->setToolTip(differ ? tip : "倍數：每張金額跟著倍數走");
  for (QWidget* const widget : std::initializer_list<QWidget*>{lblDiffers_[kind], cboPlay_[kind], cboPlay2_[kind]}) {
    widget->setPalette(palette);
  }
}

}  // namespace marlevo
