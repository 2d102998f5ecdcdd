#include "printing/frmSetPrinter.h"

#include <QFile>

#include "printing/slip_sample.h"
#include "printing_windows.h"

namespace marlevo {
namespace {

class FrmSetPrinter : public PrintingWindowTest {
 protected:
  void SetUp() override { ASSERT_TRUE(QTest::qWaitForWindowActive(&window_)); }

  static QString Name(int index) { return QString("txtInput(%1)").arg(index); }
  QLineEdit& Box(int index) { return Find<QLineEdit>(window_, Name(index)); }
  void Type(int index, const QString& text) { marlevo::Type(window_, Name(index), text); }
  std::string Texts() {
    QStringList texts;
    for (int i = 0; i < kSlipFields; ++i) {
      texts += Box(i).text();
    }
    return texts.join(' ').toStdString();
  }

  Shown<frmSetPrinter> window_{settings_};
};

TEST_F(FrmSetPrinter, ShowsTheFileOfTheChosenTypeAndKeepsEditsInTheRecord) {
  EXPECT_TRUE(Find<QAbstractButton>(window_, "opPlay4").isChecked());
  EXPECT_EQ(Texts(), "1270 4300 60 60 300 240 420 530 -3 1800 9050 1520.5");
  Type(1, "-4.5x6");  // letters are not taken
  EXPECT_EQ(SlipSettings().left, -4.56);
  Type(11, "99");
  EXPECT_EQ(SlipSettings().p_height, 99);
  Click(window_, "opPlay4");  // once more: the edits are taken back
  EXPECT_EQ(Texts(), "1270 4300 60 60 300 240 420 530 -3 1800 9050 1520.5");
  EXPECT_EQ(SlipSettings().left, 4300);
  Click(window_, "opPlay3");
  EXPECT_EQ(Texts(), "2220 320 180 180 125 130 420 420 15 1800 1900 2130");
  EXPECT_EQ(SlipSettings(), SlipPrinterSettings{});
}

TEST_F(FrmSetPrinter, EnterAndDownLeadOnUpLeadsBack) {
  Box(0).setFocus();
  QTest::keyClick(&Box(0), Qt::Key_Return);
  EXPECT_TRUE(Box(1).hasFocus());
  QTest::keyClick(&Box(1), Qt::Key_Down);
  EXPECT_TRUE(Box(2).hasFocus());
  QTest::keyClick(&Box(2), Qt::Key_Up);
  EXPECT_TRUE(Box(1).hasFocus());
  QCoreApplication::processEvents();
  EXPECT_EQ(Box(1).selectedText(), "4300");
}

TEST_F(FrmSetPrinter, PreviewFollowsTheEditsOnceItIsShown) {
  const auto picture = [&] { return Find<QWidget>(window_, "picPreview").grab().toImage(); };
  const QImage empty = picture();
  Type(0, "3000");
  EXPECT_EQ(picture(), empty);
  Click(window_, "cmdPreview");
  const QImage shown = picture();
  EXPECT_NE(shown, empty);
  Type(0, "5000");
  EXPECT_NE(picture(), shown);
  Type(0, "3000");
  EXPECT_EQ(picture(), shown);
  Type(0, QString(20, '9'));  // nothing on the paper is left to draw
  EXPECT_NE(picture(), shown);
}

TEST_F(FrmSetPrinter, SavesTheTextsOnlyWhenTheAnswerIsYes) {
  QFile file(folder_.filePath("3Star.ini"));
  Click(window_, "opPlay3");
  Type(0, "+12.");
  Press(window_, "cmdSave", {ExpectQuestion("確定要將此設定存檔 ?", QMessageBox::No)});
  EXPECT_FALSE(file.exists());
  Press(window_, "cmdSave", {ExpectQuestion("確定要將此設定存檔 ?", QMessageBox::Yes)});
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll().toStdString(),
            SlipSettingsText({"+12.", "320", "180", "180", "125", "130", "420", "420", "15", "1800", "1900", "2130"}));
}

TEST_F(FrmSetPrinter, PrintsTheSampleWithItsValues) {
  if (queue_ == nullptr) {
    GTEST_SKIP() << kNoQueue;
  }
  Type(0, "1500");
  Click(window_, "cmdPrint");
  const auto jobs = queue_->TakeJobs();
  ASSERT_EQ(jobs.size(), 1U);
  ExpectPages(jobs[0].pages, {SampleSlip(SlipType::kFourDigit, SlipSettings())});
  std::string words;
  for (const PageText& word : test::ReadPdfWords(jobs[0].document)) {
    words += word.text + ' ';
    EXPECT_LT(word.x, 11900 - 300);
    EXPECT_LT(word.y, 16840 - 600);
  }
  EXPECT_NE(words.find("4星彩 測試列印"), std::string::npos) << words;
  for (const char* const value : {"紙張的上邊界 1500 ", "紙張頃斜修正 -3 ", "每注之間的間隔 1520.5 "}) {
    EXPECT_NE(words.find(value), std::string::npos) << words;
  }
}

}  // namespace
}  // namespace marlevo
