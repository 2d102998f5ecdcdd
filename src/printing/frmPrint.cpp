#include "printing/frmPrint.h"

#include <QCheckBox>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QScrollArea>
#include <QTime>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "platform/base/text.h"
#include "platform/printer/printer.h"
#include "printing/print_button.h"
#include "printing/print_progress.h"
#include "printing/slip_settings_file.h"
#include "ui/appearance.h"
#include "ui/frmMessage.h"
#include "ui/manual.h"
#include "ui/scrolling.h"
#include "ui/select_all_edit.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {

// Widths of the columns, in widths of the digit "0".
constexpr int kKindWidth = 14;
constexpr int kRangeWidth = 22;
constexpr int kCountWidth = 11;
constexpr int kMultiDrawWidth = 16;
constexpr int kSaidWidth = 44;  // of the lines beside the buttons

// The frame of a kind: a click beside its boxes is a click on its tick box.
class KindFrame : public QFrame {
 public:
  using QFrame::QFrame;

 protected:
  void mousePressEvent(QMouseEvent* event) override { pressed_ = event->button() == Qt::LeftButton; }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (std::exchange(pressed_, false) && rect().contains(event->pos())) {
      auto* const tick = findChild<QCheckBox*>();
      tick->setFocus(Qt::MouseFocusReason);
      tick->click();
    }
  }
  // The second press of a double click is no click of its own.
  void mouseDoubleClickEvent(QMouseEvent*) override {}

 private:
  bool pressed_ = false;
};

// "4星彩投注單 2 張、3星彩投注單 1 張"; types without slips are left out.
QString SlipsText(const std::map<SlipType, int, std::greater<>>& slips, const QString& noun) {
  QStringList texts;
  for (const auto& [type, count] : slips) {
    if (count > 0) {
      texts += QString::fromUtf8(SlipCaption(type)) + noun + QString(" %1 張").arg(count);
    }
  }
  return texts.join("、");
}

int TicketCount(const KindList& list) {
  return static_cast<int>(list.tickets.size());
}

QHBoxLayout* NewRowLayout(QWidget* row) {
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins(distances::kApart, distances::kNear, 0, distances::kNear);
  layout->setSpacing(distances::kApart);
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
  SetManualSection(*this, "印投注單");
  Form_Load();
}

void frmPrint::SetUpWidgets() {
  QWidget* const heading = NewHeading();
  auto* const rows = new QWidget(this);
  for (int kind = 0; kind < kBetKinds; ++kind) {
    rows_[kind] = NewKindRow(rows, kind);
  }
  for (int i = 0; i < 2; ++i) {
    QRadioButton*& option = Option1_[i];
    option = Named(new QRadioButton(i == 0 ? "全部列印" : "部份列印", this), ElementName("Option1", i));
    connect(option, &QRadioButton::clicked, this, &frmPrint::Option1_Click);
  }
  chkPage_ = Named(new QCheckBox("印出序號", this), "chkPage");
  chkPage_->setToolTip("在投注單的每一注旁印上它在清單中的序號");

  auto* const count = new QGroupBox("列印張數", this);
  auto* const options = new QHBoxLayout(count);
  options->setSpacing(distances::kWide);
  options->addWidget(Option1_[0]);
  options->addWidget(Option1_[1]);
  options->addStretch();
  options->addWidget(chkPage_);

  auto* const kinds = new QVBoxLayout(rows);
  kinds->setContentsMargins(0, 0, 0, 0);
  for (const KindRow& row : rows_) {
    kinds->addWidget(row.fraPlay);
  }
  kinds->addStretch();

  auto* const column = new QVBoxLayout(this);
  column->addWidget(count);
  column->addWidget(heading);
  column->addWidget(NewScrollingPart(rows), 1);
  column->addLayout(NewButtons());
}

QLayout* frmPrint::NewButtons() {
  lblSlips_ = NewLabel(this, "lblSlips", {});
  lblPrinter_ = NewLabel(this, "lblPrinter", {});
  lblSent_ = NewLabel(this, "lblSent", {});
  auto* const said = new QVBoxLayout;
  said->setSpacing(distances::kHair);
  for (QLabel* const line : {lblSlips_, lblPrinter_, lblSent_}) {
    line->setFixedWidth(kSaidWidth * fontMetrics().horizontalAdvance('0'));
    said->addWidget(line);
  }
  auto* const buttons = new QHBoxLayout;
  buttons->addLayout(said);
  buttons->addStretch();
  buttons->addWidget(NewPrintButton(this, "列  印", [this] { cmdPrint_Click(); }));
  buttons->addWidget(NewButton(this, "cmdCancel", "離  開", &frmPrint::cmdCancel_Click));
  return buttons;
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

frmPrint::KindRow frmPrint::NewKindRow(QWidget* parent, int kind) {
  auto* const frame = Named(new KindFrame(parent), ElementName("fraPlay", kind));
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
  // Makes room for the scroll bar that a low window has.
  columns->addSpacerItem(new QSpacerItem(distances::kApart, 0, QSizePolicy::Preferred));

  row.txtStart->setAccessibleName(row.chkPlay->text() + " 從");
  row.txtEnd->setAccessibleName(row.chkPlay->text() + " 至");
  row.cboMD->setAccessibleName(row.chkPlay->text() + " 長期投注");
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
  const QString printer = QString::fromStdString(DefaultPrinterName());
  lblPrinter_->setText(printer.isEmpty()
                           ? "沒有預設印表機，請先在系統設定裡設好"
                           : fontMetrics().elidedText("印表機 " + printer, Qt::ElideMiddle, lblPrinter_->width()));
  lblPrinter_->setToolTip(printer);
  FitScreen(*this, sizeHint());
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
  const auto ticked = [](const KindRow& row) { return row.chkPlay->isChecked(); };
  const int code = CheckPrintChoices(Option1_[0]->isChecked(), Choices());
  if (std::ranges::none_of(rows_, ticked)) {
    lblSlips_->setText("請先勾選要印的種類");
  } else if (code != 0) {
    lblSlips_->setText(QString::fromStdString(PrintChoicesMessage(code)));
  } else {
    SlipCounts slips;
    for (const KindRow& row : rows_) {
      slips[SlipTypeOfKind(row.kind)] += SlipsOf(row);
    }
    const QString needed = SlipsText(slips, "投注單");
    lblSlips_->setText(needed.isEmpty() ? "沒有可以印的號碼" : "需要 " + needed);
  }
}

void frmPrint::ShowSent(const SlipCounts& slips) {
  lblSent_->setText(QTime::currentTime().toString("HH:mm:ss") + " 已送出 " + SlipsText(slips, ""));
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
  SlipCounts sent;
  for (const KindRow& row : rows_) {
    if (progress.Cancelled()) {
      break;
    }
    if (SlipsOf(row) == 0) {
      continue;
    }
    const SlipOrder order = OrderOf(row);
    LoadSlipSettings(settings_folder_, order.type);
    const int before = progress.Pages();
    PrintJob job(row.chkPlay->text().toStdString());
    for (const PageDrawing& slip : SlipMarks(row.list->tickets, order, SlipSettings())) {
      if (!progress.NextPage()) {
        break;
      }
      job.Draw(slip);
      job.NewPage();
    }
    job.End();
    sent[order.type] += progress.Pages() - before;
    ShowSent(sent);
  }
  progress.Finish();
}

}  // namespace marlevo
