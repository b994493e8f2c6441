// The one text that is more than a conversion: when something happened.
#include "VelmoraApp/AppModel/Texts.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <cmath>

namespace velmora {

namespace {

QDateTime localTime(Date date) {
  constexpr double millisecondsPerSecond = 1000;
  return QDateTime::fromMSecsSinceEpoch(
      static_cast<qint64>(std::floor(date.unixSeconds() * millisecondsPerSecond)));
}

// Short formats leave out the seconds, by which requests are told apart, and the century.
QString timeFormat(const QLocale& locale, TimeDetail detail) {
  if (locale.language() == QLocale::C) return detail == TimeDetail::seconds ? "HH:mm:ss" : "HH:mm";
  auto format = locale.timeFormat(QLocale::ShortFormat);
  if (detail == TimeDetail::seconds && !format.contains("ss")) format.replace("mm", "mm:ss");
  return format;
}

QString dateFormat(const QLocale& locale) {
  if (locale.language() == QLocale::C) return "yyyy-MM-dd";
  auto format = locale.dateFormat(QLocale::ShortFormat);
  return format.contains("yyyy") ? format : format.replace("yy", "yyyy");
}

}  // namespace

QString timeText(Date date, Date now, TimeDetail detail) {
  const QLocale locale;
  const auto time = localTime(date);
  auto timeOfDay = locale.toString(time.time(), timeFormat(locale, detail));
  if (time.date() == localTime(now).date()) return timeOfDay;
  return locale.toString(time.date(), dateFormat(locale)) + " " + timeOfDay;
}

}  // namespace velmora
