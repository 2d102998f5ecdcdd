// The board grows with its window, up to one and a half times: texts, and the distances that belong to them.
#pragma once

#include <QFont>

#include "ui/appearance.h"

namespace marlevo {

inline QFont Grown(QFont font, double growth) {
  font.setPointSizeF(font.pointSizeF() * growth);
  return font;
}

// `pixels` as they fit a board that has not grown.
inline int Grown(int pixels, double growth) {
  return TextPixels(pixels * growth);
}

}  // namespace marlevo
