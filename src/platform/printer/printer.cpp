#include "platform/printer/printer.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPrintEngine>
#include <QPrinter>
#include <QPrinterInfo>
#include <QVarLengthArray>
#include <cmath>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "platform/printer/job_refusal.h"

namespace marlevo {

namespace {

constexpr int kTwipsPerInch = 1440;

// Qt's PDF engine takes two blocks of some 16 MB for every page and frees them when the page is done. By default glibc
// gives such blocks back to the system each time, which takes as long as drawing the page.
void KeepFreedBlocks() {
#ifdef __GLIBC__
  constexpr int kBlock = 32 << 20;
  mallopt(M_MMAP_THRESHOLD, kBlock);
  mallopt(M_TRIM_THRESHOLD, 2 * kBlock);
#endif
}

void GiveBackFreedBlocks() {
#ifdef __GLIBC__
  malloc_trim(0);
#endif
}

QPrinterInfo DefaultPrinter() {
  QPrinterInfo printer = QPrinterInfo::defaultPrinter();
  if (printer.isNull()) {
    throw PrinterError("尋找預設印表機", "預設印表機",
                       QPrinterInfo::availablePrinterNames().isEmpty()
                           ? "系統沒有安裝印表機。請先在系統的印表機設定裡安裝一台，設為預設印表機，再試一次。"
                           : "系統沒有設定預設印表機。請在系統的印表機設定裡選一台作預設印表機，再試一次。",
                       Fault::kExplained);
  }
  return printer;
}

// The order matters: outside full-page mode a printer refuses margins smaller than its own. The margins are set to zero
// because Windows moves the origin by them even in full-page mode; other systems ignore them in that mode.
void SetUpPage(QPrinter& printer, const QPageSize& size, const std::string& name) {
  const auto require = [&](bool done, const std::string& reason) {
    if (!done) {
      throw PrinterError("設定列印頁面", name, reason + "。請換一台印表機，或更新它的驅動程式。", Fault::kExplained);
    }
  };
  printer.setFullPage(true);
  require(printer.fullPage(), "印表機不接受整頁列印");
  require(printer.setPageSize(size), "印表機不接受紙張大小");
  require(printer.setPageOrientation(QPageLayout::Portrait), "印表機不接受紙張方向");
  require(printer.setPageMargins(QMarginsF()), "印表機不接受零邊界");
  printer.setResolution(kTwipsPerInch);
  require(printer.resolution() == kTwipsPerInch, "印表機不接受列印比例");
}

QPageSize PaperOf(const QPrinterInfo& printer) {
  const QPageSize size = printer.defaultPageSize();
  return size.isValid() ? size : QPageSize(QPageSize::A4);
}

PaperSize InTwips(const QSize& points) {
  constexpr int kTwips = static_cast<int>(kTwipsPerPoint);
  return {points.width() * kTwips, points.height() * kTwips};
}

}  // namespace

void DrawPage(QPainter& painter, const PageDrawing& page) {
  QVarLengthArray<QRectF, 64> marks;  // a full slip has 26
  for (const Mark& mark : page.marks) {
    if (FitsAnyPaper(mark)) {
      marks.push_back(QRectF(mark.x, mark.y, mark.width, mark.height).normalized());
    }
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::black);
  painter.drawRects(marks.data(), static_cast<int>(marks.size()));

  if (page.texts.empty()) {
    return;
  }
  QFont font = QGuiApplication::font();
  font.setPixelSize(static_cast<int>(page.text_height));
  painter.setFont(font);
  painter.setPen(Qt::black);
  const double ascent = QFontMetricsF(font, painter.device()).ascent();
  for (const PageText& text : page.texts) {
    if (FitsAnyPaper({text.x, text.y, 0, 0})) {
      painter.drawText(QPointF(text.x, text.y + ascent), QString::fromStdString(text.text));
    }
  }
}

PrintJob::PrintJob(std::string title, std::filesystem::path pdf_file)
    : title_(std::move(title)), pdf_file_(std::move(pdf_file)) {}

PrintJob::~PrintJob() = default;

QPrinter& PrintJob::Printer() {
  if (printer_ == nullptr) {
    std::unique_ptr<QPrinter> printer;
    QPageSize size(QPageSize::A4);
    std::string name;
    if (pdf_file_.empty()) {
      const QPrinterInfo info = DefaultPrinter();
      printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
      size = PaperOf(info);
      name = info.printerName().toStdString();
      // Some queues shrink every page into the printable area, which would move all marks; this option forbids it.
      // Drivers that do not know the option ignore it.
      constexpr auto kQueueOptions = static_cast<QPrintEngine::PrintEnginePropertyKey>(0xfe00);
      printer->printEngine()->setProperty(kQueueOptions, QStringList{"print-scaling", "none"});
    } else {
      printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
      printer->setOutputFormat(QPrinter::PdfFormat);
      printer->setOutputFileName(QString::fromStdU16String(pdf_file_.u16string()));
      name = printer->outputFileName().toStdString();
    }
    SetUpPage(*printer, size, name);
    printer->setDocName(QString::fromStdString(title_));
    printer_ = std::move(printer);
  }
  return *printer_;
}

PaperSize PrintJob::Paper() {
  return InTwips(Printer().pageLayout().fullRectPoints().size());
}

QPainter& PrintJob::PainterOnPage() {
  QPrinter& printer = Printer();
  if (painter_ == nullptr) {
    KeepFreedBlocks();
    auto painter = std::make_unique<QPainter>();
    if (!painter->begin(&printer)) {
      throw PrinterError("開始列印", printer.printerName().toStdString(),
                         "印表機無法開始列印工作。請檢查印表機的電源、連線和紙張，再試一次。", Fault::kExplained);
    }
    painter_ = std::move(painter);
  } else if (!on_page_ && !printer.newPage()) {
    throw PrinterError("換頁", printer.printerName().toStdString(),
                       "印表機無法開始新的一頁。請檢查印表機的電源、連線和紙張，再試一次。", Fault::kExplained);
  }
  on_page_ = true;
  return *painter_;
}

void PrintJob::Draw(const PageDrawing& page) {
  if (!page.IsEmpty()) {
    DrawPage(PainterOnPage(), page);
  }
}

void PrintJob::Draw(const Picture& picture, const QRectF& target) {
  QPainter& painter = PainterOnPage();
  painter.save();
  painter.translate(target.topLeft());
  painter.scale(target.width() / picture.width, target.height() / picture.height);
  picture.draw(painter);
  painter.restore();
}

void PrintJob::End() {
  if (painter_ == nullptr) {
    return;
  }
  const std::string name = printer_->printerName().toStdString();
  const bool ended = painter_->end();
  const std::string refusal = pdf_file_.empty() ? JobRefusal() : std::string();
  painter_.reset();
  printer_.reset();
  GiveBackFreedBlocks();
  on_page_ = false;
  if (!refusal.empty()) {
    throw PrinterError("送出列印工作", name, refusal, Fault::kPrinter);
  }
  if (!ended) {
    throw PrinterError("送出列印工作", name, "印表機無法結束列印工作。請檢查印表機的電源、連線和紙張，再試一次。",
                       Fault::kExplained);
  }
}

std::string DefaultPrinterName() {
  return QPrinterInfo::defaultPrinter().printerName().toStdString();
}

PaperSize DefaultPaper() {
  return InTwips(PaperOf(QPrinterInfo::defaultPrinter()).sizePoints());
}

}  // namespace marlevo
