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

RecordTabs::RecordTabs(QWidget* parent) : QTabWidget(parent) {
  setObjectName("SSTab1");
  for (int mode = 0; mode < kPlayModes; ++mode) {
    QStringList headings = {""};
    for (int column = 0; column < kPrizeClasses[mode].digits; ++column) {
      headings += QString::fromUtf8(kPositionNames[column]);
    }
    auto* const page = new QWidget(this);
    auto* const grid = Named(new QTableView(page), ElementName("mfgData", mode));
    tickets_[mode] = new TextModel(headings, Qt::AlignHCenter, this);
    grid->setAccessibleName("購買記錄 " + QString::fromUtf8(kPrizeClasses[mode].name));
    SetUpGrid(*grid, GridSelection::kRows);
    grid->setModel(tickets_[mode]);
    grid->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);

    lblAmt_[mode] = NewLabel(page, ElementName("lblAmt", mode), {});
    lblAmt_[mode]->setTextFormat(Qt::PlainText);
    lblAmt_[mode]->setAlignment(Qt::AlignCenter);
    QFont large = WindowFont();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    lblAmt_[mode]->setFont(large);
    lblAmt_[mode]->setMinimumWidth(lblAmt_[mode]->fontMetrics().horizontalAdvance("0000"));

    auto* const row = new QHBoxLayout(page);
    row->setContentsMargins(distances::kHair, distances::kHair, distances::kHair, distances::kHair);
    row->addWidget(grid, 1);
    row->addWidget(lblAmt_[mode]);
    const int tab = addTab(page, QString::fromUtf8(kPrizeClasses[mode].name));
    setTabToolTip(tab, "存檔時的" + QString::fromUtf8(kBetKindNames[mode]));
  }
  Clear();
}

void RecordTabs::Show(PurchaseRecord record) {
  record_ = std::move(record);
  int first = -1;
  for (int mode = 0; mode < kPlayModes; ++mode) {
    lblAmt_[mode]->setText(QString::fromUtf8(StakeText(record_[mode])).replace("\r\n", "\n"));
    TextModel::Rows rows;
    for (const RecordTicket& ticket : record_[mode]) {
      QStringList& row = rows.emplace_back(QString::fromUtf8(ticket.seq));
      for (int column = 0; column < kPrizeClasses[mode].digits; ++column) {
        row += QString::fromUtf8(ticket.digits[column]);
      }
    }
    if (first == -1 && !rows.empty()) {
      first = mode;
    }
    tickets_[mode]->SetTexts(std::move(rows));
  }
  if (first != -1 && tickets_[currentIndex()]->rowCount() == 0) {
    setCurrentIndex(first);
  }
}

}  // namespace marlevo
