#include "printing/frmSetPrinter.h"

#include <QFile>

#include "printing/slip_sample.h"
#include "printing_windows.h"

namespace marlevo {
namespace {

class FrmSetPrinter : public PrintingTest {
 protected:
  FrmSetPrinter() { EXPECT_TRUE(QTest::qWaitForWindowActive(&window_)); }
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
  EXPECT_TRUE(Find<QAbstractButton>(window_, "opPlay4").isChecked() && window_.focusWidget() == &Box(0));
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

  Box(0).setFocus();
  for (const auto& [key, box] : {std::pair(Qt::Key_Return, 1), {Qt::Key_Down, 2}, {Qt::Key_Up, 1}}) {
    QTest::keyClick(QApplication::focusWidget(), key);
    EXPECT_TRUE(Box(box).hasFocus());
  }
  QCoreApplication::processEvents();
  EXPECT_EQ(Box(1).selectedText(), "320");
}

TEST_F(FrmSetPrinter, PreviewFollowsTheEditsOnceItIsShown) {
  window_.resize(1180, 690);  // small pictures show few black pixels
  const auto picture = [&] { return Find<QWidget>(window_, "picPreview").grab().toImage(); };
  const auto marks = [&] {  // black pixels
    const QImage image = picture().convertToFormat(QImage::Format_RGB32);
    return std::count(reinterpret_cast<const QRgb*>(image.bits()),
                      reinterpret_cast<const QRgb*>(image.bits() + image.sizeInBytes()), qRgb(0, 0, 0));
  };
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
  const auto small = marks();
  Click(window_, "chkZoom");
  EXPECT_GT(marks(), 2 * small);
  QList<QImage> highlights;
  for (int i = 0; i < kSlipFields; ++i) {
    Box(i).setFocus();
    highlights += highlights.contains(picture()) ? QList<QImage>() : QList{picture()};
  }
  EXPECT_EQ(highlights.size(), kSlipFields - 1);  // width and height of the marks are the same boxes
  Type(0, QString(20, '9'));                      // nothing on the paper is left to draw
  EXPECT_LT(marks(), small);
  Click(window_, "opPlay3");
  const QImage three = picture();
  std::filesystem::remove(settings_ / "4Star.ini");
  Click(window_, "opPlay4");  // the same distances, another slip
  EXPECT_NE(picture(), three);
}

TEST_F(FrmSetPrinter, SavesTheTextsOfTheTypeThatIsLoadedWhenTheAnswerIsYes) {
  const auto saved = [&] {
    QFile file(folder_.filePath("4Star.ini"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "";
  };
  std::filesystem::create_symlink("3Star.ini", settings_ / "3Star.ini");  // cannot be opened
  Type(0, "+12.");
  Press(window_, "opPlay3", {ExpectErrorReport("讀取列印設定", "繼續")});
  EXPECT_TRUE(Find<QAbstractButton>(window_, "opPlay4").isChecked());
  EXPECT_EQ(SlipSettings().top, 12);
  Press(window_, "cmdSave", {ExpectQuestion("確定要將此設定存檔 ?", QMessageBox::No)});
  EXPECT_EQ(saved(), SlipSettingsText(kFourStar));
  EXPECT_FALSE(Box(0).property("tag").isValid());
  Press(window_, "cmdSave", {ExpectQuestion("確定要將此設定存檔 ?", QMessageBox::Yes)});
  auto texts = kFourStar;
  texts[0] = "+12.";
  EXPECT_EQ(saved(), SlipSettingsText(texts));
  EXPECT_EQ(Box(0).property("tag"), "+12.");
  std::filesystem::remove(settings_ / "3Star.ini");
  Click(window_, "opPlay3");
  Press(window_, "cmdSave", {ExpectQuestion("確定要將此設定存檔 ?", QMessageBox::Yes)});
  EXPECT_EQ(saved(), SlipSettingsText(texts));
  EXPECT_TRUE(std::filesystem::exists(settings_ / "3Star.ini"));
  Click(window_, "cmdCancel");
  EXPECT_FALSE(window_.isVisible());
}

TEST_F(FrmSetPrinter, PrintsTheSampleWithItsValues) {
  Type(0, "1500");
  Click(window_, "cmdPrint");
  const auto jobs = queue_->TakeJobs();
  ASSERT_EQ(jobs.size(), 1U);
  ExpectPages(jobs[0].pages, {SampleSlip(SlipType::kFourDigit, SlipSettings())});
  EXPECT_EQ(test::ReadPdfWords(jobs[0].document).back().text, "1520.5");
}

}  // namespace
}  // namespace marlevo
