#include "board/kind_rows.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/appearance.h"

namespace marlevo {

namespace {

constexpr int kMultiplierWidth = 84;
constexpr int kAmountWidth = 94;

template <std::size_t count>
DropDownList* NewList(QWidget* parent, const QString& name, const std::array<std::string_view, count>& entries,
                      int width) {
  auto* const list = new DropDownList(parent, name);
  for (const std::string_view entry : entries) {
    list->addItem(QString::fromUtf8(entry.data(), static_cast<qsizetype>(entry.size())));
  }
  list->setFixedWidth(width);
  list->setMaxVisibleItems(static_cast<int>(count));
  return list;
}

}  // namespace

KindRows::KindRows(QWidget* parent) : QFrame(parent) {
  setFrameStyle(QFrame::StyledPanel);
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(10, 10, 10, 10);
  column->setSpacing(6);
  for (int kind = 0; kind < kBetKinds; ++kind) {
    column->addWidget(NewRow(kind), 1);
  }
}

QWidget* KindRows::NewRow(int kind) {
  const auto index = static_cast<std::size_t>(kind);
  auto* const row = Named(new QFrame(this), ElementName("fraPlay", kind));
  row->setFrameStyle(QFrame::StyledPanel);
  row->setAutoFillBackground(true);
  row->setBackgroundRole(QPalette::Base);
  // For the drop-down lists: one that is given a font of its own makes its list window at once.
  row->setFont(LargeFont());

  const QString caption =
      QString::fromUtf8(kBetKindNames[index].data(), static_cast<qsizetype>(kBetKindNames[index].size()));
  QCheckBox* const tick = Named(new QCheckBox(caption, row), ElementName("chkPlay", kind));
  tick->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  connect(tick, &QCheckBox::toggled, this, [this, kind] { chkPlay_Click(kind); });

  DropDownList* const multiplier = NewList(row, ElementName("cboPlay2", kind), kMultipliers, kMultiplierWidth);
  multiplier->setToolTip("倍數：每張金額跟著倍數走");
  // Choosing the entry that is already chosen counts too.
  connect(multiplier, &QComboBox::activated, this, [this, kind] { cboPlay2_Click(kind); });
  connect(multiplier, &QComboBox::currentIndexChanged, this, [this, kind] { cboPlay2_Click(kind); });
  DropDownList* const amount = NewList(row, ElementName("cboPlay", kind), kAmounts, kAmountWidth);
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

  chkPlay_[index] = tick;
  cboPlay_[index] = amount;
  cboPlay2_[index] = multiplier;
  return row;
}

void KindRows::ReadInto(CurrentList& list) const {
  for (std::size_t kind = 0; kind < kBetKinds; ++kind) {
    list.kinds[kind].ticked = chkPlay_[kind]->isChecked();
    list.kinds[kind].amount = cboPlay_[kind]->currentText().toStdString();
    list.kinds[kind].multiplier = cboPlay2_[kind]->currentIndex();
  }
}

void KindRows::UntickAll() {
  for (QCheckBox* const tick : chkPlay_) {
    tick->setChecked(false);
  }
}

void KindRows::chkPlay_Click(int kind) {
  const QCheckBox& tick = *chkPlay_[static_cast<std::size_t>(kind)];
  tick.parentWidget()->setBackgroundRole(tick.isChecked() ? QPalette::Midlight : QPalette::Base);
}

void KindRows::cboPlay2_Click(int kind) {
  const auto index = static_cast<std::size_t>(kind);
  cboPlay_[index]->setCurrentIndex(cboPlay2_[index]->currentIndex());
}

}  // namespace marlevo
