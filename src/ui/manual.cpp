#include "ui/manual.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <QWidget>

#include "ui/frmMessage.h"

namespace marlevo {

namespace {

constexpr const char* kSection = "manualSection";  // the property of a window

}  // namespace

void SetManualSection(QWidget& window, const QString& section) {
  window.setProperty(kSection, section);
}

QString ManualSection(const QWidget& window) {
  const QVariant section = window.property(kSection);
  const QWidget* const opener = window.parentWidget();
  return section.isValid() || opener == nullptr ? section.toString() : ManualSection(*opener->window());
}

void OpenManual(QWidget& window) {
  const QString page = QCoreApplication::applicationDirPath() + "/使用手冊/" + ManualSection(window) + ".html";
  if (!QFileInfo::exists(page)) {
    ShowMessage(&window, "找不到使用手冊，它應該和程式放在同一個資料夾：\r\n" + QDir::toNativeSeparators(page) +
                             "\r\n請重新安裝程式，或從安裝檔把使用手冊複製過來。");
  } else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(page))) {
    ShowMessage(&window, "系統沒有可以開啟使用手冊的瀏覽器，請自行開啟：\r\n" + QDir::toNativeSeparators(page));
  }
}

}  // namespace marlevo
