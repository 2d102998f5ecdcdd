#include "printing/slip_settings_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <chrono>
#include <csignal>
#include <fstream>
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

TEST_F(SlipSettingsFile, WhatCannotBeReadCountsAsMissing) {
  SlipSettings().top = 1;
  LoadSlipSettings(folder_, "4Star");
  EXPECT_EQ(SlipSettings(), SlipPrinterSettings{});  // the record before is gone

  Write("[PRINTER SET]\r\nTOP = 7\r\n");
  LoadSlipSettings(folder_, "");
  EXPECT_EQ(SlipSettings().top, 7);
  LoadSlipSettings(folder_, "3Star");
  EXPECT_EQ(SlipSettings(), SlipPrinterSettings{});

  std::filesystem::remove(file_);
  std::filesystem::create_directory(file_);
  LoadSlipSettings(folder_, "4Star");
  std::filesystem::remove(file_);
  ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);  // reading it would wait for ever
  LoadSlipSettings(folder_, "4Star");
  EXPECT_EQ(SlipSettings(), SlipPrinterSettings{});
}

TEST_F(SlipSettingsFile, AGigabyteCostsNothing) {
  Write("[PRINTER SET]\r\nTOP = 7\r\n");
  std::filesystem::resize_file(file_, 1'000'000'000);
  const auto start = std::chrono::steady_clock::now();
  LoadSlipSettings(folder_, "4Star");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
  EXPECT_EQ(SlipSettings().top, 7);
}

TEST_F(SlipSettingsFile, AFileThatCannotBeOpenedIsAnError) {
  Write("[PRINTER SET]\r\nTOP = 7\r\n");
  std::filesystem::permissions(folder_, std::filesystem::perms(0755));
  std::filesystem::permissions(file_, std::filesystem::perms::none);
  const uid_t user = geteuid();
  ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);  // root opens everything
  EXPECT_THROW(LoadSlipSettings(folder_, "4Star"), FileError);
  EXPECT_THROW(SaveSlipSettings(user == 0 ? folder_ : "/", "4Star", kValues), FileError);  // somebody else's
  ASSERT_EQ(seteuid(user), 0);
}

TEST_F(SlipSettingsFile, SavesTheWholeFileOrLeavesTheOldOne) {
  Write("old");
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit full = {20, limit.rlim_max};  // the disk is full after twenty bytes
  setrlimit(RLIMIT_FSIZE, &full);
  EXPECT_THROW(SaveSlipSettings(folder_, "4Star", kValues), FileError);
  setrlimit(RLIMIT_FSIZE, &limit);
  EXPECT_EQ(Read(), "old");

  SaveSlipSettings(folder_, "4Star", kValues);
  EXPECT_EQ(Read(), SlipSettingsText(kValues));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}), 1);
}

}  // namespace
}  // namespace marlevo
