#include "printing/frmPrint.h"

#include <QCheckBox>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>
#include <numeric>
#include <utility>

#include "platform/printer/printer.h"
#include "platform/text/text.h"
#include "printing/print_button.h"
#include "printing/print_progress.h"
#include "printing/slip_settings_file.h"
#include "ui/frmMessage.h"
#include "ui/select_all_edit.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {

// Columns of the rows of kinds, in widths of the digit "0".
constexpr int kKindWidth = 14;
constexpr int kRangeWidth = 22;
constexpr int kCountWidth = 11;
constexpr int kMultiDrawWidth = 16;

QString QText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

double Number(const QLineEdit* box) {
  return LenientNumber(box->text().toStdString());
}

QHBoxLayout* NewRowLayout(QWidget* row) {
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins(12, 6, 12, 6);
  layout->setSpacing(12);
  return layout;
}

// A place of fixed width in a row, so that the rows stand under one another. Returns its layout.
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
  QWidget* const heading = NewHeading();
  for (int kind = 0; kind < kBetKinds; ++kind) {
    rows_[static_cast<std::size_t>(kind)] = NewKindRow(kind);
  }
  for (int i = 0; i < 2; ++i) {
    QRadioButton*& option = Option1_[static_cast<std::size_t>(i)];
    option = Named(new QRadioButton(i == 0 ? "全部列印" : "部份列印", this), ElementName("Option1", i));
    connect(option, &QRadioButton::clicked, this, &frmPrint::Option1_Click);
  }
  chkPage_ = Named(new QCheckBox("印出序號", this), "chkPage");
  chkPage_->setToolTip("在投注單的每一注旁印上它在清單中的序號");
  lblSlips_ = NewLabel(this, "lblSlips", {});
  auto* const cmdPrint = new PrintButton(this, "列  印", [this] { cmdPrint_Click(); });
  QPushButton* const cmdCancel = NewButton(this, "cmdCancel", "離  開");
  connect(cmdCancel, &QPushButton::clicked, this, &frmPrint::cmdCancel_Click);
  LayOut(heading, cmdPrint, cmdCancel);
  Form_Load();
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
  row.fraPlay = frame;
  row.chkPlay =
      Named(new QCheckBox(QText(kSlipKindNames[static_cast<std::size_t>(kind)]), frame), ElementName("chkPlay", kind));
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
  connect(row.chkPlay, &QCheckBox::clicked, this, &frmPrint::chkPlay_Click);
  connect(row.txtStart, &QLineEdit::textChanged, this, &frmPrint::txtStart_Change);
  connect(row.txtEnd, &QLineEdit::textChanged, this, &frmPrint::txtEnd_Change);
  return row;
}

void frmPrint::LayOut(QWidget* heading, PrintButton* cmdPrint, QWidget* cmdCancel) {
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

void frmPrint::Form_Load() {
  for (int kind = 0; kind < kBetKinds; ++kind) {
    const KindRow& row = rows_[static_cast<std::size_t>(kind)];
    const KindList& of_kind = list_.kinds[static_cast<std::size_t>(kind)];
    row.fraPlay->setVisible(of_kind.ticked);
    if (of_kind.ticked) {
      const QString count = QString::number(of_kind.tickets.size());
      row.lblMax->setText("(" + count + ")");
      row.lblMax->setProperty("tag", count);
      row.txtStart->setText("1");
      row.txtEnd->setText(count);
    }
  }
  for (const KindRow& row : rows_) {
    row.chkPlay->setChecked(false);
    row.cboMD->clear();
    for (const std::string_view draws : kMultiDraws) {
      row.cboMD->addItem(QText(draws));
    }
    row.cboMD->setCurrentText("不加注");
  }
  Option1_[0]->setChecked(true);
}

void frmPrint::Option1_Click() {
  ShowSlipCount();
}

void frmPrint::chkPlay_Click() {
  ShowSlipCount();
}

void frmPrint::txtStart_Change() {
  ShowSlipCount();
}

void frmPrint::txtEnd_Change() {
  ShowSlipCount();
}

std::array<KindChoice, kBetKinds> frmPrint::Choices() const {
  std::array<KindChoice, kBetKinds> choices;
  for (std::size_t kind = 0; kind < choices.size(); ++kind) {
    const KindRow& row = rows_[kind];
    choices[kind] = {row.chkPlay->isChecked(), Number(row.txtStart), Number(row.txtEnd),
                     row.lblMax->property("tag").toInt()};
  }
  return choices;
}

SlipOrder frmPrint::OrderOf(int kind) const {
  const KindRow& row = rows_[static_cast<std::size_t>(kind)];
  const bool all = Option1_[0]->isChecked();
  return {SlipTypeOfKind(kind),
          all ? 1 : LenientInteger(row.txtStart->text().toStdString()),
          LenientInteger((all ? row.lblMax->property("tag").toString() : row.txtEnd->text()).toStdString()),
          list_.kinds[static_cast<std::size_t>(kind)].multiplier,
          row.cboMD->currentIndex(),
          chkPage_->isChecked()};
}

int frmPrint::SlipsOf(int kind) const {
  const KindRow& row = rows_[static_cast<std::size_t>(kind)];
  if (row.fraPlay->isHidden() || !row.chkPlay->isChecked()) {
    return 0;
  }
  return SlipCount(static_cast<int>(list_.kinds[static_cast<std::size_t>(kind)].tickets.size()), OrderOf(kind));
}

void frmPrint::ShowSlipCount() {
  int slips[2] = {};
  if (CheckPrintChoices(Option1_[0]->isChecked(), Choices()) == 0) {
    for (int kind = 0; kind < kBetKinds; ++kind) {
      slips[SlipTypeOfKind(kind) == SlipType::kThreeDigit ? 1 : 0] += SlipsOf(kind);
    }
  }
  QStringList needed;
  for (int i = 0; i < 2; ++i) {
    if (slips[i] > 0) {
      needed += QString("%1星彩投注單 %2 張").arg(i == 0 ? 4 : 3).arg(slips[i]);
    }
  }
  lblSlips_->setText(needed.isEmpty() ? QString() : "需要 " + needed.join("、"));
}

void frmPrint::cmdPrint_Click() {
  const int code = CheckPrintChoices(Option1_[0]->isChecked(), Choices());
  if (code != 0) {
    ShowMessage(this, QText(PrintChoicesMessage(code)));
    return;
  }
  PrintSlips();
}

void frmPrint::cmdCancel_Click() {
  close();
}

void frmPrint::PrintSlips() {
  std::array<int, kBetKinds> slips;
  for (int kind = 0; kind < kBetKinds; ++kind) {
    slips[static_cast<std::size_t>(kind)] = SlipsOf(kind);
  }
  PrintProgress progress(this, std::accumulate(slips.begin(), slips.end(), 0));
  for (int kind = 0; kind < kBetKinds && !progress.Cancelled(); ++kind) {
    if (slips[static_cast<std::size_t>(kind)] == 0) {
      continue;
    }
    const SlipOrder order = OrderOf(kind);
    LoadSlipSettings(settings_folder_, SlipName(order.type));
    PrintJob job{std::string(kSlipKindNames[static_cast<std::size_t>(kind)])};
    for (const PageDrawing& slip :
         SlipMarks(list_.kinds[static_cast<std::size_t>(kind)].tickets, order, SlipSettings())) {
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
