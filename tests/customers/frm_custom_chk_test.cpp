#include "customers/frmCustom_CHK.h"

#include "customer_database.h"
#include "support/window_driver.h"

namespace marlevo {
namespace {

using FrmCustomChkTest = CustomerDatabaseTest;

TEST_F(FrmCustomChkTest, ChecksTheChosenScopeOrSaysWhatIsMissing) {
  for (const char* number : {"A01", "A02", "A03"}) {
    AddCustomer({number, "王小明", "", "", ""});
  }
  AddRecord("A01", "20021005143012", {"0,25,1,1,2,3,4"});
  AddRecord("A02", "20021005143012", {"0,50,1,1,2,3,4"});
  AddRecord("A02", "20021006090000", {"3,25,1,1,2,9,9"});
  const Shown<frmCustom_CHK> window(Opening());
  const auto check = [&window](int scope, const std::vector<ModalStep>& steps = {}) {
    Click(window, QString("Option1(%1)").arg(scope));
    Press(window, "cmdCheck2", steps);
    return RowsText(window, "lstCheck");
  };
  const auto notice = [](const char* text) {
    return std::vector<ModalStep>{[text](QWidget& box) {
      EXPECT_EQ(dynamic_cast<QMessageBox&>(box).icon(), QMessageBox::NoIcon);
      EXPECT_EQ(box.windowTitle(), "提示訊息");
      ExpectMessage(text)(box);
    }};
  };
  Press(window, "cmdCheck2", notice("請先選擇購買記錄 !"));  // one record is the first choice
  EXPECT_EQ(check(1, notice("此客戶無購買記錄 !")), "");
  EnterDigits(window, "1234");
  const std::string first = "A01 正彩中獎 125000 元 !!\n";
  const std::string straight = "A02 正彩中獎 250000 元 !!\n";
  const std::string pair = "A02 前對彩中獎 1000 元 !!\n";
  EXPECT_EQ(check(2), first + straight + pair);
  PressRow(window, "mfgCustom_H", 2);
  EXPECT_EQ(check(1, notice("此客戶無購買記錄 !")), "") << "every check starts from an empty list";
  PressRow(window, "mfgCustom_H", 1);
  EXPECT_EQ(BoxText(window, "txtCustom_No"), "A02");
  EXPECT_EQ(check(0, notice("請先選擇購買記錄 !")), "");
  EXPECT_EQ(check(1), straight + pair);
  PressRow(window, "lstRecord", 0);
  EXPECT_EQ(check(0), straight);
  Type(window, "txtCustom_No", "A01");
  EXPECT_EQ(check(0), first) << "what is typed over the number is what is asked";
  Type(window, "txtCustom_No", "A'1");
  EXPECT_EQ(check(1, {ExpectErrorReport("單引號", "繼續")}), "");
  for (const char* digits : {"12 4", "12x4"}) {
    EnterDigits(window, digits);
    EXPECT_EQ(check(2, {ExpectErrorReport("不是數字", "繼續")}), "");
  }
}

}  // namespace
}  // namespace marlevo
