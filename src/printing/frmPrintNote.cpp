#include "printing/frmPrintNote.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "platform/base/text.h"
#include "printing/memo_sheet.h"
#include "printing/print_button.h"
#include "printing/print_progress.h"
#include "ui/appearance.h"
#include "ui/manual.h"
#include "ui/scrolling.h"
#include "ui/select_all_edit.h"
#include "ui/widgets.h"

namespace marlevo {

namespace {

constexpr int kPageCounts = 20;

// Shows the memo sheet on the screen, smaller where the window is low.
class SheetPicture : public QWidget {
 public:
  explicit SheetPicture(QWidget* parent) : QWidget(parent), sheet_(MemoSheet()) {
    setObjectName("picNote");
    setMinimumWidth(kWidth / 2);
    setMaximumSize(sizeHint());
  }

  QSize sizeHint() const override { return {kWidth, static_cast<int>(kWidth * sheet_.height / sheet_.width)}; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QRect paper({}, sizeHint().scaled(size(), Qt::KeepAspectRatio));
    paper.moveCenter(rect().center());
    QPainter painter(this);
    painter.fillRect(paper, Qt::white);
    painter.setPen(QColor::fromRgb(colours::kLine));
    painter.drawRect(paper.adjusted(0, 0, -1, -1));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(paper.topLeft());
    painter.scale(paper.width() / sheet_.width, paper.height() / sheet_.height);
    sheet_.draw(painter);
  }

 private:
  static constexpr int kWidth = 340;

  Picture sheet_;
};

}  // namespace

frmPrintNote::frmPrintNote(QWidget* parent) : QDialog(parent) {
  setObjectName("frmPrintNote");
  setWindowTitle("4星彩包牌便條紙列印");
  SetManualSection(*this, "便條紙");
  Form_Load();
}

void frmPrintNote::SetUpWidgets() {
  cboPage_ = new DropDownList(this, "cboPage");
  cboPage_->setAccessibleName("列印頁數");
  cboPage_->setLineEdit(new SelectAllEdit(this));
  cboPage_->setInsertPolicy(QComboBox::NoInsert);
  QPushButton* const cmdPrint = NewPrintButton(this, "列印便條紙", [this] { cmdPrint_Click(); });
  QPushButton* const cmdCancel = NewButton(this, "cmdCancel", "離  開", &frmPrintNote::cmdCancel_Click);

  auto* const pages = new QHBoxLayout;
  pages->addWidget(new QLabel("列印頁數", this));
  pages->addWidget(cboPage_);
  pages->addWidget(new QLabel("頁 (每頁四張)", this));
  pages->addStretch();
  auto* const right = new QVBoxLayout;
  right->addLayout(pages);
  right->addStretch();
  right->addWidget(cmdPrint);
  right->addWidget(cmdCancel);
  auto* const columns = new QHBoxLayout(this);
  columns->addWidget(new SheetPicture(this));
  columns->addSpacing(distances::kWide);
  columns->addLayout(right);
}

void frmPrintNote::Form_Load() {
  SetUpWidgets();
  for (int pages = 1; pages <= kPageCounts; ++pages) {
    cboPage_->addItem(QString::number(pages));
  }
  cboPage_->setCurrentText("1");
  cboPage_->setFocus();
  FitScreen(*this, sizeHint());
}

void frmPrintNote::cmdCancel_Click() {
  close();
}

void frmPrintNote::cmdPrint_Click() {
  const int pages = LenientInteger(cboPage_->currentText().toStdString());
  if (pages <= 0) {
    return;
  }
  const Picture sheet = MemoSheet();
  PrintJob job("便條紙");
  PrintProgress progress(this, pages);
  for (int page = 0; page < pages && progress.NextPage(); ++page) {
    const PaperSize paper = job.Paper();
    // Each sheet is half as wide and half as high as the paper, in whole twips; the second one begins one twip further.
    const int width = paper.width / 2;
    const int height = paper.height / 2;
    for (const QPoint corner :
         {QPoint(0, 0), QPoint(width + 1, 0), QPoint(0, height + 1), QPoint(width + 1, height + 1)}) {
      job.Draw(sheet, QRectF(corner, QSizeF(width, height)));
    }
    job.NewPage();
  }
  job.End();
  progress.Finish();
}

}  // namespace marlevo
