#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QTest>
#include <memory>

#include "support/qt_modal.h"
#include "ui/appearance.h"
#include "ui/frmMessage.h"
#include "ui/frmMessage2.h"
#include "ui/question.h"

namespace marlevo {
namespace {

TEST(QuestionTest, OnlyTheYesButtonIsAYes) {
  const auto answered = [](const ModalStep& step) {
    bool yes = false;
    WithModals([&yes] { yes = Question(nullptr, "是否刪除 ?"); }, {step});
    return yes;
  };
  EXPECT_TRUE(answered(ExpectQuestion("是否刪除 ?", QMessageBox::Yes)));
  EXPECT_FALSE(answered(ExpectQuestion("是否刪除 ?", QMessageBox::No)));
  EXPECT_FALSE(answered([](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); }));
  EXPECT_FALSE(answered([](QWidget& window) { QTest::keyClick(&window, Qt::Key_Return); }));
  EXPECT_FALSE(answered([](QWidget& window) { window.close(); }));
  for (const auto& [key, yes] : {std::pair(Qt::Key_Y, true), std::pair(Qt::Key_N, false)}) {
    const auto press = [key = key](QWidget& window) {
      QApplication::setActiveWindow(&window);  // a key is for the active window, which a new one becomes a little later
      QTest::keyClick(&window, key);
    };
    EXPECT_EQ(answered(press), yes);
  }
}

// What Qt itself writes comes from its own translation, which is part of the program.
TEST(WordsTest, ButtonsAndMenusAreChinese) {
  const auto word = [](QWidget& window, QMessageBox::StandardButton button) {
    return dynamic_cast<QMessageBox&>(window).button(button)->text().toStdString();
  };
  WithModals([] { Question(nullptr, "是否刪除 ?"); }, {[&word](QWidget& window) {
               EXPECT_EQ(word(window, QMessageBox::Yes), "是");
               EXPECT_EQ(word(window, QMessageBox::No), "否");
               window.close();
             }});
  WithModals([] { Notice(nullptr, "請先選擇客戶 !"); }, {[&word](QWidget& window) {
               EXPECT_EQ(word(window, QMessageBox::Ok), "確定");
               window.close();
             }});
  QLineEdit box;
  const std::unique_ptr<QMenu> menu(box.createStandardContextMenu());
  EXPECT_GE(menu->actions().size(), 6);
  for (const QAction* const action : menu->actions()) {
    EXPECT_TRUE(action->isSeparator() || action->text().at(0) > QChar(0x2E7F)) << action->text().toStdString();
  }
}

TEST(AppearanceTest, ColumnsOfChineseTextStandUnderOneAnother) {
  const QFontMetrics metrics(AlignedFont());
  EXPECT_EQ(metrics.horizontalAdvance("四星正彩"), metrics.horizontalAdvance("12345678"));
  EXPECT_EQ(metrics.horizontalAdvance("張 Ｘ"), metrics.horizontalAdvance("     "));
}

TEST(MessageTest, EnterAndEscCloseItAndALineBreakIsOne) {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
    WithModals([] { ShowMessage(nullptr, "選擇三星玩法\r\n一 二 三排需要有號碼"); }, {[key](QWidget& window) {
                 EXPECT_EQ(window.findChild<QLabel*>("lblMsg")->text(), "選擇三星玩法\n一 二 三排需要有號碼");
                 QTest::keyClick(&window, key);
               }});
  }
}

TEST(BusyNoticeTest, EscDoesNotTakeItAway) {
  frmMessage2 busy(nullptr);
  busy.ShowPainted();
  QTest::keyClick(&busy, Qt::Key_Escape);
  EXPECT_TRUE(busy.isVisible());
}

}  // namespace
}  // namespace marlevo
