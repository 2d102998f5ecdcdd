#include "customers/frmCustom_CHK.h"

#include "customer_windows.h"

namespace marlevo {
namespace {

class FrmCustomChkTest : public CustomerWindowsTest {
 protected:
  void SetUp() override {
    AddCustomer({"A01", "王小明", "", "", ""});
    AddCustomer({"A02", "陳大文", "", "", ""});
    AddCustomer({"A03", "林先生", "", "", ""});
    // Against 1234: what wins stands first in each pair; the last digit that counts makes the other one lose.
    AddRecord("A02", "20021005143012", {"0 50 1234", "0 50 1235", "1 25 1239", "1 25 1249"});
    AddRecord("A02", "20021006090000", {"2 25 2340", "2 25 2350", "3 25 1299", "3 25 1399"});
    AddRecord("A01", "20021006090000", {"4 25 3499", "4 25 3599", "0 25 1234", "0 25 1234"});
    window_.emplace(Opening());
  }
  void SetDrawn(const QString& digits) { EnterDigits(*window_, digits); }
  void Check(int scope, const std::vector<ModalStep>& steps = {}) {
    Click(*window_, QString("Option1(%1)").arg(scope));
    Press(*window_, "cmdCheck2", steps);
  }
  std::string Winners() const { return RowsText(*window_, "lstCheck"); }

  std::optional<Shown<frmCustom_CHK>> window_;
};

TEST_F(FrmCustomChkTest, ChecksARecordACustomerOrAll) {
  SetDrawn("1234");
  const std::string of_record =
      "A02 後三彩中獎 12500 元 !!\n"
      "A02 前對彩中獎 1000 元 !!\n";
  const std::string of_customer =
      "A02 正彩中獎 250000 元 !!\n"
      "A02 前三彩中獎 12500 元 !!\n" +
      of_record;
  PressRow(*window_, "mfgCustom_H", 1);
  EXPECT_EQ(BoxText(*window_, "txtCustom_No"), "A02");
  PressRow(*window_, "lstRecord", 1);  // another customer has one of the same stamp
  Press(*window_, "cmdCheck2");
  EXPECT_EQ(Winners(), of_record) << "one record is the first choice";
  Check(1);
  EXPECT_EQ(Winners(), of_customer);
  Check(2);
  EXPECT_EQ(Winners(),
            "A01 正彩中獎 125000 元 !!\n"
            "A01 正彩中獎 125000 元 !!\n" +
                of_customer + "A01 後對彩中獎 1000 元 !!\n");
  SetDrawn("9999");
  Check(2);
  EXPECT_EQ(Winners(), "");
}

TEST_F(FrmCustomChkTest, SaysWhatIsMissingOrNoNumberAndGoesOn) {
  Check(0, {ExpectMessage("請先選擇購買記錄 !")});
  Check(1, {ExpectMessage("此客戶無購買記錄 !")});
  SetDrawn("1234");
  Check(2);
  EXPECT_NE(Winners(), "");
  PressRow(*window_, "mfgCustom_H", 2);
  Check(1, {ExpectMessage("此客戶無購買記錄 !")});
  EXPECT_EQ(Winners(), "") << "every check starts from an empty list";
  PressRow(*window_, "mfgCustom_H", 0);
  Check(0, {ExpectMessage("請先選擇購買記錄 !")});
  for (const char* digits : {"12 4", "12x4"}) {
    SetDrawn(digits);
    Check(2, {ExpectErrorReport("不是數字", "繼續")});
    EXPECT_EQ(Winners(), "");
    SetDrawn("1234");
    Check(2);
    EXPECT_NE(Winners(), "");
  }
}

}  // namespace
}  // namespace marlevo
