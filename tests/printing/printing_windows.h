// What the tests of the printing windows stand on: a folder with a settings file, and a real print queue where cupsd is
// installed.
#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <array>
#include <filesystem>
#include <memory>
#include <string>

#include "printing/slip_settings_file.h"
#include "support/print_queue.h"

namespace marlevo {

class PrintingWindowTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (test::PrintQueue::Installed()) {
      queue_ = std::make_unique<test::PrintQueue>();
    }
  }
  static void TearDownTestSuite() { queue_.reset(); }

  PrintingWindowTest() { SaveSlipSettings(settings_, "4Star", kFourStar); }

  // The page has exactly these marks, within two twips.
  static void ExpectMarks(const test::PrintedPage& page, const PageDrawing& expected) {
    ASSERT_EQ(page.marks.size(), expected.marks.size());
    for (std::size_t i = 0; i < expected.marks.size(); ++i) {
      EXPECT_NEAR(page.marks[i].x, expected.marks[i].x, 2);
      EXPECT_NEAR(page.marks[i].y, expected.marks[i].y, 2);
      EXPECT_NEAR(page.marks[i].width, expected.marks[i].width, 2);
      EXPECT_NEAR(page.marks[i].height, expected.marks[i].height, 2);
    }
  }

  static constexpr char kNoQueue[] = "cupsd is not installed (package cups-daemon): nothing was printed and measured";
  inline static const std::array<std::string, kSlipFields> kFourStar = {"1270", "4300", "60", "60",   "300",  "240",
                                                                        "420",  "530",  "-3", "1800", "9050", "1520.5"};

  inline static std::unique_ptr<test::PrintQueue> queue_;  // none without cupsd
  QTemporaryDir folder_;
  std::filesystem::path settings_ = folder_.path().toStdString();
};

}  // namespace marlevo
