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
#include "support/window_driver.h"

namespace marlevo {

class PrintingTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (test::PrintQueue::Installed()) {
      queue_ = std::make_unique<test::PrintQueue>();
    }
  }
  static void TearDownTestSuite() { queue_.reset(); }

  void SetUp() override {
    if (queue_ == nullptr) {
      GTEST_SKIP() << "cupsd is not installed (package cups-daemon): nothing was printed and measured";
    }
  }

  PrintingTest() { SaveSlipSettings(settings_, SlipType::kFourDigit, kFourStar); }

  // The pages have exactly these marks, within two twips.
  static void ExpectPages(const std::vector<test::PrintedPage>& printed, const std::vector<PageDrawing>& expected) {
    ASSERT_EQ(printed.size(), expected.size());
    for (std::size_t page = 0; page < expected.size(); ++page) {
      test::ExpectMarks(printed[page], expected[page].marks, 2);
    }
  }

  inline static const std::array<std::string, kSlipFields> kFourStar = {"1270", "4300", "60", "60",   "300",  "240",
                                                                        "420",  "530",  "-3", "1800", "9050", "1520.5"};

  inline static std::unique_ptr<test::PrintQueue> queue_;  // none without cupsd
  QTemporaryDir folder_;
  std::filesystem::path settings_ = folder_.path().toStdString();
};

}  // namespace marlevo
