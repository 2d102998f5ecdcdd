#include "customers/frmSave.h"

#include <QHBoxLayout>
#include <vector>

#include "customers/customer_grid.h"
#include "customers/find_box.h"
#include "customers/frmCustom.h"
#include "customers/message_panel.h"
#include "ui/appearance.h"
#include "ui/frmMessage.h"
#include "ui/manual.h"
#include "ui/question.h"
#include "ui/scrolling.h"
#include "ui/widgets.h"

namespace marlevo {

frmSave::frmSave(QWidget* parent, const std::string& connection_string, const CurrentList& list)
    : QDialog(parent), connection_string_(connection_string), store_(connection_string), list_(list) {
  setObjectName("frmSave");
  setWindowTitle("存  檔");
  SetManualSection(*this, "存檔");
  Form_Load();
}

void frmSave::Form_Load() {
  SetUpWidgets();
  LoadCustomers({});
}

void frmSave::Form_Unload() {
  store_.Close();
}

void frmSave::done(int result) {
  QDialog::done(result);
  Form_Unload();
}

void frmSave::SetUpWidgets() {
  mfgCustom_H_ = new CustomerGrid(this, CustomerColumns::kNumberAndName);
  mfgCustom_H_->SetPlaceholder("還沒有客戶，請先按「客戶資料維護」新增");
  mfgCustom_H_->OnChosen([this](int) { mfgCustom_H_Click(); });
  mfgCustom_H_->setMinimumWidth(fontMetrics().horizontalAdvance('W') * 30 + fontMetrics().height() * 2);
  auto* const txtFind = new FindBox(this, *mfgCustom_H_);
  setTabOrder(txtFind, mfgCustom_H_);

  QPushButton* const save = NewButton(this, "cmdPrint", "存  檔", &frmSave::cmdPrint_Click, Emphasis::kMain);
  QPushButton* const cmdCustom = NewButton(this, "cmdCustom", "客戶資料維護", &frmSave::cmdCustom_Click);
  QPushButton* const cmdCancel = NewButton(this, "cmdCancel", "離  開", &frmSave::cmdCancel_Click);

  lblCustom_ = NewLabel(this, "lblCustom", {});
  lblSaved_ = NewLabel(this, "lblSaved", {});
  for (QLabel* const line : {lblCustom_, lblSaved_}) {
    line->setTextFormat(Qt::PlainText);
    line->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);  // a long name must not widen the window
  }

  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(save);
  buttons->addStretch();
  buttons->addWidget(cmdCustom);
  buttons->addWidget(cmdCancel);

  auto* const column = new QVBoxLayout(this);
  column->setSpacing(distances::kApart);
  column->addLayout(txtFind->Line());
  column->addWidget(mfgCustom_H_, 1);
  column->addWidget(lblCustom_);
  column->addLayout(buttons);
  column->addWidget(lblSaved_);

  picMsg_ = new MessagePanel(this);
  FitScreen(*this, QSize(sizeHint().width(), fontMetrics().height() * 26));
  mfgCustom_H_->setFocus();
}

void frmSave::LoadCustomers(const std::vector<std::string>& wanted) {
  mfgCustom_H_->Show(store_.Customers());
  int current = mfgCustom_H_->model()->rowCount() > 0 ? 0 : -1;
  for (auto number = wanted.rbegin(); number != wanted.rend(); ++number) {
    const int row = mfgCustom_H_->Find(*number);
    current = row == -1 ? current : row;
  }
  mfgCustom_H_->Highlight(current);
  mfgCustom_H_Click();
}

void frmSave::mfgCustom_H_Click() {
  Say(*lblCustom_, "存到  " + CurrentCustomer());
}

void frmSave::Say(QLabel& line, const QString& text) {
  line.setText(fontMetrics().elidedText(text, Qt::ElideRight, width() - 2 * distances::kApart));
  line.setToolTip(text);
}

void frmSave::cmdPrint_Click() {
  const std::string number = CurrentNumber();
  if (!Question(this, "確定要將號碼組合資料存檔到 [" + QString::fromStdString(number) + "] ?")) {
    return;
  }
  {
    const std::vector<StoredTicket> tickets = TicketsToStore(list_);
    MessagePanel::Work work(*picMsg_, static_cast<int>(tickets.size()));
    const std::string stamp = store_.Save(number, tickets, [&work](int stored) { work.Advance(stored); });
    const RecordSummary saved{stamp, static_cast<int>(tickets.size())};
    Say(*lblSaved_, QString::fromStdString(RecordLine(saved)) + " 已存到  " + CurrentCustomer());
  }
  ShowMessage(this, "存檔完畢 !");
}

void frmSave::cmdCustom_Click() {
  const std::string current = CurrentNumber();
  frmCustom maintenance(this, connection_string_);
  maintenance.exec();
  store_ = CustomerStore(connection_string_);
  LoadCustomers({maintenance.AddedLast().value_or(current), current});
}

void frmSave::cmdCancel_Click() {
  close();
}

std::string frmSave::CurrentNumber() const {
  const int row = mfgCustom_H_->ChosenRow();
  return row == -1 ? "客戶編號" : mfgCustom_H_->At(row).number;
}

QString frmSave::CurrentCustomer() const {
  const int row = mfgCustom_H_->ChosenRow();
  const std::string name = row == -1 ? "" : " " + mfgCustom_H_->At(row).name;
  return QString::fromStdString(CurrentNumber() + name);
}

}  // namespace marlevo
