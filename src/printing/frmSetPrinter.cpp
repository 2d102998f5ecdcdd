#include "printing/frmSetPrinter.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "platform/base/text.h"
#include "platform/printer/printer.h"
#include "printing/print_button.h"
#include "printing/slip_preview.h"
#include "printing/slip_reference.h"
#include "printing/slip_sample.h"
#include "printing/slip_settings_file.h"
#include "ui/appearance.h"
#include "ui/grid.h"
#include "ui/manual.h"
#include "ui/question.h"
#include "ui/scrolling.h"
#include "ui/select_all_edit.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {

constexpr QSize kComfortable(1180, 690);
constexpr double kReferencePoints = 10.5;  // all rows of the reference list fit without scrolling

QString Caption(SlipType type) {
  return QString::fromUtf8(SlipCaption(type));
}

QTableWidgetItem* NewCell(const QString& text, Qt::Alignment alignment = Qt::AlignRight) {
  auto* const cell = new QTableWidgetItem(text);
  cell->setTextAlignment(alignment | Qt::AlignVCenter);
  return cell;
}

// One row with the heading and the printer's name, then a row for each value.
void AddTable(QTableWidget& list, const SlipReferenceTable& table) {
  QFont bold = list.font();
  bold.setBold(true);
  int row = list.rowCount();
  list.setRowCount(row + 1 + static_cast<int>(table.rows.size()));
  list.setItem(row, 0, NewCell(QString::fromUtf8(table.heading), Qt::AlignLeft));
  list.setItem(row, 1, NewCell(QString::fromUtf8(table.printer)));
  list.setSpan(row, 1, 1, 2);
  list.item(row, 0)->setFont(bold);
  list.item(row, 1)->setFont(bold);
  for (const SlipReferenceRow& values : table.rows) {
    ++row;
    list.setItem(row, 0, NewCell(QString::fromUtf8(values.label), Qt::AlignLeft));
    list.setItem(row, 1, NewCell(QString::number(values.three_digit)));
    list.setItem(row, 2, NewCell(QString::number(values.four_digit)));
  }
}

}  // namespace

frmSetPrinter::frmSetPrinter(QWidget* parent, std::filesystem::path settings_folder)
    : QDialog(parent), settings_folder_(std::move(settings_folder)) {
  setObjectName("frmSetPrinter");
  setWindowTitle("投注單列印調整");
  SetManualSection(*this, "調整位置");
  Form_Load();
}

void frmSetPrinter::SetUpWidgets() {
  picPreview_ = new SlipPreview(this);
  lblField_ = NewLabel(this, "lblField", {});
  lblField_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // its text must not widen the window

  auto* const procedure =
      new QLabel("第一先按預覽第二放投注單按測試列印第三如果不準調整參數再按測試列印第四沒問題就按存檔", this);
  auto* const hints = new QHBoxLayout;
  hints->setSpacing(distances::kWide);
  for (const char* const text :
       {"印表機廠牌不同但大同小異通常調整左右和上下謝謝", "雷射印表機左邊界4300左右", "請看右邊的參數"}) {
    hints->addWidget(new QLabel(text, this));
  }
  hints->addStretch();

  auto* const columns = new QHBoxLayout;
  columns->setSpacing(distances::kApart);
  columns->addWidget(picPreview_, 1);
  columns->addLayout(NewReference());
  columns->addLayout(NewBoxes());

  auto* const content = new QWidget;
  auto* const rows = new QVBoxLayout(content);
  rows->addWidget(procedure);
  rows->addLayout(hints);
  rows->addLayout(columns, 1);
  FillScrolling(this, content, NewButtons());
  FitScreen(*this, kComfortable);
}

void frmSetPrinter::Form_Load() {
  SetUpWidgets();
  opPlay4_Click();
  txtInput_[0]->setFocus();
}

QLayout* frmSetPrinter::NewBoxes() {
  auto* const fraSlip = Named(new QGroupBox("投注單選項", this), "fraSlip");
  opPlay4_ = Named(new QRadioButton(Caption(SlipType::kFourDigit), fraSlip), "opPlay4");
  opPlay3_ = Named(new QRadioButton(Caption(SlipType::kThreeDigit), fraSlip), "opPlay3");
  connect(opPlay4_, &QRadioButton::clicked, this, &frmSetPrinter::opPlay4_Click);
  connect(opPlay3_, &QRadioButton::clicked, this, &frmSetPrinter::opPlay3_Click);
  auto* const options = new QHBoxLayout(fraSlip);
  options->setSpacing(distances::kWide);
  options->addWidget(opPlay4_);
  options->addWidget(opPlay3_);
  options->addStretch();

  auto* const form = new QFormLayout;
  form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  form->setVerticalSpacing(distances::kHair);
  const auto* const number = new QRegularExpressionValidator(QRegularExpression("[+-]?[0-9]*\\.?[0-9]*"), this);
  for (int i = 0; i < kSlipFields; ++i) {
    auto* const box = Named(new SelectAllEdit(this), ElementName("txtInput", i));
    box->setValidator(number);
    box->setAlignment(Qt::AlignRight);
    box->setFixedWidth(box->fontMetrics().horizontalAdvance('0') * 12);
    box->installEventFilter(this);
    // Text that is pasted or dropped with the mouse brings no key release.
    connect(box, &QLineEdit::textEdited, this, [this, i] { txtInput_KeyUp(i); });
    form->addRow(QString::fromUtf8(kSlipFieldTable[i].label), box);
    txtInput_[i] = box;
  }
  auto* const column = new QVBoxLayout;
  column->setSpacing(distances::kApart);
  column->addWidget(fraSlip);
  column->addLayout(form);
  column->addStretch();
  return column;
}

QLayout* frmSetPrinter::NewReference() {
  auto* const list = Named(new QTableWidget(0, 3, this), "lstReference");
  list->setAccessibleName("速查表");
  QFont small = font();
  small.setPointSizeF(kReferencePoints);
  list->setFont(small);
  list->horizontalHeader()->setFont(small);
  SetUpGrid(*list, GridSelection::kRows);
  list->verticalHeader()->setDefaultSectionSize(list->fontMetrics().height());
  list->setHorizontalHeaderLabels({"單位 1/1440 吋", Caption(SlipType::kThreeDigit), Caption(SlipType::kFourDigit)});
  list->horizontalHeaderItem(0)->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  list->horizontalHeaderItem(1)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  list->horizontalHeaderItem(2)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  list->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
  list->horizontalHeader()->setDefaultSectionSize(fontMetrics().horizontalAdvance('0') * 8);
  list->setShowGrid(false);
  list->setFocusPolicy(Qt::ClickFocus);  // the Tab key goes from the boxes to the buttons
  for (const SlipReferenceTable& table : kSlipReference) {
    AddTable(*list, table);
  }
  list->setMinimumWidth(fontMetrics().horizontalAdvance('0') * 30);
  list->setMaximumWidth(fontMetrics().horizontalAdvance('0') * 38);

  auto* const column = new QVBoxLayout;
  column->setSpacing(distances::kHair);
  column->addWidget(new QLabel("各種印表機投注單列印設定位置速查表即使", this));
  column->addWidget(new QLabel("是同機型設定位置也會差一點請再自行調整", this));
  column->addWidget(list, 1);
  column->addWidget(new QLabel("以上為各種列印機設定值   各種印表機都可調整", this));
  return column;
}

QLayout* frmSetPrinter::NewButtons() {
  QPushButton* const cmdPreview = NewButton(this, "cmdPreview", "預  覽", &frmSetPrinter::cmdPreview_Click);
  QPushButton* const cmdPrint = NewPrintButton(this, "測試列印", [this] { cmdPrint_Click(); });
  QPushButton* const cmdSave = NewButton(this, "cmdSave", "存  檔", &frmSetPrinter::cmdSave_Click);
  QPushButton* const cmdCancel = NewButton(this, "cmdCancel", "離  開", &frmSetPrinter::cmdCancel_Click);
  chkZoom_ = Named(new QCheckBox("放大", this), "chkZoom");
  connect(chkZoom_, &QCheckBox::clicked, this, &frmSetPrinter::chkZoom_Click);
  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(chkZoom_);
  buttons->addSpacing(distances::kWide);
  buttons->addWidget(lblField_, 1);
  for (QPushButton* const button : {cmdPreview, cmdPrint, cmdSave, cmdCancel}) {
    buttons->addWidget(button);
  }
  return buttons;
}

bool frmSetPrinter::eventFilter(QObject* watched, QEvent* event) {
  const auto box = std::ranges::find(txtInput_, watched);
  if (box == txtInput_.end()) {
    return QDialog::eventFilter(watched, event);
  }
  const int index = static_cast<int>(box - txtInput_.begin());
  switch (event->type()) {
    case QEvent::KeyPress:
      return txtInput_KeyDown(static_cast<QKeyEvent*>(event)->key());
    case QEvent::KeyRelease:
      txtInput_KeyUp(index);
      break;
    case QEvent::FocusIn:
      txtInput_GotFocus(index);
      break;
    default:
      break;
  }
  return false;
}

bool frmSetPrinter::txtInput_KeyDown(int key) {
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
      return focusNextChild();
    case Qt::Key_Up:
      return focusPreviousChild();
    default:
      return false;
  }
}

void frmSetPrinter::opPlay3_Click() {
  ChooseType(SlipType::kThreeDigit);
}

void frmSetPrinter::opPlay4_Click() {
  ChooseType(SlipType::kFourDigit);
}

QRadioButton* frmSetPrinter::OptionOf(SlipType type) const {
  return type == SlipType::kThreeDigit ? opPlay3_ : opPlay4_;
}

void frmSetPrinter::ChooseType(SlipType type) {
  OptionOf(type_)->setChecked(
      true);  // the click has moved the choice already; it moves on only when loading does not throw
  LoadSlipSettings(settings_folder_, type);
  OptionOf(type)->setChecked(true);
  type_ = type;
  for (std::size_t i = 0; i < txtInput_.size(); ++i) {
    txtInput_[i]->setText(QString::fromStdString(NumberText(SlipSettings().*kSlipFieldTable[i].value)));
  }
  Explain(explained_);
  RefreshPreview();
}

void frmSetPrinter::txtInput_KeyUp(int index) {
  SlipSettings().*kSlipFieldTable[index].value = LenientNumber(txtInput_[index]->text().toStdString());
  Explain(index);
  RefreshPreview();
}

void frmSetPrinter::txtInput_GotFocus(int index) {
  Explain(index);
}

void frmSetPrinter::Explain(int index) {
  explained_ = index;
  picPreview_->Highlight(index);
  if (index < 0) {
    return;
  }
  const SlipField& field = kSlipFieldTable[index];
  const double twips = SlipSettings().*field.value;
  lblField_->setText(QString("%1 %2  ＝ %3 公釐")
                         .arg(QString::fromUtf8(field.label), QString::fromStdString(NumberText(twips)))
                         .arg(twips / kTwipsPerMillimetre, 0, 'f', 1) +
                     (field.value == &SlipPrinterSettings::play ? " (不影響黑點)" : ""));
}

void frmSetPrinter::RefreshPreview() {
  if (previewed_) {
    picPreview_->ShowSlip(type_, SlipSettings(), DefaultPaper());
  }
}

void frmSetPrinter::chkZoom_Click() {
  picPreview_->Zoom(chkZoom_->isChecked());
}

void frmSetPrinter::cmdPreview_Click() {
  previewed_ = true;
  RefreshPreview();
}

void frmSetPrinter::cmdPrint_Click() {
  PrintJob job("測試列印");
  const PaperSize paper = job.Paper();
  job.Draw(TestSheet(type_, SlipSettings(), paper.width, paper.height));
  job.End();
}

void frmSetPrinter::cmdSave_Click() {
  if (!Question(this, "確定要將此設定存檔 ?", "列印設定存檔")) {
    return;
  }
  std::array<std::string, kSlipFields> values;
  for (std::size_t i = 0; i < values.size(); ++i) {
    txtInput_[i]->setProperty("tag", txtInput_[i]->text());
    values[i] = txtInput_[i]->text().toStdString();
  }
  SaveSlipSettings(settings_folder_, type_, values);
}

void frmSetPrinter::cmdCancel_Click() {
  close();
}

}  // namespace marlevo
