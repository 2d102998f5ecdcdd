#include "printing/frmPrint.h"

#include <QCheckBox>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "platform/base/text.h"
#include "platform/printer/printer.h"
#include "printing/print_button.h"
#include "printing/print_progress.h"
#include "printing/slip_settings_file.h"
#include "ui/frmMessage.h"
#include "ui/select_all_edit.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {

// Widths of the columns, in widths of the digit "0".
constexpr int kKindWidth = 14;
constexpr int kRangeWidth = 22;
constexpr int kCountWidth = 11;
constexpr int kMultiDrawWidth = 16;

int TicketCount(const KindList& list) {
  return static_cast<int>(list.tickets.size());
}

QHBoxLayout* NewRowLayout(QWidget* row) {
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins(12, 6, 12, 6);
  layout->setSpacing(12);
  return layout;
}

// Adds a place of fixed width to a row, so that the columns of all rows stand under one another. Returns the layout of
// the place.
QHBoxLayout* NewColumn(QHBoxLayout* row, int digits) {
  auto* const place = new QWidget(row->parentWidget());
  place->setFixedWidth(digits * place->fontMetrics().horizontalAdvance('0'));
  auto* const layout = new QHBoxLayout(place);
  layout->setContentsMargins(0, 0, 0, 0);
  row->addWidget(place);
  return layout;
}

}  // namespace

frmPrint::frmPrint(QWidget* parent, const CurrentList& list, std::filesystem::path settings_folder)
    : QDialog(parent), list_(list), settings_folder_(std::move(settings_folder)) {
  setObjectName("frmPrint");
  setWindowTitle("列  印");
  Form_Load();
}

void frmPrint::SetUpWidgets() {
  QWidget* const heading = NewHeading();
  for (int kind = 0; kind < kBetKinds; ++kind) {
    rows_[kind] = NewKindRow(kind);
  }
  for (int i = 0; i < 2; ++i) {
    QRadioButton*& option = Option1_[i];
    option = Named(new QRadioButton(i == 0 ? "全部列印" : "部份列印", this), ElementName("Option1", i));
    connect(option, &QRadioButton::clicked, this, &frmPrint::Option1_Click);
  }
  chkPage_ = Named(new QCheckBox("印出序號", this), "chkPage");
  chkPage_->setToolTip("在投注單的每一注旁印上它在清單中的序號");
  lblSlips_ = NewLabel(this, "lblSlips", {});
  QPushButton* const cmdPrint = NewPrintButton(this, "列  印", [this] { cmdPrint_Click(); });
  QPushButton* const cmdCancel = NewButton(this, "cmdCancel", "離  開", &frmPrint::cmdCancel_Click);

  auto* const count = new QGroupBox("列印張數", this);
  auto* const options = new QHBoxLayout(count);
  options->setSpacing(24);
  options->addWidget(Option1_[0]);
  options->addWidget(Option1_[1]);
  options->addStretch();
  options->addWidget(chkPage_);

  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(12);
  buttons->addWidget(lblSlips_, 1);
  buttons->addWidget(cmdPrint);
  buttons->addWidget(cmdCancel);

  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(20, 16, 20, 16);
  column->setSpacing(8);
  column->setSizeConstraint(QLayout::SetFixedSize);
  column->addWidget(count);
  column->addSpacing(4);
  column->addWidget(heading);
  for (const KindRow& row : rows_) {
    column->addWidget(row.fraPlay);
  }
  column->addSpacing(8);
  column->addLayout(buttons);
}

QWidget* frmPrint::NewHeading() {
  auto* const heading = new QWidget(this);
  QHBoxLayout* const row = NewRowLayout(heading);
  const std::pair<const char*, int> columns[] = {
      {"種類", kKindWidth}, {"列印範圍", kRangeWidth}, {"張數", kCountWidth}, {"長期投注", kMultiDrawWidth}};
  for (const auto& [caption, width] : columns) {
    NewColumn(row, width)->addWidget(new QLabel(caption, heading));
  }
  return heading;
}

frmPrint::KindRow frmPrint::NewKindRow(int kind) {
  auto* const frame = Named(new QFrame(this), ElementName("fraPlay", kind));
  frame->setFrameShape(QFrame::StyledPanel);
  KindRow row;
  row.kind = kind;
  row.list = &list_.kinds[kind];
  row.fraPlay = frame;
  row.chkPlay = Named(new QCheckBox(QString::fromUtf8(kSlipKindNames[kind]), frame), ElementName("chkPlay", kind));
  row.txtStart = Named(new SelectAllEdit(frame), ElementName("txtStart", kind));
  row.txtEnd = Named(new SelectAllEdit(frame), ElementName("txtEnd", kind));
  row.lblMax = NewLabel(frame, ElementName("lblMax", kind), {});
  row.cboMD = new DropDownList(frame, ElementName("cboMD", kind));

  QHBoxLayout* const columns = NewRowLayout(frame);
  NewColumn(columns, kKindWidth)->addWidget(row.chkPlay);
  QHBoxLayout* const range = NewColumn(columns, kRangeWidth);
  range->addWidget(row.txtStart);
  range->addWidget(new QLabel("至", frame));
  range->addWidget(row.txtEnd);
  NewColumn(columns, kCountWidth)->addWidget(row.lblMax);
  NewColumn(columns, kMultiDrawWidth)->addWidget(row.cboMD);

  for (QLineEdit* const box : {row.txtStart, row.txtEnd}) {
    box->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]*"), box));
  }
  connect(row.chkPlay, &QCheckBox::clicked, this, &frmPrint::ShowSlipCount);
  connect(row.txtStart, &QLineEdit::textChanged, this, &frmPrint::ShowSlipCount);
  connect(row.txtEnd, &QLineEdit::textChanged, this, &frmPrint::ShowSlipCount);
  return row;
}

void frmPrint::Form_Load() {
  SetUpWidgets();
  for (const KindRow& row : rows_) {
    for (const std::string_view draws : kMultiDraws) {
      row.cboMD->addItem(QString::fromUtf8(draws));
    }
    row.fraPlay->setVisible(row.list->ticked);
    if (row.list->ticked) {
      const QString count = QString::number(TicketCount(*row.list));
      row.lblMax->setText("(" + count + ")");
      row.lblMax->setProperty("tag", count);
      row.txtStart->setText("1");
      row.txtEnd->setText(count);
    }
  }
  Option1_[0]->setChecked(true);
}

void frmPrint::Option1_Click() {
  ShowSlipCount();
}

std::array<KindChoice, kBetKinds> frmPrint::Choices() const {
  std::array<KindChoice, kBetKinds> choices;
  std::ranges::transform(rows_, choices.begin(), [](const KindRow& row) {
    return KindChoice{row.chkPlay->isChecked(), LenientNumber(row.txtStart->text().toStdString()),
                      LenientNumber(row.txtEnd->text().toStdString()), TicketCount(*row.list)};
  });
  return choices;
}

SlipOrder frmPrint::OrderOf(const KindRow& row) const {
  const bool all = Option1_[0]->isChecked();
  return {SlipTypeOfKind(row.kind),
          all ? 1 : LenientInteger(row.txtStart->text().toStdString()),
          all ? TicketCount(*row.list) : LenientInteger(row.txtEnd->text().toStdString()),
          row.list->multiplier,
          row.cboMD->currentIndex(),
          chkPage_->isChecked()};
}

int frmPrint::SlipsOf(const KindRow& row) const {
  if (row.fraPlay->isHidden() || !row.chkPlay->isChecked()) {
    return 0;
  }
  return SlipCount(TicketCount(*row.list), OrderOf(row));
}

void frmPrint::ShowSlipCount() {
  QStringList needed;
  if (CheckPrintChoices(Option1_[0]->isChecked(), Choices()) == 0) {
    for (const SlipType type : {SlipType::kFourDigit, SlipType::kThreeDigit}) {
      int slips = 0;
      for (const KindRow& row : rows_) {
        slips += SlipTypeOfKind(row.kind) == type ? SlipsOf(row) : 0;
      }
      if (slips > 0) {
        needed += QString("%1投注單 %2 張").arg(QString::fromUtf8(SlipCaption(type))).arg(slips);
      }
    }
  }
  lblSlips_->setText(needed.isEmpty() ? QString() : "需要 " + needed.join("、"));
}

void frmPrint::cmdPrint_Click() {
  const int code = CheckPrintChoices(Option1_[0]->isChecked(), Choices());
  if (code != 0) {
    ShowMessage(this, QString::fromStdString(PrintChoicesMessage(code)));
    return;
  }
  PrintSlips();
}

void frmPrint::cmdCancel_Click() {
  close();
}

void frmPrint::PrintSlips() {
  int slips = 0;
  for (const KindRow& row : rows_) {
    slips += SlipsOf(row);
  }
  PrintProgress progress(this, slips);
  for (const KindRow& row : rows_) {
    if (progress.Cancelled()) {
      break;
    }
    if (SlipsOf(row) == 0) {
      continue;
    }
    const SlipOrder order = OrderOf(row);
    LoadSlipSettings(settings_folder_, order.type);
    PrintJob job(row.chkPlay->text().toStdString());
    for (const PageDrawing& slip : SlipMarks(row.list->tickets, order, SlipSettings())) {
      if (!progress.NextPage()) {
        break;
      }
      job.Draw(slip);
      job.NewPage();
    }
    job.End();
  }
  progress.Finish();
}

}  // namespace marlevo
