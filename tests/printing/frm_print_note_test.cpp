#include "printing/frmPrintNote.h"

#include <QProgressDialog>
#include <QTimer>

#include "printing_windows.h"

namespace marlevo {
namespace {

class FrmPrintNote : public PrintingTest {
 protected:
  void Print(const QString& pages, const std::vector<ModalStep>& steps = {}) {
    Find<QComboBox>(window_, "cboPage").setEditText(pages);
    Press(window_, "cmdPrint", steps);
  }
  // Pages of the only job; 0 when there was none.
  static std::size_t PagesSent() {
    const auto jobs = queue_->TakeJobs();
    EXPECT_LE(jobs.size(), 1U);
    return jobs.empty() ? 0 : jobs[0].pages.size();
  }

  frmPrintNote window_{nullptr};
};

TEST_F(FrmPrintNote, PutsFourSheetsOnAPageAndNothingNearTheEdge) {
  Print("1");
  const auto jobs = queue_->TakeJobs();
  ASSERT_EQ(jobs.size(), 1U);
  ASSERT_EQ(jobs[0].pages.size(), 1U);
  const auto& page = jobs[0].pages[0];
  ASSERT_EQ(page.width, 12240);
  ASSERT_EQ(page.height, 15840);
  const std::size_t of_sheet = page.marks.size() / 4;
  ASSERT_GT(of_sheet, 30U);
  ASSERT_EQ(page.marks.size() % 4, 0U);
  constexpr double kUnprintable = 5 * kTwipsPerMillimetre;
  for (std::size_t i = 0; i < page.marks.size(); ++i) {
    const Mark& mark = page.marks[i];
    const Mark& first = page.marks[i % of_sheet];
    const std::size_t sheet = i / of_sheet;
    EXPECT_NEAR(mark.x, first.x + (sheet % 2 == 1 ? 6120 + 1 : 0), 0.5);
    EXPECT_NEAR(mark.y, first.y + (sheet >= 2 ? 7920 + 1 : 0), 0.5);
    EXPECT_GE(std::min(mark.x, mark.y), kUnprintable);
    EXPECT_LE(mark.x + mark.width, page.width - kUnprintable);
    EXPECT_LE(mark.y + mark.height, page.height - kUnprintable);
  }
  int titles = 0;
  for (const PageText& word : test::ReadPdfWords(jobs[0].document)) {
    titles += word.text.ends_with("包牌便條紙") ? 1 : 0;
    EXPECT_GE(std::min(word.x, word.y), kUnprintable) << word.text;
  }
  EXPECT_EQ(titles, 4);
}

TEST_F(FrmPrintNote, PrintsAsManyPagesAsTheTextBeginsWith) {
  window_.show();
  EXPECT_EQ(window_.focusWidget()->objectName(), "cboPage");
  const std::pair<const char*, std::size_t> cases[] = {{"20", 20}, {"3abc", 3}, {"abc", 0}, {"", 0}, {"-2", 0}};
  for (const auto& [text, pages] : cases) {
    Print(text);
    EXPECT_EQ(PagesSent(), pages) << text;
  }
  Click(window_, "cmdCancel");
  EXPECT_FALSE(window_.isVisible());
}

TEST_F(FrmPrintNote, CancelStopsAndSaysHowManyPagesWentOut) {
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [this] {
    auto* const progress = window_.findChild<QProgressDialog*>("frmProgress");
    if (progress != nullptr && progress->isVisible()) {
      progress->cancel();
    }
  });
  timer.start(2);
  std::string said;
  Print("999999", {[&](QWidget& window) {
          said = LabelText(window, "lblMsg");
          for (const QWidget* const other : QApplication::topLevelWidgets()) {
            EXPECT_TRUE(other->isHidden() || other->objectName() != "frmProgress");
          }
          window.close();
        }});
  const std::size_t pages = PagesSent();
  EXPECT_GT(pages, 0U);
  EXPECT_EQ(said, "列印已取消,共印出 " + std::to_string(pages) + " 頁 !");
}

}  // namespace
}  // namespace marlevo
