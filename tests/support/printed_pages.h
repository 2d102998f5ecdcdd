// A PDF as the printer got it, taken apart by qpdf: the filled rectangles of every page, measured on paper.
#pragma once

#include <QStringList>
#include <filesystem>
#include <vector>

#include "platform/printer/page_drawing.h"

namespace marlevo::test {

struct PrintedPage {
  double width = 0;  // twips
  double height = 0;
  std::vector<Mark> marks;  // in twips from the top left corner, in the order of drawing
};

std::vector<PrintedPage> ReadPdf(const std::filesystem::path& pdf);

// The page has exactly these marks in this order, within `tolerance` twips.
void ExpectMarks(const PrintedPage& page, const std::vector<Mark>& expected, double tolerance);

// Words with their top left corners, in reading order (by pdftotext).
std::vector<PageText> ReadPdfWords(const std::filesystem::path& pdf);

// What a program writes to its standard output. Fails the test when the program does.
QString OutputOf(const QString& program, const QStringList& arguments);

}  // namespace marlevo::test
