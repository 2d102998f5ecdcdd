#include "customers/frmSave.h"

#include <QHBoxLayout>
#include <QScreen>
#include <vector>

#include "customers/customer_grid.h"
#include "customers/customer_statements.h"
#include "customers/frmCustom.h"
#include "customers/message_panel.h"
#include "platform/clock/clock.h"
#include "ui/frmMessage.h"
#include "ui/question.h"
#include "ui/widgets.h"

namespace marlevo {

frmSave::frmSave(QWidget* parent, const std::string& connection_string, const CurrentList& list)
    : QDialog(parent), connection_string_(connection_string), connection_(connection_string), list_(list) {
  setObjectName("frmSave");
  setWindowTitle("存  檔");
  SetUpWidgets();
  LoadCustomers();
}

void frmSave::SetUpWidgets() {
  mfgCustom_H_ = new CustomerGrid(this, {15, 15});
  mfgCustom_H_->setMinimumWidth(fontMetrics().horizontalAdvance('W') * 30 + fontMetrics().height() * 2);

  QPushButton* const save = NewButton(this, "cmdPrint", "存  檔", Emphasis::kMain);
  QPushButton* const cmdCustom = NewButton(this, "cmdCustom", "客戶資料維護");
  QPushButton* const cmdCancel = NewButton(this, "cmdCancel", "離  開");
  connect(save, &QPushButton::clicked, this, &frmSave::cmdPrint_Click);
  connect(cmdCustom, &QPushButton::clicked, this, &frmSave::cmdCustom_Click);
  connect(cmdCancel, &QPushButton::clicked, this, &QDialog::close);

  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  buttons->addWidget(save);
  buttons->addStretch();
  buttons->addWidget(cmdCustom);
  buttons->addWidget(cmdCancel);

  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(16, 16, 16, 16);
  column->setSpacing(16);
  column->addWidget(mfgCustom_H_, 1);
  column->addLayout(buttons);

  picMsg_ = new MessagePanel(this);
  resize(QSize(sizeHint().width(), fontMetrics().height() * 26).boundedTo(screen()->availableSize()));
  mfgCustom_H_->setFocus();
}

void frmSave::LoadCustomers() {
  mfgCustom_H_->Fill(connection_);
  mfgCustom_H_->selectRow(0);
}

void frmSave::cmdPrint_Click() {
  // With no customer at all the heading row is the current one, and its first text is what the list is saved under.
  const int row = mfgCustom_H_->SelectedRow();
  const QString number = row == -1 ? QString("客戶編號") : mfgCustom_H_->Row(row)[0];
  if (!Question(this, "確定要將號碼組合資料存檔到 [" + number + "] ?")) {
    return;
  }
  {
    const std::vector<StoredTicket> tickets = TicketsToStore(list_);
    MessagePanel::Work work(*picMsg_, static_cast<int>(tickets.size()));
    const std::string stamp = LocalStamp();
    int stored = 0;
    for (const StoredTicket& ticket : tickets) {
      connection_.Execute(InsertTicket(number.toStdString(), stamp, ticket));
      work.Advance(++stored);
    }
    connection_.Flush();
  }
  ShowMessage(this, "存檔完畢 !");
}

void frmSave::cmdCustom_Click() {
  frmCustom(this, connection_string_).exec();
  connection_.Close();
  connection_ = Connection(connection_string_);
  LoadCustomers();
}

}  // namespace marlevo
