// The printer service: pages in twips from the paper's corner on the default system printer. Nothing else in the system
// prints.
#pragma once

#include <QRectF>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/base/operation_error.h"
#include "platform/printer/page_drawing.h"

class QPainter;
class QPrinter;

namespace marlevo {

// Draws a page with a painter whose unit is the twip. Screen, PDF and paper are all drawn by this function. Marks and
// texts are opaque black without outline or smoothing, because anything transparent
// makes Windows print the page as a bitmap. Marks and texts for which FitsAnyPaper is false are left out.
void DrawPage(QPainter& painter, const PageDrawing& page);

// A drawing that is sharp at any size. `draw` fills the rectangle from (0, 0) to (width, height), which PrintJob::Draw
// stretches to the place on the paper.
struct Picture {
  double width;
  double height;
  std::function<void(QPainter&)> draw;
};

// Whole twips.
struct PaperSize {
  int width;
  int height;
};

// One job of any number of pages on the printer's default paper. It begins when something is drawn, and a page begins
// when something is drawn on it: a job without drawings is never sent, and no blank page ends one.
//
// Every function throws PrinterError: no printer installed, paper or scale refused, job refused. A job is never turned
// into a file behind the operator's back.
class PrintJob {
 public:
  // `title` names the job in the system's queue. With `pdf_file` the pages go into that file instead of the printer
  // (for measuring what would be printed).
  explicit PrintJob(std::string title, std::filesystem::path pdf_file = {});
  // Ends the job like End, but cannot report that the print system refused it.
  ~PrintJob();

  // The paper that will be printed on, without any margin.
  PaperSize Paper();

  void Draw(const PageDrawing& page);
  void Draw(const Picture& picture, const QRectF& target);
  // What is drawn next begins a page.
  void NewPage() { on_page_ = false; }

  // Hands the job to the system. To cancel, stop drawing and end: drivers send pages as they come, so what was drawn
  // goes out.
  void End();

 private:
  QPrinter& Printer();
  QPainter& PainterOnPage();

  std::string title_;
  std::filesystem::path pdf_file_;
  std::unique_ptr<QPrinter> printer_;
  std::unique_ptr<QPainter> painter_;
  bool on_page_ = false;
};

// The name of the default printer; empty when there is none.
std::string DefaultPrinterName();

// The default printer's paper; A4 when there is no printer.
PaperSize DefaultPaper();

}  // namespace marlevo
