#include "platform/clock/clock.h"

#include <QDateTime>

namespace marlevo {

std::string LocalStamp() {
  return QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmss")).toStdString();
}

}  // namespace marlevo
