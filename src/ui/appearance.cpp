#include "ui/appearance.h"

#include <QApplication>
#include <QToolTip>

#include "ui/style.h"

namespace marlevo {

namespace {
constexpr double kWindowPoints = 12;
constexpr double kLargePoints = 18;
constexpr double kAlignedPoints = 14;
}  // namespace

QFont WindowFont() {
  QFont font;
  font.setFamilies({"Microsoft JhengHei UI", "Microsoft JhengHei", "Noto Sans CJK TC", "Noto Sans TC", "PingFang TC",
                    "WenQuanYi Micro Hei"});
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
  QFont font;
  font.setFamilies({"MingLiU", "Noto Sans Mono CJK TC", "WenQuanYi Micro Hei Mono"});
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
