#include "VelmoraApp/Platform/UserDefaults.h"

namespace velmora {

namespace {

template <class Value>
std::optional<Value> valueOf(const QSettings& settings, const QString& key) {
  const auto found = settings.value(key);
  return found.canConvert<Value>() ? std::optional(found.value<Value>()) : std::nullopt;
}

}  // namespace

IniFileDefaults::IniFileDefaults(const QString& file) : settings_(file, QSettings::IniFormat) {
  settings_.setFallbacksEnabled(false);  // the user's own only, not the whole system's
}

std::optional<bool> IniFileDefaults::storedBoolean(const QString& key) const {
  return valueOf<bool>(settings_, key);
}

std::optional<QString> IniFileDefaults::storedText(const QString& key) const {
  return valueOf<QString>(settings_, key);
}

void IniFileDefaults::write(const QString& key, const QVariant& value) {
  settings_.setValue(key, value);
  settings_.sync();
}

}  // namespace velmora
