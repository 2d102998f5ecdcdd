#include "ui/appearance.h"

#include <QApplication>
#include <QFontDatabase>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "ui/style.h"

namespace marlevo {

namespace {

constexpr double kWindowPoints = 12;
constexpr double kLargePoints = 18;
constexpr double kAlignedPoints = 14;

// The first of the families that is installed. A QFont with several families would search all of them for every size.
QString Family(const QStringList& families) {
  for (const QString& family : families) {
    if (QFontDatabase::hasFamily(family)) {
      return family;
    }
  }
  return families.first();
}

}  // namespace

double TextScale() {
  static const double scale =
      std::max(1.0, QFontDatabase::systemFont(QFontDatabase::GeneralFont).pointSizeF() / kWindowPoints);
  return scale;
}

int TextPixels(double pixels) {
  return static_cast<int>(std::lround(pixels * TextScale()));
}

QFont WindowFont() {
  static const QString family = Family({"Microsoft JhengHei UI", "Microsoft JhengHei", "Noto Sans CJK TC",
                                        "Noto Sans TC", "PingFang TC", "WenQuanYi Micro Hei"});
  QFont font(family);
  // Chinese needs neither ligatures nor kerning; looking for them would make windows open noticeably later.
  font.setStyleStrategy(QFont::PreferNoShaping);
#ifndef Q_OS_WIN
  // Full hinting places characters at whole pixels, so that one picture of each is drawn and kept instead of four. Not
  // on Windows, where the same preference chooses another way of drawing.
  font.setHintingPreference(QFont::PreferFullHinting);
#endif
  font.setPointSizeF(kWindowPoints * TextScale());
  return font;
}

QFont LargeFont(QFont::Weight weight) {
  QFont font = WindowFont();
  font.setPointSizeF(kLargePoints * TextScale());
  font.setWeight(weight);
  return font;
}

QFont AlignedFont() {
  static const QString family = Family({"MingLiU", "Noto Sans Mono CJK TC", "WenQuanYi Micro Hei Mono"});
  QFont font(family);
  font.setStyleHint(QFont::Monospace);
  // Hinting rounds widths to whole pixels; a full-width character of 19 pixels would then have no half of 9.5, and
  // columns would drift apart.
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setPointSizeF(kAlignedPoints * TextScale());
  return font;
}

void SetUpAppearance() {
  QApplication::setStyle(new WindowStyle);
  QApplication::setPalette(WindowPalette());
  QApplication::setFont(WindowFont());
  QToolTip::setFont(WindowFont());
}

}  // namespace marlevo
