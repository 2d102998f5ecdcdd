#include "platform/printer/printer.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QPicture>
#include <QTemporaryDir>
#include <cmath>
#include <limits>

#include "support/printed_pages.h"

namespace marlevo {
namespace {

TEST(PrintJobIntoPdf, PutsMarksTextsAndPicturesWhereTheyBelongAndNoBlankPage) {
  const QTemporaryDir folder;
  const std::filesystem::path file = folder.filePath("job.pdf").toStdString();
  PrintJob job("測試", file);
  EXPECT_EQ(job.Paper().width, 11900);
  EXPECT_EQ(job.Paper().height, 16840);
  job.NewPage();
  job.Draw(PageDrawing{});
  job.End();
  EXPECT_FALSE(std::filesystem::exists(file));

  const PageDrawing page = {.marks = {{0, 0, 60, 60}, {4300.5, 1270.25, 180, 120}, {9000, 16000, -100, -50}},
                            .texts = {{5000, 3000, "12"}, {5000, 8000, "紙張"}}};
  job.Draw(page);
  job.Draw(PageDrawing{.marks = {{100, 100, 60, 60}}, .texts = {}});
  job.NewPage();
  job.NewPage();
  job.Draw(Picture{10, 20, [](QPainter& painter) { painter.fillRect(0, 0, 5, 20, Qt::black); }},
           QRectF(1000, 2000, 300, 400));
  job.NewPage();
  job.End();
  const auto pages = test::ReadPdf(file);
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_EQ(pages[0].width, 11900);
  EXPECT_EQ(pages[0].height, 16840);
  test::ExpectMarks(pages[0], {{0, 0, 60, 60}, {4300.5, 1270.25, 180, 120}, {8900, 15950, 100, 50}, {100, 100, 60, 60}},
                    0.1);
  test::ExpectMarks(pages[1], {{1000, 2000, 150, 400}}, 0.1);
  const auto words = test::ReadPdfWords(file);
  ASSERT_EQ(words.size(), 2U);
  for (std::size_t i = 0; i < words.size(); ++i) {
    EXPECT_EQ(words[i].text, page.texts[i].text);
    EXPECT_NEAR(words[i].x, 5000, 40);
    EXPECT_NEAR(words[i].y, page.texts[i].y, 60);
  }
}

TEST(DrawPage, LeavesOutWhatNoPaperHolds) {
  const auto drawn = [](const PageDrawing& page) {
    QPicture picture;
    QPainter painter(&picture);
    DrawPage(painter, page);
    painter.end();
    return QByteArray(picture.data(), picture.size());
  };
  PageDrawing page = {.marks = {{0, 0, 60, 60}}, .texts = {{5000, 3000, "12"}}};
  const QByteArray clean = drawn(page);
  for (const double far : {1e7, -1e7, std::numeric_limits<double>::max(), static_cast<double>(NAN)}) {
    page.marks.insert(page.marks.end(), {{far, 0, 1, 1}, {0, far, 1, 1}, {0, 0, far, 1}, {0, 0, 1, far}});
    page.texts.insert(page.texts.end(), {{far, 0, "1"}, {0, far, "1"}});
  }
  EXPECT_EQ(drawn(page), clean);
}

TEST(PrintJob, SaysThatItCannotBegin) {
  PrintJob job("測試");
  job.End();  // nothing drawn, nothing asked for
  try {
    job.Draw(PageDrawing{.marks = {{0, 0, 60, 60}}, .texts = {}});
    FAIL() << "something was printed";
  } catch (const PrinterError& error) {
    EXPECT_EQ(error.Subject(), "預設印表機");
    EXPECT_EQ(std::string(error.what()).find("系統沒有安裝印表機。請先"), 0U);
  }
  EXPECT_EQ(DefaultPaper().width, 11900);

  PrintJob nowhere("測試", "/nowhere/job.pdf");
  const auto handler = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  EXPECT_THROW(nowhere.Draw(PageDrawing{.marks = {{0, 0, 60, 60}}, .texts = {}}), PrinterError);
  qInstallMessageHandler(handler);  // Qt had its own word on it
}

}  // namespace
}  // namespace marlevo
