#include "printing/frmPrint.h"

#include <QCheckBox>

#include "printing_windows.h"
#include "support/ticket_text.h"

namespace marlevo {
namespace {

class FrmPrint : public PrintingTest {
 protected:
  FrmPrint() { list_.kinds[kFourStraight].multiplier = 10; }

  // A dialog in which the widgets named are clicked.
  std::unique_ptr<frmPrint> Window(const QStringList& clicks) {
    auto window = std::make_unique<Shown<frmPrint>>(list_, settings_);
    for (const QString& name : clicks) {
      Click(*window, name);
    }
    return window;
  }

  CurrentList list_ = test::Lists({{kFourStraight, "0123 4567 8901 2345 6789 9999"},
                                   {kFourBox, "1234"},
                                   {kThreeStraight, "901 234"},
                                   {kThreePair, "111 222 333 444 555 666 777"}});
};

TEST_F(FrmPrint, SendsOneJobForEachKindAndRangeWithItsMarksInPlace) {
  list_.kinds[kFourBox].ticked = false;  // its tickets are still there
  const auto window = Window({});
  EXPECT_EQ(LabelText(*window, "lblSlips"), "請先勾選要印的種類");
  Click(*window, "chkPlay(0)");
  EXPECT_EQ(LabelText(*window, "lblSlips"), "需要 4星彩投注單 2 張");
  Click(*window, "chkPage");
  auto& row = Find<QWidget>(*window, "fraPlay(4)");
  QTest::mouseClick(&row, Qt::LeftButton, {}, {3, 3});
  QTest::mouseDClick(&row, Qt::LeftButton, {}, {3, 3});  // the second press of a double click
  QTest::mouseRelease(&row, Qt::LeftButton, {}, {3, 3});
  QTest::mouseClick(&Find<QWidget>(*window, "lblMax(4)"), Qt::LeftButton);
  EXPECT_FALSE(Find<QCheckBox>(*window, "chkPlay(4)").isChecked());
  QTest::mouseClick(&Find<QWidget>(*window, "lblMax(4)"), Qt::LeftButton);
  for (int kind = 0; kind < kBetKinds; ++kind) {
    const bool offered = kind != kFourBox && kind != kThreeBox;
    EXPECT_EQ(Find<QWidget>(*window, QString("fraPlay(%1)").arg(kind)).isVisible(), offered) << kind;
  }
  Find<QComboBox>(*window, "cboMD(0)").setCurrentText("加注10期");
  Type(*window, "txtStart(0)", "3");  // counts only when ranges are printed
  Type(*window, "txtEnd(0)", "4");
  EXPECT_EQ(LabelText(*window, "lblSlips"), "需要 4星彩投注單 2 張、3星彩投注單 2 張");
  EXPECT_NE(LabelText(*window, "lblPrinter").find("印表機 "), std::string::npos);
  EXPECT_EQ(LabelText(*window, "lblSent"), "");
  Click(*window, "cmdPrint");
  EXPECT_TRUE(LabelText(*window, "lblSent").ends_with(" 已送出 4星彩 2 張、3星彩 2 張"));

  const auto jobs = queue_->TakeJobs();
  ASSERT_EQ(jobs.size(), 2U);
  LoadSlipSettings(settings_, SlipType::kFourDigit);
  ASSERT_EQ(SlipSettings().p_height, 1520.5);
  const SlipPrinterSettings settings = SlipSettings();
  const TicketList& fours = list_.kinds[kFourStraight].tickets;
  const auto threes = SlipMarks(list_.kinds[kThreePair].tickets, {SlipType::kThreeDigit, 1, 7, 0, 0, true}, {});
  ExpectPages(jobs[0].pages, SlipMarks(fours, {SlipType::kFourDigit, 1, 6, 10, 9, true}, settings));
  ExpectPages(jobs[1].pages, threes);
  EXPECT_NE(jobs[0].attributes.find("4星正彩"), std::string::npos);
  EXPECT_NE(jobs[0].attributes.find("print-scaling"), std::string::npos);
  const auto numbers = test::ReadPdfWords(jobs[0].document);
  ASSERT_EQ(numbers.size(), 6U);
  EXPECT_EQ(numbers[5].text, "6");

  Click(*window, "Option1(1)");
  EXPECT_EQ(LabelText(*window, "lblSlips"), "需要 4星彩投注單 1 張、3星彩投注單 2 張");
  Click(*window, "cmdPrint");
  const auto ranges = queue_->TakeJobs();
  ASSERT_EQ(ranges.size(), 2U);
  ExpectPages(ranges[0].pages, SlipMarks(fours, {SlipType::kFourDigit, 3, 4, 10, 9, true}, settings));
  ExpectPages(ranges[1].pages, threes);
  Type(*window, "txtEnd(4)", "6");
  EXPECT_EQ(LabelText(*window, "lblSlips"), "需要 4星彩投注單 1 張、3星彩投注單 1 張");
  Type(*window, "txtStart(4)", "7");  // nothing that could be printed
  EXPECT_EQ(LabelText(*window, "lblSlips"), "3星對彩開始範圍不可大於結束範圍 !");
}

TEST_F(FrmPrint, SaysWhatIsWrongAndPrintsNothing) {
  const auto window = Window({"Option1(1)", "chkPlay(0)", "chkPlay(4)"});
  Type(*window, "txtStart(0)", "1x2");
  EXPECT_EQ(BoxText(*window, "txtStart(0)"), "12");
  const auto enter = [&window](const QStringList& ranges) {
    const char* boxes[] = {"txtStart(0)", "txtEnd(0)", "txtStart(4)", "txtEnd(4)"};
    for (qsizetype i = 0; i < 4; ++i) {
      Enter(*window, boxes[i], ranges[i]);
    }
  };
  const std::pair<QStringList, const char*> cases[] = {
      {{"0", "6", "1", "7"}, "4星正彩開始範圍輸入錯誤 !"},         {{"", "6", "1", "7"}, "4星正彩開始範圍輸入錯誤 !"},
      {{"1", "x", "1", "7"}, "4星正彩開始範圍不可大於結束範圍 !"},  // the later test decides
      {{"0", "0", "1", "7"}, "4星正彩結束範圍輸入錯誤 !"},         {{"1", "7", "1", "7"}, "4星正彩結束範圍輸入過大 !"},
      {{"5", "3", "1", "7"}, "4星正彩開始範圍不可大於結束範圍 !"}, {{"5", "3", "1", "8"}, "3星對彩結束範圍輸入過大 !"}};
  for (const auto& [ranges, message] : cases) {
    enter(ranges);
    Press(*window, "cmdPrint", {ExpectMessage(message)});
  }
  Press(*Window({"Option1(1)"}), "cmdPrint", {ExpectMessage("請選擇欲列印種類")});
  // Everything of no kind, and numbers below the list: nothing to print and nothing to say.
  Window({"Option1(0)", "cmdPrint"});
  enter({"-3", "0.4", "0.2", "0.3"});
  Click(*window, "cmdPrint");
  EXPECT_TRUE(queue_->TakeJobs().empty());
}

TEST_F(FrmPrint, ReportsWhatFailsAfterTheJobsBefore) {
  const auto window = Window({"chkPlay(2)"});
  queue_->Accept(false);
  Press(*window, "cmdPrint", {ExpectErrorReport("送出列印工作", "繼續")});
  queue_->Accept(true);
  EXPECT_TRUE(queue_->TakeJobs().empty());
  std::filesystem::create_symlink("3Star.ini", settings_ / "3Star.ini");  // cannot be opened
  Click(*window, "chkPlay(0)");
  auto& print = Find<QWidget>(*window, "cmdPrint");
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  print.setFocus();
  Press(*window, "cmdPrint", {ExpectErrorReport("讀取列印設定", "繼續")});
  EXPECT_EQ(queue_->TakeJobs().size(), 1U);
  EXPECT_TRUE(print.isEnabled() && window->focusWidget() == &print);
  EXPECT_TRUE(LabelText(*window, "lblSent").ends_with(" 已送出 4星彩 2 張"));
  Click(*window, "cmdCancel");
  EXPECT_FALSE(window->isVisible());
}

}  // namespace
}  // namespace marlevo
