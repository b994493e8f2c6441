// The one text that is more than a conversion: when something happened.
#include "VelmoraApp/AppModel/Texts.h"

#include <QtCore/QDateTime>
#include <cmath>

namespace velmora {

namespace {

QDateTime localTime(Date date) {
  constexpr double millisecondsPerSecond = 1000;
  return QDateTime::fromMSecsSinceEpoch(
      static_cast<qint64>(std::floor(date.unixSeconds() * millisecondsPerSecond)));
}

}  // namespace

QString timeText(Date date, Date now) {
  const auto time = localTime(date);
  return time.toString(time.date() == localTime(now).date() ? "HH:mm:ss" : "yyyy-MM-dd HH:mm:ss");
}

}  // namespace velmora
