// The largest print there is: all 23,000 tickets of the five kinds on 4,501 slips in five jobs, into PDF files. The
// yardstick draws the very same rectangles, computed before, with a painter and nothing else.
#include <QApplication>
#include <QPainter>
#include <QPrinter>
#include <QTemporaryDir>

#include "platform/printer/printer.h"
#include "printing/slip_marks.h"
#include "support/offscreen.h"
#include "support/yardstick.h"

namespace {

using namespace marlevo;

TicketList AllTickets(int kind) {
  const int digits = DigitColumns(kind);
  TicketList tickets(digits == 4 ? 10000 : 1000);
  for (std::size_t i = 0; i < tickets.size(); ++i) {
    std::size_t rest = i;
    for (int column = digits - 1; column >= 0; --column, rest /= 10) {
      tickets[i].cells[column] = static_cast<char>('0' + rest % 10);
    }
  }
  return tickets;
}

std::vector<PageDrawing> Slips(int kind, const TicketList& tickets) {
  return SlipMarks(tickets, {SlipTypeOfKind(kind), 1, static_cast<int>(tickets.size()), 3, 1, false}, SlipSettings());
}

void PrintBare(const std::vector<std::vector<QRectF>>& pages, const QString& file) {
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(file);
  printer.setFullPage(true);
  printer.setPageMargins(QMarginsF());
  printer.setResolution(1440);
  QPainter painter(&printer);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::black);
  for (std::size_t page = 0; page < pages.size(); ++page) {
    if (page > 0) {
      printer.newPage();
    }
    painter.drawRects(pages[page].data(), static_cast<int>(pages[page].size()));
  }
}

}  // namespace

int main(int argc, char** argv) {
  marlevo::bench::UseNoScreen();
  const QApplication application(argc, argv);
  const QTemporaryDir folder;
  std::array<TicketList, kBetKinds> lists;
  std::array<std::vector<std::vector<QRectF>>, kBetKinds> rectangles;
  std::size_t slips = 0;
  for (int kind = 0; kind < kBetKinds; ++kind) {
    lists[kind] = AllTickets(kind);
    for (const PageDrawing& page : Slips(kind, lists[kind])) {
      std::vector<QRectF>& bare = rectangles[kind].emplace_back();
      for (const Mark& mark : page.marks) {
        bare.emplace_back(mark.x, mark.y, mark.width, mark.height);
      }
    }
    slips += rectangles[kind].size();
  }
  std::printf("%zu slips\n", slips);

  const auto print = [&] {
    for (int kind = 0; kind < kBetKinds; ++kind) {
      PrintJob job("bench", folder.filePath(QString("%1.pdf").arg(kind)).toStdString());
      for (const PageDrawing& page : Slips(kind, lists[kind])) {
        job.Draw(page);
        job.NewPage();
      }
      job.End();
    }
  };
  const auto print_bare = [&] {
    for (std::size_t kind = 0; kind < rectangles.size(); ++kind) {
      PrintBare(rectangles[kind], folder.filePath(QString("bare%1.pdf").arg(kind)));
    }
  };
  bench::YardstickTable table;
  table.Row("23,000 tickets onto slips", {{}, print}, {{}, print_bare}, 1.3, 30);
  return table.ExitStatus();
}
