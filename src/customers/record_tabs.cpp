#include "customers/record_tabs.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <utility>

#include "customers/prizes.h"
#include "ui/appearance.h"
#include "ui/grid.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {

constexpr std::array<const char*, 4> kDigitHeadings = {"第一柱", "第二柱", "第三柱", "第四柱"};

QString Shown(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

RecordTabs::RecordTabs(QWidget* parent) : QTabWidget(parent) {
  setObjectName("SSTab1");
  for (std::size_t mode = 0; mode < kPrizeClasses.size(); ++mode) {
    const int index = static_cast<int>(mode);
    QStringList headings = {""};
    for (std::size_t column = 0; column < static_cast<std::size_t>(kPrizeClasses[mode].digits); ++column) {
      headings += QString(kDigitHeadings[column]);
    }
    auto* const page = new QWidget(this);
    auto* const grid = Named(new QTableView(page), ElementName("mfgData", index));
    tickets_[mode] = new TextModel(headings, Qt::AlignHCenter, this);
    SetUpGrid(*grid, GridSelection::kNone);
    grid->setModel(tickets_[mode]);
    grid->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);

    lblAmt_[mode] = NewLabel(page, ElementName("lblAmt", index), {});
    lblAmt_[mode]->setTextFormat(Qt::PlainText);
    lblAmt_[mode]->setAlignment(Qt::AlignCenter);
    QFont large = WindowFont();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    lblAmt_[mode]->setFont(large);
    lblAmt_[mode]->setMinimumWidth(lblAmt_[mode]->fontMetrics().horizontalAdvance("00000"));

    auto* const row = new QHBoxLayout(page);
    row->setContentsMargins(8, 8, 8, 8);
    row->setSpacing(8);
    row->addWidget(grid, 1);
    row->addWidget(lblAmt_[mode]);
    const int tab = addTab(page, Shown(kPrizeClasses[mode].name));
    setTabToolTip(tab, "存檔時的" + Shown(kBetKindNames[mode]));
  }
  Clear();
}

void RecordTabs::Show(const PurchaseRecord& record) {
  int first = -1;
  for (std::size_t mode = 0; mode < tickets_.size(); ++mode) {
    lblAmt_[mode]->setText(Shown(StakeText(record.stakes[mode])).replace("\r\n", "\n"));
    TextModel::Rows rows;
    for (const RecordTicket& ticket : record.tickets[mode]) {
      QStringList& row = rows.emplace_back(Shown(ticket.seq));
      for (std::size_t column = 0; column < static_cast<std::size_t>(kPrizeClasses[mode].digits); ++column) {
        row += Shown(ticket.digits[column]);
      }
    }
    if (first == -1 && !rows.empty()) {
      first = static_cast<int>(mode);
    }
    tickets_[mode]->SetTexts(std::move(rows));
  }
  if (first != -1 && tickets_[static_cast<std::size_t>(currentIndex())]->rowCount() == 0) {
    setCurrentIndex(first);
  }
}

}  // namespace marlevo
