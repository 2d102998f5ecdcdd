#include "support/printed_pages.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QRegularExpression>
#include <QTransform>
#include <sstream>

namespace marlevo::test {

namespace {

// The rectangles that the drawing operators of one page fill.
std::vector<Mark> FilledRectangles(std::istream& content, double page_height) {
  std::vector<Mark> filled;
  std::vector<Mark> path;
  std::vector<double> numbers;
  std::vector<QTransform> saved;
  QTransform to_points;
  for (std::string word; content >> word && word != "endstream";) {
    char* end = nullptr;
    const double number = std::strtod(word.c_str(), &end);
    if (*end == 0) {
      numbers.push_back(number);
      continue;
    }
    if (word == "q") {
      saved.push_back(to_points);
    } else if (word == "Q" && !saved.empty()) {
      to_points = saved.back();
      saved.pop_back();
    } else if (word == "cm" && numbers.size() == 6) {
      to_points = QTransform(numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]) * to_points;
    } else if (word == "re" && numbers.size() == 4) {
      const QRectF box = to_points.mapRect(QRectF(numbers[0], numbers[1], numbers[2], numbers[3]).normalized());
      path.push_back({box.left() * kTwipsPerPoint, (page_height - box.bottom()) * kTwipsPerPoint,
                      box.width() * kTwipsPerPoint, box.height() * kTwipsPerPoint});
    } else if (word == "f" || word == "f*") {
      filled.insert(filled.end(), path.begin(), path.end());
      path.clear();
    } else if (word == "n" || word == "S" || word == "W") {
      path.clear();
    }
    numbers.clear();
  }
  return filled;
}

}  // namespace

QString OutputOf(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  EXPECT_TRUE(process.waitForFinished(60000) && process.exitCode() == 0)
      << program.toStdString() << ": " << process.readAllStandardError().toStdString();
  return process.readAllStandardOutput();
}

std::vector<PrintedPage> ReadPdf(const std::filesystem::path& pdf) {
  const QString file = QString::fromStdString(pdf.string());
  std::istringstream lines(OutputOf("qpdf", {"--qdf", "--object-streams=disable", file, "-"}).toStdString());
  std::vector<PrintedPage> pages;
  for (std::string line; std::getline(lines, line);) {
    if (line == "  /MediaBox [") {
      double box[4] = {};  // left, bottom, right, top
      for (double& side : box) {
        lines >> side;
      }
      pages.push_back({(box[2] - box[0]) * kTwipsPerPoint, (box[3] - box[1]) * kTwipsPerPoint, {}});
    } else if (line.starts_with("%% Contents for page ")) {
      const std::size_t number = std::stoul(line.substr(21));
      while (std::getline(lines, line) && line != "stream") {
      }
      PrintedPage& page = pages.at(number - 1);
      page.marks = FilledRectangles(lines, page.height / kTwipsPerPoint);
    }
  }
  return pages;
}

void ExpectMarks(const PrintedPage& page, const std::vector<Mark>& expected, double tolerance) {
  ASSERT_EQ(page.marks.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_NEAR(page.marks[i].x, expected[i].x, tolerance);
    EXPECT_NEAR(page.marks[i].y, expected[i].y, tolerance);
    EXPECT_NEAR(page.marks[i].width, expected[i].width, tolerance);
    EXPECT_NEAR(page.marks[i].height, expected[i].height, tolerance);
  }
}

std::vector<PageText> ReadPdfWords(const std::filesystem::path& pdf) {
  static const QRegularExpression word(R"re(<word xMin="([\d.]+)" yMin="([\d.]+)"[^>]*>([^<]*)</word>)re");
  const QString output = OutputOf("pdftotext", {"-bbox", QString::fromStdString(pdf.string()), "-"});
  std::vector<PageText> words;
  for (const QRegularExpressionMatch& match : word.globalMatch(output)) {
    words.push_back({match.captured(1).toDouble() * kTwipsPerPoint, match.captured(2).toDouble() * kTwipsPerPoint,
                     match.captured(3).toStdString()});
  }
  return words;
}

}  // namespace marlevo::test
