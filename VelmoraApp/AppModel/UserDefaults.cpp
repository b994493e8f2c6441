#include "VelmoraApp/AppModel/UserDefaults.h"

#include <QtCore/QSettings>

namespace velmora {

UserDefaults::UserDefaults(const QString& iniFile)
    : UserDefaults(std::make_unique<QSettings>(iniFile, QSettings::IniFormat)) {}
UserDefaults::UserDefaults(std::unique_ptr<QSettings> settings) : settings_(std::move(settings)) {
  settings_->setFallbacksEnabled(false);  // the user's own only, not the whole system's
}
UserDefaults::~UserDefaults() = default;
UserDefaults::UserDefaults(UserDefaults&&) noexcept = default;

bool UserDefaults::boolean(const QString& key, bool absent) const {
  return settings_->value(key, absent).toBool();
}

QString UserDefaults::text(const QString& key) const { return settings_->value(key).toString(); }

void UserDefaults::set(const QString& key, bool value) {
  settings_->setValue(key, value);
  settings_->sync();
}

void UserDefaults::set(const QString& key, const QString& value) {
  settings_->setValue(key, value);
  settings_->sync();
}

}  // namespace velmora
