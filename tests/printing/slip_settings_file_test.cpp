#include "printing/slip_settings_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <sstream>

#include "support/file_size_limit.h"
#include "support/scratch_folder.h"

namespace marlevo {
namespace {

class SlipSettingsFile : public testing::Test {
 protected:
  void Write(const std::string& text) { std::ofstream(file_, std::ios::binary) << text; }
  std::string Read() const {
    std::ostringstream text;
    text << std::ifstream(file_, std::ios::binary).rdbuf();
    return text.str();
  }
  // The record as it is after loading over another one.
  SlipPrinterSettings Loaded(SlipType type = SlipType::kFourDigit) {
    SlipSettings().play = 1;
    LoadSlipSettings(folder_, type);
    return SlipSettings();
  }
  void Save() { SaveSlipSettings(folder_, SlipType::kFourDigit, {"1", "2", "3"}); }

  test::ScratchFolder scratch_;
  std::filesystem::path folder_ = scratch_.Path();
  std::filesystem::path file_ = folder_ / "4Star.ini";
  const std::string saved_ = SlipSettingsText({"1", "2", "3"});
};

TEST_F(SlipSettingsFile, WhatIsNoFileCountsAsMissingAndIsNeverReplaced) {
  EXPECT_EQ(Loaded(), SlipPrinterSettings{});
  for (const bool pipe : {false, true}) {  // reading a pipe would wait for ever
    std::filesystem::remove(file_);
    pipe ? mkfifo(file_.c_str(), 0666) : mkdir(file_.c_str(), 0777);
    EXPECT_EQ(Loaded(), SlipPrinterSettings{});
    EXPECT_THROW(Save(), FileError);
    EXPECT_TRUE(std::filesystem::exists(file_) && !std::filesystem::is_regular_file(file_));
  }
}

TEST_F(SlipSettingsFile, IsReadToItsEndWhateverItHolds) {
  Write("[PRINTER SET]\r\nTOP = 7");
  std::filesystem::resize_file(file_, 100'000'000);  // zeros in between
  std::ofstream(file_, std::ios::app) << "\r\nLEFT = 8";
  EXPECT_EQ(Loaded(), (SlipPrinterSettings{.top = 7, .left = 8}));
  EXPECT_EQ(Loaded(SlipType::kThreeDigit), SlipPrinterSettings{});
}

TEST_F(SlipSettingsFile, SaysWhatIsDeniedAndWritesWhereOnlyTheFileMayBeWritten) {
  Write(std::string(1000, 'x'));
  const auto attempt = [&](mode_t file_rights, const std::function<void()>& action) {
    chmod(folder_.c_str(), 0555);
    chmod(file_.c_str(), file_rights);
    const uid_t user = geteuid();
    EXPECT_EQ(seteuid(user == 0 ? 65534 : user), 0);  // root may do everything
    Fault fault = Fault::kOther;
    try {
      action();
    } catch (const FileError& error) {
      fault = error.Kind();
    }
    EXPECT_EQ(seteuid(user), 0);
    chmod(folder_.c_str(), 0755);
    return fault;
  };
  SlipSettings().play = 5;
  EXPECT_EQ(attempt(0, [&] { LoadSlipSettings(folder_, SlipType::kFourDigit); }), Fault::kDenied);
  EXPECT_EQ(SlipSettings().play, 5);
  EXPECT_EQ(attempt(0444, [&] { Save(); }), Fault::kDenied);
  EXPECT_EQ(attempt(0666, [&] { SaveSlipSettings(folder_, SlipType::kThreeDigit, {}); }), Fault::kDenied);
  EXPECT_EQ(attempt(0666, [&] { Save(); }), Fault::kOther);  // no fault
  EXPECT_EQ(Read(), saved_);
}

TEST_F(SlipSettingsFile, SavesTheWholeFileOrLeavesTheOldOne) {
  Write("old");
  {
    const FileSizeLimit full(20);  // bytes
    EXPECT_THROW(Save(), FileError);
  }
  EXPECT_EQ(Read(), "old");
  Save();
  EXPECT_EQ(Read(), saved_);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}), 1);
}

}  // namespace
}  // namespace marlevo
