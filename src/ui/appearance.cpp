#include "ui/appearance.h"

#include <QApplication>
#include <QFontDatabase>
#include <QToolTip>

#include "ui/style.h"

namespace marlevo {

namespace {
constexpr double kWindowPoints = 12;
constexpr double kLargePoints = 18;
constexpr double kAlignedPoints = 14;

// The first of the families that is installed. Of more than one, all would be searched for every size of the font.
QString Family(const QStringList& families) {
  for (const QString& family : families) {
    if (QFontDatabase::hasFamily(family)) {
      return family;
    }
  }
  return families.first();
}

}  // namespace

QFont WindowFont() {
  static const QString family = Family({"Microsoft JhengHei UI", "Microsoft JhengHei", "Noto Sans CJK TC",
                                        "Noto Sans TC", "PingFang TC", "WenQuanYi Micro Hei"});
  QFont font(family);
  // Chinese needs neither ligatures nor kerning, and what they cost is felt when a window opens.
  font.setStyleStrategy(QFont::PreferNoShaping);
#ifndef Q_OS_WIN
  // At whole pixels: one picture of a character instead of four. On Windows this would mean another way of drawing.
  font.setHintingPreference(QFont::PreferFullHinting);
#endif
  font.setPointSizeF(kWindowPoints);
  return font;
}

QFont LargeFont(QFont::Weight weight) {
  QFont font = WindowFont();
  font.setPointSizeF(kLargePoints);
  font.setWeight(weight);
  return font;
}

QFont AlignedFont() {
  static const QString family = Family({"MingLiU", "Noto Sans Mono CJK TC", "WenQuanYi Micro Hei Mono"});
  QFont font(family);
  font.setStyleHint(QFont::Monospace);
  // Widths fitted to whole pixels would break that: half of 19 is none.
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setPointSizeF(kAlignedPoints);
  return font;
}

void SetUpAppearance() {
  QApplication::setStyle(new WindowStyle);
  QApplication::setPalette(WindowPalette());
  QApplication::setPalette(ScrollBarPalette(), "QScrollBar");
  QApplication::setFont(WindowFont());
  QToolTip::setFont(WindowFont());
}

}  // namespace marlevo
