#include "draws/frmInput.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTableView>
#include <algorithm>

#include "platform/base/text.h"
#include "tickets/tickets.h"
#include "ui/appearance.h"
#include "ui/choosing_view.h"
#include "ui/digit_list.h"
#include "ui/frmMessage.h"
#include "ui/grid.h"
#include "ui/manual.h"
#include "ui/scrolling.h"
#include "ui/text_model.h"
#include "ui/widgets.h"

namespace marlevo {

frmInput::frmInput(QWidget* parent, const std::string& connection_string) : QDialog(parent), store_(connection_string) {
  setObjectName("frmInput");
  setWindowTitle("輸入開獎號碼");
  SetManualSection(*this, "開獎號碼");
  Form_Load();
}

void frmInput::Form_Load() {
  SetUpWidgets();
  SetupDrawGrid();
  LoadDrawResults();
  if (const std::optional<std::size_t> digits = store_.MostDigits()) {
    txtVou_No_->setMaxLength(static_cast<int>(*digits));
  }
  const QWidget& page = *mfgNumeric_->parentWidget();
  FitScreen(*this, QSize(page.sizeHint().width(), fontMetrics().height() * 26));
}

void frmInput::Form_Unload() {
  store_.Close();
}

void frmInput::done(int result) {
  QDialog::done(result);
  Form_Unload();
}

void frmInput::SetUpWidgets() {
  txtVou_No_ = Named(new QLineEdit(this), "txtVou_No");
  // Only digits are typed here: an input method in Chinese mode would swallow them.
  txtVou_No_->setAttribute(Qt::WA_InputMethodEnabled, false);
  txtVou_No_->installEventFilter(this);
  QLabel* const lblVou_No = NewLabel(this, "lblVou_No", "開獎期數");
  lblVou_No->setBuddy(txtVou_No_);

  auto* const entry = new QGridLayout;
  entry->addWidget(lblVou_No, 0, 0);
  entry->addWidget(txtVou_No_, 0, 1);
  for (int i = 0; i < 4; ++i) {
    cboCheck_[i] = new DigitList(this, ElementName("cboCheck", i));
    QLabel* const title = NewLabel(this, ElementName("lblTitle2", i), QString::fromUtf8(kPositionNames[i]));
    title->setBuddy(cboCheck_[i]);
    entry->addWidget(title, i + 1, 0);
    entry->addWidget(cboCheck_[i], i + 1, 1);
  }
  entry->setColumnMinimumWidth(1, fontMetrics().horizontalAdvance('0') * 16);

  QPushButton* const cmdAdd = NewButton(this, "cmdAdd", "新增", &frmInput::cmdAdd_Click, Emphasis::kMain);
  QPushButton* const cmdEdit = NewButton(this, "cmdEdit", "修改", &frmInput::cmdEdit_Click);
  QPushButton* const cmdDel = NewButton(this, "cmdDel", "刪除", &frmInput::cmdDel_Click);
  QPushButton* const cmdExit = NewButton(this, "cmdExit", "離開", &frmInput::cmdExit_Click);

  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(cmdAdd, 1);
  buttons->addWidget(cmdEdit, 1);
  buttons->addWidget(cmdDel, 1);

  auto* const left = new QVBoxLayout;
  left->setSpacing(distances::kApart);
  left->addLayout(entry);
  left->addLayout(buttons);
  left->addStretch();
  left->addWidget(cmdExit);

  mfgNumeric_ = Named(new ChoosingView<QTableView>(this, Moving::kChooses), "mfgNumeric");
  mfgNumeric_->setAccessibleName("開獎號碼");
  // The row for the next draw is always there.
  mfgNumeric_->SetPlaceholder("還沒有開獎號碼，請填好左邊的資料，按「新增」", 1);
  mfgNumeric_->OnChosen([this](int row) { mfgNumeric_RowChosen(row); });

  auto* const page = new QWidget(this);
  auto* const columns = new QHBoxLayout(page);
  columns->setSpacing(distances::kApart);
  columns->addLayout(left);
  columns->addWidget(mfgNumeric_, 1);
  FillScrolling(this, page);
  txtVou_No_->setFocus();
}

void frmInput::SetupDrawGrid() {
  draws_ = new TextModel({"期數", "第一注", "第二注", "第三注", "第四注"}, Qt::AlignHCenter, this);
  draws_->SetTexts({QStringList(5)});
  SetUpGrid(*mfgNumeric_, GridSelection::kRow);
  mfgNumeric_->setModel(draws_);
  mfgNumeric_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  mfgNumeric_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Fixed);
  SetColumnWidths(*mfgNumeric_, {9});
  mfgNumeric_->setMinimumWidth(fontMetrics().horizontalAdvance('W') * 30);
}

void frmInput::LoadDrawResults() {
  TextModel::Rows rows;
  for (const Draw& draw : store_.Draws()) {
    QStringList& row = rows.emplace_back(QString::fromStdString(draw.number));
    for (const std::string& digit : draw.digits) {
      row += QString::fromStdString(digit);
    }
  }
  rows.emplace_back(5);
  draws_->SetTexts(std::move(rows));
}

void frmInput::UpdateDrawGrid(Change change) {
  QStringList row = {txtVou_No_->text()};
  for (const DigitList* list : cboCheck_) {
    row += list->currentText();
  }
  if (change == Change::kAdded) {
    draws_->Insert(draws_->rowCount() - 1, row);
    mfgNumeric_->Highlight(draws_->rowCount() - 2);
    mfgNumeric_->scrollToBottom();
    return;
  }
  // The grid is searched for the text as it was typed. 092001 changes draw 92001 in the table, but no row of the grid.
  const TextModel::Rows& rows = draws_->Texts();
  const auto same = [&row](const QStringList& other) { return other[0] == row[0]; };
  const auto found = std::find_if(rows.begin(), rows.end(), same);
  if (found == rows.end()) {
    return;
  }
  const int place = static_cast<int>(found - rows.begin());
  if (change == Change::kDeleted) {
    mfgNumeric_->Highlight(-1);  // or else the grid would highlight the neighbour of the row that it loses
    draws_->Remove(place);
  } else {
    draws_->Replace(place, row);
    mfgNumeric_->Highlight(place);
  }
}

void frmInput::cmdAdd_Click() {
  if (!HasNumber()) {
    return;
  }
  if (!store_.Add(Entered())) {
    ShowMessage(this, "開獎期數已經存在,不可新增 !!");
    return;
  }
  UpdateDrawGrid(Change::kAdded);
}

void frmInput::cmdEdit_Click() {
  if (!HasNumber()) {
    return;
  }
  const RowChange change = store_.Replace(Entered());
  if (!change.found) {
    ShowMessage(this, "開獎期數不存在,不可修改 !!");
    return;
  }
  UpdateDrawGrid(change.refusal ? Change::kDeleted : Change::kChanged);
  if (change.refusal) {
    throw DatabaseError(*change.refusal);
  }
}

void frmInput::cmdDel_Click() {
  if (!HasNumber()) {
    return;
  }
  if (!store_.Remove(Entered().number)) {
    ShowMessage(this, "開獎期數不存在,不可刪除 !!");
    return;
  }
  UpdateDrawGrid(Change::kDeleted);
}

void frmInput::cmdExit_Click() {
  close();
}

void frmInput::mfgNumeric_RowChosen(int row) {
  const QStringList& texts = draws_->Texts()[row];
  txtVou_No_->setText(texts[0]);
  for (int i = 0; i < 4; ++i) {
    const double digit = LenientNumber(texts[i + 1].toStdString());
    cboCheck_[i]->SetDigit(QString::fromStdString(NumberText(digit)));
  }
}

void frmInput::txtVou_No_GotFocus() {
  txtVou_No_->selectAll();
}

bool frmInput::txtVou_No_KeyPress(const QKeyEvent& event) {
  // With Ctrl or Ctrl+Shift a key is a command such as paste. With Ctrl+Alt it may type: that is what AltGr sends.
  const bool command =
      event.modifiers() == Qt::ControlModifier || event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
  const auto allowed = [](QChar character) {
    return (character >= u'0' && character <= u'9') || character.category() == QChar::Other_Control;
  };
  const QString typed = event.text();
  return !command && !std::all_of(typed.begin(), typed.end(), allowed);
}

void frmInput::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  const int newest = draws_->rowCount() - 2;
  if (newest >= 0) {
    mfgNumeric_->MoveTo(newest);
    mfgNumeric_->scrollToBottom();
  }
}

bool frmInput::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && txtVou_No_KeyPress(*static_cast<QKeyEvent*>(event))) {
    return true;
  }
  if (event->type() == QEvent::FocusIn) {
    // Queued, because the mouse press that brings the focus puts the cursor into the text afterwards, which would undo
    // the selection.
    QMetaObject::invokeMethod(this, &frmInput::txtVou_No_GotFocus, Qt::QueuedConnection);
  }
  return QDialog::eventFilter(watched, event);
}

bool frmInput::HasNumber() {
  if (txtVou_No_->text().isEmpty()) {
    ShowMessage(this, "請先輸入期數 !!");
    return false;
  }
  return true;
}

Draw frmInput::Entered() const {
  Draw draw{txtVou_No_->text().toStdString(), {}};
  std::ranges::transform(cboCheck_, draw.digits.begin(), &DigitList::Text);
  return draw;
}

}  // namespace marlevo
