#include "printing/frmPrint.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QWindow>

#include "printing_windows.h"
#include "support/qt_modal.h"
#include "support/ticket_text.h"

namespace marlevo {
namespace {

class FrmPrint : public PrintingWindowTest {
 protected:
  void SetUp() override {
    if (queue_ == nullptr) {
      GTEST_SKIP() << kNoQueue;
    }
    list_ = test::Lists({{kFourStraight, "0123 4567 8901 2345 6789 9999"},
                         {kThreeStraight, "901 234"},
                         {kThreePair, "111 222 333 444 555 666 777"}});
    list_.kinds[kFourStraight].multiplier = 10;
  }

  // A dialog in which the widgets named are clicked.
  std::unique_ptr<frmPrint> Window(const QStringList& clicks) {
    auto window = std::make_unique<frmPrint>(nullptr, list_, settings_);
    for (const QString& name : clicks) {
      window->findChild<QAbstractButton*>(name)->click();
    }
    return window;
  }
  static void Choose(frmPrint& window, const QString& box, const QString& text) {
    window.findChild<QLineEdit*>(box)->setText(text);
  }

  static void ExpectPages(const std::vector<test::PrintedPage>& printed, const std::vector<PageDrawing>& expected) {
    ASSERT_EQ(printed.size(), expected.size());
    for (std::size_t page = 0; page < expected.size(); ++page) {
      ExpectMarks(printed[page], expected[page]);
    }
  }

  CurrentList list_;
};

TEST_F(FrmPrint, SendsOneJobForEachKindWithItsMarksInPlace) {
  const auto window = Window({"chkPlay(0)", "chkPlay(4)", "chkPage"});
  window->findChild<QComboBox*>("cboMD(0)")->setCurrentText("加注10期");
  window->findChild<QPushButton*>("cmdPrint")->click();

  const auto jobs = queue_->TakeJobs();
  ASSERT_EQ(jobs.size(), 2U);
  LoadSlipSettings(settings_, "4Star");
  ASSERT_EQ(SlipSettings().p_height, 1520.5);
  ExpectPages(jobs[0].pages,
              SlipMarks(list_.kinds[0].tickets, {SlipType::kFourDigit, 1, 6, 10, 9, true}, SlipSettings()));
  ExpectPages(jobs[1].pages, SlipMarks(list_.kinds[4].tickets, {SlipType::kThreeDigit, 1, 7, 0, 0, true}, {}));
  EXPECT_NE(jobs[0].attributes.find("4星正彩"), std::string::npos);
  EXPECT_NE(jobs[0].attributes.find("print-scaling"), std::string::npos);

  // The numbers stand beside their blocks: half a column right of the last one, at the multiple row.
  const auto words = test::ReadPdfWords(jobs[0].document);
  ASSERT_EQ(words.size(), 6U);
  for (std::size_t i = 0; i < words.size(); ++i) {
    EXPECT_EQ(words[i].text, std::to_string(i + 1));
    EXPECT_NEAR(words[i].x, 4300 + 9.5 * 360 - 3.0 * static_cast<double>(i % 5), 40);
  }
}

TEST_F(FrmPrint, PrintsTheRangesAskedFor) {
  const auto window = Window({"Option1(1)", "chkPlay(0)", "chkPlay(2)"});
  Choose(*window, "txtStart(0)", "3");
  Choose(*window, "txtEnd(0)", "4");
  window->findChild<QPushButton*>("cmdPrint")->click();
  const auto jobs = queue_->TakeJobs();
  ASSERT_EQ(jobs.size(), 2U);
  ASSERT_EQ(jobs[0].pages.size(), 1U);
  EXPECT_EQ(jobs[0].pages[0].marks.size(), 10U);
  ASSERT_EQ(jobs[1].pages.size(), 1U);
  EXPECT_EQ(jobs[1].pages[0].marks.size(), 6U);
}

TEST_F(FrmPrint, ADoubleClickPrintsOnce) {
  const auto window = Window({"chkPlay(2)"});
  window->show();
  const auto* const button = window->findChild<QPushButton*>("cmdPrint");
  const QPoint at = button->mapTo(window.get(), button->rect().center());
  QTest::mouseDClick(window->windowHandle(), Qt::LeftButton, {}, at);
  EXPECT_EQ(queue_->TakeJobs().size(), 1U);
  EXPECT_TRUE(window->isVisible());
}

TEST_F(FrmPrint, SaysWhatIsWrongAndPrintsNothing) {
  const struct {
    const char* start0;
    const char* end0;
    const char* start4;
    const char* end4;
    const char* message;
  } cases[] = {
      {"0", "6", "1", "7", "4星正彩開始範圍輸入錯誤 !"},         {"", "6", "1", "7", "4星正彩開始範圍輸入錯誤 !"},
      {"1", "x", "1", "7", "4星正彩開始範圍不可大於結束範圍 !"},  // the later test decides
      {"0", "0", "1", "7", "4星正彩結束範圍輸入錯誤 !"},         {"1", "7", "1", "7", "4星正彩結束範圍輸入過大 !"},
      {"5", "3", "1", "7", "4星正彩開始範圍不可大於結束範圍 !"}, {"5", "3", "1", "8", "3星對彩結束範圍輸入過大 !"},
  };
  const auto window = Window({"Option1(1)", "chkPlay(0)", "chkPlay(4)"});
  for (const auto& c : cases) {
    Choose(*window, "txtStart(0)", c.start0);
    Choose(*window, "txtEnd(0)", c.end0);
    Choose(*window, "txtStart(4)", c.start4);
    Choose(*window, "txtEnd(4)", c.end4);
    WithModals([&] { window->findChild<QPushButton*>("cmdPrint")->click(); }, {ExpectMessage(c.message)});
  }
  WithModals([&] { Window({"Option1(1)"})->findChild<QPushButton*>("cmdPrint")->click(); },
             {ExpectMessage("請選擇欲列印種類")});
  // Everything of no kind, and numbers below the list: nothing to print and nothing to say.
  Window({"Option1(0)", "cmdPrint"});
  Choose(*window, "txtStart(0)", "-3");
  Choose(*window, "txtEnd(0)", "0.4");
  Choose(*window, "txtEnd(4)", "0.3");
  Choose(*window, "txtStart(4)", "0.2");
  window->findChild<QPushButton*>("cmdPrint")->click();
  EXPECT_TRUE(queue_->TakeJobs().empty());
}

TEST_F(FrmPrint, ReportsARefusedJob) {
  const auto window = Window({"chkPlay(2)"});
  window->show();
  queue_->Accept(false);
  // The error ends in the guard of the event loop, as it does under a real click.
  WithModals(
      [&] {
        QMetaObject::invokeMethod(window->findChild<QPushButton*>("cmdPrint"), "click", Qt::QueuedConnection);
        QCoreApplication::processEvents();
      },
      {ExpectErrorReport("送出列印工作", "繼續")});
  queue_->Accept(true);
  EXPECT_TRUE(queue_->TakeJobs().empty());
  EXPECT_TRUE(window->findChild<QPushButton*>("cmdPrint")->isEnabled());
}

}  // namespace
}  // namespace marlevo
