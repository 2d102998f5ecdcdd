#include "customers/frmCustom_CHK.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListView>
#include <QRadioButton>
#include <QStringListModel>
#include <algorithm>

#include "customers/customer_grid.h"
#include "customers/find_box.h"
#include "customers/prizes.h"
#include "customers/record_list.h"
#include "ui/appearance.h"
#include "ui/digit_list.h"
#include "ui/grid.h"
#include "ui/manual.h"
#include "ui/question.h"
#include "ui/scrolling.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {

constexpr std::array<const char*, 3> kScopes = {"單一客戶指定記錄", "單一客戶所有記錄", "所有客戶"};

}  // namespace

frmCustom_CHK::frmCustom_CHK(QWidget* parent, const std::string& connection_string)
    : QDialog(parent), store_(connection_string) {
  setObjectName("frmCustom_CHK");
  setWindowTitle("客戶資料對獎");
  SetManualSection(*this, "客戶資料對獎");
  Form_Load();
}

void frmCustom_CHK::Form_Load() {
  SetUpWidgets();
  mfgCustom_H_->Show(store_.Customers());
}

void frmCustom_CHK::Form_Unload() {
  store_.Close();
}

void frmCustom_CHK::done(int result) {
  QDialog::done(result);
  Form_Unload();
}

void frmCustom_CHK::SetUpWidgets() {
  mfgCustom_H_ = new CustomerGrid(this, CustomerColumns::kAll);
  mfgCustom_H_->SetPlaceholder("還沒有客戶，請先在「客戶資料維護」新增");
  mfgCustom_H_->OnChosen([this](int row) { mfgCustom_H_Click(row); });
  auto* const txtFind = new FindBox(this, *mfgCustom_H_);
  setTabOrder(txtFind, mfgCustom_H_);

  txtCustom_No_ = Named(new QLineEdit(this), "txtCustom_No");
  lstRecord_ = new RecordList(this);
  QLabel* const lblRecord = NewLabel(this, "lblRecord", "購買記錄");
  lblRecord->setBuddy(lstRecord_);

  auto* const digits = new QGridLayout;
  digits->setVerticalSpacing(distances::kHair);
  for (int i = 0; i < 4; ++i) {
    cboCheck_[i] = new DigitList(this, ElementName("cboCheck", i));
    cboCheck_[i]->setMinimumWidth(fontMetrics().horizontalAdvance('W') * 5);
    QLabel* const title = NewLabel(this, ElementName("lblTitle2", i), QString::fromUtf8(kPositionNames[i]));
    title->setBuddy(cboCheck_[i]);
    digits->addWidget(title, 0, i);
    digits->addWidget(cboCheck_[i], 1, i);
  }
  digits->setColumnStretch(4, 1);

  auto* const scopes = new QVBoxLayout;
  for (int i = 0; i < 3; ++i) {
    Option1_[i] = Named(new QRadioButton(kScopes[i], this), ElementName("Option1", i));
    scopes->addWidget(Option1_[i]);
  }
  Option1_[0]->setChecked(true);

  QPushButton* const cmdCheck2 = NewButton(this, "cmdCheck2", "比對", &frmCustom_CHK::cmdCheck2_Click, Emphasis::kMain);
  QPushButton* const cmdExit = NewButton(this, "cmdExit", "離開", &frmCustom_CHK::cmdExit_Click);

  // A QListWidget would make an object for each line, and a draw can have thousands of winners.
  lstCheck_ = Named(new ChoosingView<QListView>(this, Moving::kOnly), "lstCheck");
  lstCheck_->setAccessibleName("中獎客戶");
  lstCheck_->SetPlaceholder("選好號碼和範圍，按「比對」，中獎的列在這裡");
  lstCheck_->OnChosen([this](int row) { lstCheck_Click(row); });
  lines_ = new QStringListModel(this);
  lstCheck_->setUniformItemSizes(true);
  lstCheck_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  lstCheck_->setModel(lines_);
  LetRowsBeCopied(*lstCheck_);

  auto* const customer = new QHBoxLayout;
  QLabel* const lblCustom_No = NewLabel(this, "lblCustom_No", "客戶代號");
  lblCustom_No->setBuddy(txtCustom_No_);
  customer->addWidget(lblCustom_No);
  customer->addWidget(txtCustom_No_, 1);

  auto* const records = new QVBoxLayout;
  records->addLayout(customer);
  records->addWidget(lblRecord);
  records->addWidget(lstRecord_, 1);

  auto* const check = new QVBoxLayout;
  check->setSpacing(distances::kApart);
  check->addLayout(digits);
  check->addLayout(scopes);
  check->addStretch();

  auto* const customers = new QVBoxLayout;
  customers->addLayout(txtFind->Line());
  customers->addWidget(mfgCustom_H_, 1);

  auto* const page = new QWidget(this);
  auto* const grid = new QGridLayout(page);
  grid->setSpacing(distances::kApart);
  grid->addLayout(customers, 0, 0);
  grid->addLayout(records, 0, 1);
  grid->addWidget(lstCheck_, 1, 0);
  grid->addLayout(check, 1, 1);
  grid->setColumnStretch(0, 1);
  grid->setRowStretch(0, 1);
  grid->setRowStretch(1, 1);
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdCheck2);
  buttons->addWidget(cmdExit);
  FillScrolling(this, page, buttons);
  FitScreen(*this, QSize(1160, 660));
  mfgCustom_H_->setFocus();
}

void frmCustom_CHK::mfgCustom_H_Click(int row) {
  lstCheck_->Highlight(-1);
  ShowCustomer(mfgCustom_H_->At(row).number);
}

// A winner may be nobody of the grid: a list saved without any customer bears the number "客戶編號".
void frmCustom_CHK::lstCheck_Click(int row) {
  const std::string& number = winners_[row].customer_no;
  mfgCustom_H_->Highlight(mfgCustom_H_->Find(number));
  ShowCustomer(number);
}

void frmCustom_CHK::ShowCustomer(const std::string& number) {
  txtCustom_No_->setText(QString::fromStdString(number));
  lstRecord_->Begin(number);
  lstRecord_->Show(store_.RecordsOf(number));
}

void frmCustom_CHK::cmdCheck2_Click() {
  winners_.clear();
  lines_->setStringList({});
  const std::optional<CheckScope> scope = ChosenScope();
  if (!scope) {
    return;
  }
  std::array<std::string, 4> drawn;
  std::ranges::transform(cboCheck_, drawn.begin(), &DigitList::Text);
  winners_ = store_.Winners(drawn, *scope);
  QStringList lines;
  for (const Winner& winner : winners_) {
    lines += QString::fromStdString(PrizeLine(winner));
  }
  lines_->setStringList(lines);
}

void frmCustom_CHK::cmdExit_Click() {
  close();
}

std::optional<CheckScope> frmCustom_CHK::ChosenScope() {
  const std::string number = txtCustom_No_->text().toStdString();
  if (Option1_[0]->isChecked()) {
    const QString line = lstRecord_->SelectedLine();
    if (line.trimmed().isEmpty()) {
      Notice(this, "請先選擇購買記錄 !");
      return std::nullopt;
    }
    return CheckScope{number, StampOfLine(line.toStdString())};
  }
  if (Option1_[1]->isChecked()) {
    if (lstRecord_->count() == 0) {
      Notice(this, "此客戶無購買記錄 !");
      return std::nullopt;
    }
    return CheckScope{number, std::nullopt};
  }
  return CheckScope{};
}

}  // namespace marlevo
