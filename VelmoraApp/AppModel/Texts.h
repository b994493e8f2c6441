// What the bridge says, as texts for the screens.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <optional>
#include <string>
#include <string_view>

#include "BridgeModels/Date.h"
#include "BridgeModels/WireNames.h"

namespace velmora {

inline QString text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// Empty when there is none.
inline QString optionalText(const std::optional<std::string>& utf8) { return utf8 ? text(*utf8) : QString(); }

template <class Enum>
QString wireText(Enum value) {
  return text(wireName(value));
}

/// The wire names of every case, in the declared order.
template <class Enum>
QStringList wireTexts() {
  QStringList names;
  for (const auto& entry : enumCases<Enum>) names.append(text(entry.wireName));
  return names;
}

template <class Enum>
std::optional<Enum> fromWireText(const QString& name) {
  return fromWireName<Enum>(name.toStdString());
}

enum class TimeDetail { seconds, minutes };

/// A point in time in the local time zone, as QLocale's default writes it: the time of day on the day of
/// `now`, else the date, too. Where no locale is set that is "14:05:22" and "2026-11-21 14:05:22".
QString timeText(Date date, Date now, TimeDetail detail = TimeDetail::seconds);

}  // namespace velmora
