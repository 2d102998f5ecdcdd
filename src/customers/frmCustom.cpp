#include "customers/frmCustom.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>
#include <utility>

#include "customers/box_limit.h"
#include "customers/customer_grid.h"
#include "customers/day_backup.h"
#include "customers/find_box.h"
#include "customers/frmCustom_CHK.h"
#include "customers/message_panel.h"
#include "customers/record_list.h"
#include "customers/record_tabs.h"
#include "platform/base/clock.h"
#include "ui/appearance.h"
#include "ui/frmMessage.h"
#include "ui/manual.h"
#include "ui/question.h"
#include "ui/scrolling.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {

// Whether a key changes the text of a box, Ctrl combinations included (Ctrl+V). Keys that only move the cursor, select
// or copy do not.
bool Edits(const QKeyEvent& key) {
  constexpr QKeySequence::StandardKey kEditing[] = {QKeySequence::Paste,
                                                    QKeySequence::Cut,
                                                    QKeySequence::Undo,
                                                    QKeySequence::Redo,
                                                    QKeySequence::Delete,
                                                    QKeySequence::Backspace,
                                                    QKeySequence::DeleteStartOfWord,
                                                    QKeySequence::DeleteEndOfWord,
                                                    QKeySequence::DeleteEndOfLine,
                                                    QKeySequence::DeleteCompleteLine};
  const auto is = [&key](QKeySequence::StandardKey standard) { return key.matches(standard); };
  const bool moves = key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab || key.key() == Qt::Key_Escape;
  if (moves || is(QKeySequence::Copy) || is(QKeySequence::SelectAll)) {
    return false;
  }
  return !key.text().isEmpty() || std::ranges::any_of(kEditing, is);
}

}  // namespace

frmCustom::frmCustom(QWidget* parent, const std::string& connection_string, ListTaker take_list)
    : QDialog(parent),
      connection_string_(connection_string),
      take_list_(std::move(take_list)),
      store_(connection_string) {
  setObjectName("frmCustom");
  setWindowTitle("客戶資料維護");
  SetManualSection(*this, "客戶");
  Form_Load();
}

void frmCustom::Form_Load() {
  SetUpWidgets();
  LimitBoxes();
  mfgCustom_H_->Show(store_.Customers());
}

void frmCustom::Form_Unload() {
  store_.Close();
}

void frmCustom::done(int result) {
  QDialog::done(result);
  Form_Unload();
}

// The widgets are made in the order in which the Tab key visits them: first the customers, then what they bought.
void frmCustom::SetUpWidgets() {
  mfgCustom_H_ = new CustomerGrid(this, CustomerColumns::kAll);
  mfgCustom_H_->SetPlaceholder("還沒有客戶，請填好下面的資料，按「新增」");
  mfgCustom_H_->OnChosen([this](int row) { mfgCustom_H_Click(row); });
  auto* const txtFind = new FindBox(this, *mfgCustom_H_);
  QPushButton* const cmdBackup = NewButton(this, "cmdBackup", "備份", &frmCustom::cmdBackup_Click);
  QPushButton* const check = NewButton(this, "Command1", "客戶資料對獎", &frmCustom::Command1_Click);
  setTabOrder(txtFind, cmdBackup);
  setTabOrder(cmdBackup, check);
  setTabOrder(check, mfgCustom_H_);

  auto* const entry = new QGridLayout;
  const auto add_box = [&](const char* name, const char* label_name, const char* caption, int row, int column,
                           int columns) {
    auto* const box = Named(new QLineEdit(this), name);
    QLabel* const label = NewLabel(this, label_name, QString(caption));
    label->setBuddy(box);
    entry->addWidget(label, row, column);
    entry->addWidget(box, row, column + 1, 1, columns);
    return box;
  };
  txtCustom_No_ = add_box("txtCustom_No", "lblCustom_No", "客戶代號", 0, 0, 1);
  txtCustom_Name_ = add_box("txtCustom_Name", "lblCustom_Name", "客戶姓名", 0, 2, 1);
  txtTEL1_ = add_box("txtTEL1", "lblTEL1", "電 話 一", 1, 0, 1);
  txtTEL2_ = add_box("txtTEL2", "lblTEL2", "電 話 二", 1, 2, 1);
  txtMemo1_ = add_box("txtMemo1", "lblMemo1", "備    註", 2, 0, 3);
  txtCustom_No_->installEventFilter(this);
  connect(txtCustom_No_, &QLineEdit::textEdited, this, &frmCustom::txtCustom_No_KeyPress);

  QPushButton* const cmdAdd = NewButton(this, "cmdAdd", "新增", &frmCustom::cmdAdd_Click, Emphasis::kMain);
  QPushButton* const cmdEdit = NewButton(this, "cmdEdit", "修改", &frmCustom::cmdEdit_Click);
  QPushButton* const cmdDel = NewButton(this, "cmdDel", "刪除客戶資料", &frmCustom::cmdDel_Click);
  QPushButton* const cmdClear = NewButton(this, "cmdClear", "清空", &frmCustom::cmdClear_Click);

  lstRecord_ = new RecordList(this);
  lstRecord_->OnPressed([this] { lstRecord_MouseDown(); });
  QLabel* const lblRecord = NewLabel(this, "lblRecord", "購買記錄");
  lblRecord->setBuddy(lstRecord_);
  lblSum_ = NewLabel(this, "lblSum", {});
  SSTab1_ = new RecordTabs(this);

  QPushButton* const cmdDelRecord = NewButton(this, "cmdDelRecord", "刪除購買記錄", &frmCustom::cmdDelRecord_Click);
  QPushButton* const cmdLoadRecord = NewButton(this, "cmdLoadRecord", "載回號碼", &frmCustom::cmdLoadRecord_Click);
  cmdLoadRecord->setVisible(take_list_ != nullptr);
  QPushButton* const cmdExit = NewButton(this, "cmdExit", "結束", &frmCustom::cmdExit_Click);

  auto* const customer_buttons = new QHBoxLayout;
  customer_buttons->addWidget(cmdAdd);
  customer_buttons->addWidget(cmdEdit);
  customer_buttons->addWidget(cmdDel);
  customer_buttons->addWidget(cmdClear);
  customer_buttons->addStretch();

  auto* const customers = new QVBoxLayout;
  customers->setSpacing(distances::kApart);
  QHBoxLayout* const search = txtFind->Line();
  search->addWidget(cmdBackup);
  search->addWidget(check);
  customers->addLayout(search);
  customers->addWidget(mfgCustom_H_, 1);
  customers->addLayout(entry);

  auto* const record_buttons = new QHBoxLayout;
  record_buttons->addWidget(cmdDelRecord);
  record_buttons->addWidget(cmdLoadRecord);
  record_buttons->addStretch();
  record_buttons->addWidget(cmdExit);

  auto* const records = new QVBoxLayout;
  records->addWidget(lblRecord);
  records->addWidget(lstRecord_, 2);
  records->addWidget(lblSum_);
  records->addWidget(SSTab1_, 3);

  auto* const page = new QWidget(this);
  auto* const columns = new QHBoxLayout(page);
  columns->setSpacing(distances::kApart);
  columns->addLayout(customers, 4);
  columns->addLayout(records, 3);
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(distances::kApart);
  buttons->addLayout(customer_buttons, 4);
  buttons->addLayout(record_buttons, 3);
  FillScrolling(this, page, buttons);

  picMsg_ = new MessagePanel(this);
  FitScreen(*this, QSize(1280, 660));
  txtCustom_No_->setFocus();
}

void frmCustom::LimitBoxes() {
  const std::array<QLineEdit*, kCustomerFields> boxes = Boxes();
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const auto field = static_cast<CustomerField>(i);
    LimitBox(*boxes[i], store_.MostCharacters(field), store_.RoomIn(field));
  }
}

void frmCustom::UpdateCustomerGrid(Change change) {
  switch (change) {
    case Change::kAdded:
      return mfgCustom_H_->Append(Entered());
    case Change::kChanged:
      return mfgCustom_H_->Replace(Entered());
    case Change::kDeleted:
      return mfgCustom_H_->Remove(Number());
  }
}

void frmCustom::mfgCustom_H_Click(int row) {
  const Customer& customer = mfgCustom_H_->At(row);
  txtCustom_No_->setText(QString::fromStdString(customer.number));
  txtCustom_Name_->setText(QString::fromStdString(customer.name));
  txtTEL1_->setText(QString::fromStdString(customer.tel1));
  txtTEL2_->setText(QString::fromStdString(customer.tel2));
  txtMemo1_->setText(QString::fromStdString(customer.memo));
  for (QLineEdit* box : Boxes()) {
    box->home(false);  // a long text is read from its beginning
  }
  ForgetRecords();
  lstRecord_->Begin(customer.number);
  lstRecord_->Show(store_.RecordsOf(customer.number));
}

void frmCustom::lstRecord_MouseDown() {
  const std::string line = lstRecord_->SelectedLine().toStdString();
  MessagePanel::Work work(*picMsg_, lstRecord_->SelectedTickets());
  ShowRecord({});
  if (!line.empty()) {
    ShowRecord(store_.Record(lstRecord_->Number(), StampOfLine(line), [&work](int read) { work.Advance(read); }));
  }
}

void frmCustom::ShowRecord(PurchaseRecord record) {
  lblSum_->setText(QString::fromStdString(SumText(record)));
  SSTab1_->Show(std::move(record));
}

// What is listed and shown belongs to the customer before.
void frmCustom::ForgetRecords() {
  lstRecord_->Clear();
  ShowRecord({});
}

void frmCustom::txtCustom_No_KeyPress() {
  ForgetRecords();
  mfgCustom_H_->Highlight(-1);  // the number in the box is no longer that of the highlighted row
}

void frmCustom::cmdAdd_Click() {
  if (!HasNumber()) {
    return;
  }
  if (!store_.Add(Entered())) {
    ShowMessage(this, "客戶編號已經存在,\r\n不可新增 !!");
    return;
  }
  added_last_ = Number();
  UpdateCustomerGrid(Change::kAdded);
}

void frmCustom::cmdEdit_Click() {
  if (!HasNumber()) {
    return;
  }
  const RowChange change = store_.Replace(Entered());
  if (!change.found) {
    ShowMessage(this, "客戶編號不存在,\r\n不可修改 !!");
    return;
  }
  UpdateCustomerGrid(change.refusal ? Change::kDeleted : Change::kChanged);
  if (change.refusal) {
    throw DatabaseError(*change.refusal);
  }
}

void frmCustom::cmdDel_Click() {
  if (!HasNumber()) {
    return;
  }
  if (!store_.Has(Number())) {
    ShowMessage(this, "客戶編號不存在,\r\n不可刪除 !!");
    return;
  }
  const QString number = txtCustom_No_->text();
  if (!Question(this, "注意 ! " + number + "客戶所有資料將會被刪除\r\n確定要將" + number + "客戶刪除 ?")) {
    return;
  }
  const std::optional<DatabaseError> refusal = store_.Remove(Number());
  UpdateCustomerGrid(Change::kDeleted);
  if (refusal) {
    throw DatabaseError(*refusal);
  }
}

void frmCustom::cmdClear_Click() {
  for (QLineEdit* box : Boxes()) {
    box->clear();
  }
  txtCustom_No_KeyPress();
  txtCustom_No_->setFocus();
}

void frmCustom::cmdDelRecord_Click() {
  const QString line = lstRecord_->SelectedLine();
  if (line.trimmed().isEmpty() || !Question(this, "要將 " + line + " 資料移除 ?")) {
    return;
  }
  ShowRecord({});
  store_.RemoveRecord(lstRecord_->Number(), StampOfLine(line.toStdString()));
  lstRecord_->RemoveSelectedLine();
}

void frmCustom::cmdLoadRecord_Click() {
  if (lstRecord_->SelectedLine().isEmpty()) {
    ShowMessage(this, "請先選擇購買記錄 !!");
    return;
  }
  std::optional<CurrentList> list = ListOfRecord(SSTab1_->Shown());
  if (!list) {
    ShowMessage(this, "這筆記錄的金額或號碼無法組成號碼清單,\r\n不可載回 !!");
    return;
  }
  if (take_list_(this, std::move(*list))) {
    close();
  }
}

void frmCustom::cmdBackup_Click() {
  const QString folder = QFileDialog::getExistingDirectory(this, "備份到哪個資料夾");
  if (folder.isEmpty()) {
    return;
  }
  const DayBackup backup = BackupOfDay(connection_string_, folder.toStdU16String(), LocalStamp());
  if (Replaces(backup) && !Question(this, "這個資料夾裡已經有今天的備份\r\n要用現在的資料取代 ?")) {
    return;
  }
  {
    const MessagePanel::Work work(*picMsg_, 1);
    BackUp(backup.database, backup.settings);
  }
  ShowMessage(this, "備份完畢,讀回檢查無誤 !");
}

void frmCustom::Command1_Click() {
  frmCustom_CHK window(this, connection_string_);
  window.exec();
}

void frmCustom::cmdExit_Click() {
  close();
}

bool frmCustom::eventFilter(QObject* watched, QEvent* event) {
  // Text that comes without a key press (from an input method, the mouse or the box's menu) is noticed by textEdited,
  // which is connected to the same handler.
  if (event->type() == QEvent::KeyPress && Edits(*static_cast<QKeyEvent*>(event))) {
    txtCustom_No_KeyPress();
  }
  return QDialog::eventFilter(watched, event);
}

bool frmCustom::HasNumber() {
  if (txtCustom_No_->text().isEmpty()) {
    ShowMessage(this, "請先輸入客戶編號 !!");
    return false;
  }
  return true;
}

std::string frmCustom::Number() const {
  return txtCustom_No_->text().toStdString();
}

std::array<QLineEdit*, kCustomerFields> frmCustom::Boxes() const {
  return {txtCustom_No_, txtCustom_Name_, txtTEL1_, txtTEL2_, txtMemo1_};
}

Customer frmCustom::Entered() const {
  return {Number(), txtCustom_Name_->text().toStdString(), txtTEL1_->text().toStdString(),
          txtTEL2_->text().toStdString(), txtMemo1_->text().toStdString()};
}

}  // namespace marlevo
