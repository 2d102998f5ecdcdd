#include "printing/slip_settings_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <csignal>
#include <fstream>
#include <functional>
#include <sstream>

namespace marlevo {
namespace {

const std::array<std::string, kSlipFields> kValues = {"1270", "4300", "60", "60",   "300",  "240",
                                                      "420",  "530",  "0",  "1800", "9050", "1520"};

class SlipSettingsFile : public testing::Test {
 protected:
  void Write(const std::string& text) { std::ofstream(file_, std::ios::binary) << text; }
  std::string Read() const {
    std::ostringstream text;
    text << std::ifstream(file_, std::ios::binary).rdbuf();
    return text.str();
  }

  QTemporaryDir temporary_;
  std::filesystem::path folder_ = temporary_.path().toStdString();
  std::filesystem::path file_ = folder_ / "4Star.ini";
};

TEST_F(SlipSettingsFile, WhatIsNoFileCountsAsMissingAndIsNeverReplaced) {
  SlipSettings().top = 1;
  LoadSlipSettings(folder_, SlipType::kFourDigit);
  EXPECT_EQ(SlipSettings(), SlipPrinterSettings{});  // the record before is gone
  for (const bool pipe : {false, true}) {            // reading a pipe would wait for ever
    std::filesystem::remove(file_);
    pipe ? mkfifo(file_.c_str(), 0666) : mkdir(file_.c_str(), 0777);
    SlipSettings().top = 1;
    LoadSlipSettings(folder_, SlipType::kFourDigit);
    EXPECT_EQ(SlipSettings(), SlipPrinterSettings{});
    EXPECT_THROW(SaveSlipSettings(folder_, SlipType::kFourDigit, kValues), FileError);
    EXPECT_TRUE(std::filesystem::exists(file_) && !std::filesystem::is_regular_file(file_));
  }
}

TEST_F(SlipSettingsFile, IsReadToItsEndWhateverItHolds) {
  Write("");
  LoadSlipSettings(folder_, SlipType::kFourDigit);
  EXPECT_EQ(SlipSettings(), SlipPrinterSettings{});
  Write("[PRINTER SET]\r\nTOP = 7");
  std::filesystem::resize_file(file_, 100'000'000);  // zeros in between
  std::ofstream(file_, std::ios::app) << "\r\nLEFT = 8";
  LoadSlipSettings(folder_, SlipType::kFourDigit);
  EXPECT_EQ(SlipSettings().top, 7);
  EXPECT_EQ(SlipSettings().left, 8);
  LoadSlipSettings(folder_, SlipType::kThreeDigit);
  EXPECT_EQ(SlipSettings(), SlipPrinterSettings{});
}

TEST_F(SlipSettingsFile, SaysWhatIsDeniedAndKeepsTheRecord) {
  Write("[PRINTER SET]\r\nTOP = 7\r\n");
  const uid_t user = geteuid();
  const auto expect_denied = [&](const std::function<void()>& action) {
    ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);  // root may do everything
    try {
      action();
      ADD_FAILURE() << "was allowed";
    } catch (const FileError& error) {
      EXPECT_EQ(error.Kind(), Fault::kDenied) << error.what();
    }
    ASSERT_EQ(seteuid(user), 0);
  };
  using std::filesystem::perms;
  const auto load = [&] { LoadSlipSettings(folder_, SlipType::kFourDigit); };
  const auto save = [&] { SaveSlipSettings(folder_, SlipType::kFourDigit, kValues); };
  SlipSettings().top = 5;
  std::filesystem::permissions(folder_, perms(0555));
  std::filesystem::permissions(file_, perms::none);
  expect_denied(load);
  expect_denied(save);
  expect_denied([&] { SaveSlipSettings(folder_, SlipType::kThreeDigit, kValues); });
  EXPECT_EQ(SlipSettings().top, 5);

  // The file may be written although the folder takes no new one.
  std::filesystem::permissions(file_, perms(0666));
  Write(std::string(1000, 'x'));
  ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);
  EXPECT_NO_THROW(save());
  ASSERT_EQ(seteuid(user), 0);
  EXPECT_EQ(Read(), SlipSettingsText(kValues));
  std::filesystem::permissions(folder_, perms(0755));
}

TEST_F(SlipSettingsFile, SavesTheWholeFileOrLeavesTheOldOne) {
  Write("old");
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit full = {20, limit.rlim_max};  // the disk is full after twenty bytes
  setrlimit(RLIMIT_FSIZE, &full);
  EXPECT_THROW(SaveSlipSettings(folder_, SlipType::kFourDigit, kValues), FileError);
  setrlimit(RLIMIT_FSIZE, &limit);
  EXPECT_EQ(Read(), "old");

  SaveSlipSettings(folder_, SlipType::kFourDigit, kValues);
  EXPECT_EQ(Read(), SlipSettingsText(kValues));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}), 1);
}

}  // namespace
}  // namespace marlevo
