#include "VelmoraApp/Platform/UserDefaults.h"

#include <QtCore/QDir>

namespace velmora {

IniFileDefaults::IniFileDefaults(const QString& file) : settings_(file, QSettings::IniFormat) {
  settings_.setFallbacksEnabled(false);  // the user's own only, not the whole system's
}

// Written as the words "true" and "false". Anything else was not written by this class.
std::optional<bool> IniFileDefaults::storedBoolean(const QString& key) const {
  const auto word = storedText(key);
  if (word == "true") return true;
  if (word == "false") return false;
  return std::nullopt;
}

std::optional<QString> IniFileDefaults::storedText(const QString& key) const {
  const auto found = settings_.value(key);
  return found.canConvert<QString>() ? std::optional(found.toString()) : std::nullopt;
}

void IniFileDefaults::write(const QString& key, const QVariant& value) {
  settings_.setValue(key, value);
  settings_.sync();
  if (settings_.status() == QSettings::NoError) return;
  reportNotKept(QDir::toNativeSeparators(settings_.fileName()));
}

}  // namespace velmora
