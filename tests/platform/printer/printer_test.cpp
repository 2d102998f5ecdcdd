#include "platform/printer/printer.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QTemporaryDir>
#include <cmath>
#include <limits>

#include "support/printed_pages.h"

namespace marlevo {
namespace {

class PrintJobIntoPdf : public testing::Test {
 protected:
  QTemporaryDir folder_;
  std::filesystem::path file_ = folder_.filePath("job.pdf").toStdString();
};

TEST_F(PrintJobIntoPdf, PutsMarksAndTextsWhereTheyBelong) {
  PrintJob job("測試", file_);
  const PageDrawing page = {.marks = {{0, 0, 60, 60}, {4300.5, 1270.25, 180, 120}, {9000, 16000, -100, -50}},
                            .texts = {{5000, 3000, "12"}, {5000, 8000, "紙張"}}};
  job.Draw(page);
  EXPECT_EQ(job.Paper().width, 11900);
  EXPECT_EQ(job.Paper().height, 16840);
  job.End();

  const auto pages = test::ReadPdf(file_);
  ASSERT_EQ(pages.size(), 1U);
  EXPECT_EQ(pages[0].width, 11900);
  EXPECT_EQ(pages[0].height, 16840);
  const std::vector<Mark> expected = {page.marks[0], page.marks[1], {8900, 15950, 100, 50}};
  ASSERT_EQ(pages[0].marks.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_NEAR(pages[0].marks[i].x, expected[i].x, 0.1);
    EXPECT_NEAR(pages[0].marks[i].y, expected[i].y, 0.1);
    EXPECT_NEAR(pages[0].marks[i].width, expected[i].width, 0.1);
    EXPECT_NEAR(pages[0].marks[i].height, expected[i].height, 0.1);
  }
  const auto words = test::ReadPdfWords(file_);
  ASSERT_EQ(words.size(), 2U);
  for (std::size_t i = 0; i < words.size(); ++i) {
    EXPECT_EQ(words[i].text, page.texts[i].text);
    EXPECT_NEAR(words[i].x, 5000, 40);
    EXPECT_NEAR(words[i].y, page.texts[i].y, 60);
  }
}

TEST_F(PrintJobIntoPdf, BeginsPagesOnlyWhenSomethingIsDrawn) {
  PrintJob job("測試", file_);
  job.NewPage();
  job.Draw(PageDrawing{});
  job.End();
  EXPECT_FALSE(std::filesystem::exists(file_));
  EXPECT_EQ(job.Pages(), 0);

  const PageDrawing mark = {.marks = {{100, 100, 60, 60}}, .texts = {}};
  job.Draw(mark);
  job.Draw(mark);
  job.NewPage();
  job.NewPage();
  job.Draw(Picture{10, 20, [](QPainter& painter) { painter.fillRect(0, 0, 5, 20, Qt::black); }},
           QRectF(1000, 2000, 300, 400));
  job.NewPage();
  job.End();
  const auto pages = test::ReadPdf(file_);
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_EQ(job.Pages(), 2);
  EXPECT_EQ(pages[0].marks.size(), 2U);
  ASSERT_EQ(pages[1].marks.size(), 1U);
  EXPECT_NEAR(pages[1].marks[0].x, 1000, 0.5);
  EXPECT_NEAR(pages[1].marks[0].width, 150, 0.5);
  EXPECT_NEAR(pages[1].marks[0].height, 400, 0.5);
}

TEST_F(PrintJobIntoPdf, LeavesOutMarksThatNoPaperHolds) {
  const double largest = std::numeric_limits<double>::max();
  PrintJob job("測試", file_);
  job.Draw(PageDrawing{
      .marks = {{largest, 0, 1, 1}, {0, 0, -largest, 1}, {NAN, 0, 1, 1}, {0, INFINITY, 1, 1}, {7, 8, 9, 10}},
      .texts = {{largest, NAN, "1"}}});
  job.End();
  const auto pages = test::ReadPdf(file_);
  ASSERT_EQ(pages.size(), 1U);
  ASSERT_EQ(pages[0].marks.size(), 1U);
  EXPECT_NEAR(pages[0].marks[0].x, 7, 0.1);
}

TEST(PrintJob, WithoutPrinterFailsAndMakesNoFile) {
  PrintJob job("測試");
  job.End();  // nothing drawn, nothing asked for
  try {
    job.Draw(PageDrawing{.marks = {{0, 0, 60, 60}}, .texts = {}});
    FAIL() << "something was printed";
  } catch (const PrinterError& error) {
    EXPECT_EQ(error.Subject(), "預設印表機");
    EXPECT_STREQ(error.what(), "系統沒有安裝印表機");
  }
  EXPECT_EQ(DefaultPaper().width, 11900);
}

TEST(PrintJob, SaysWhenItCannotBegin) {
  PrintJob job("測試", "/nowhere/job.pdf");
  const auto handler = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  EXPECT_THROW(job.Draw(PageDrawing{.marks = {{0, 0, 60, 60}}, .texts = {}}), PrinterError);
  qInstallMessageHandler(handler);  // Qt had its own word on it
}

}  // namespace
}  // namespace marlevo
