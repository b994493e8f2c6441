#include "VelmoraApp/AppModel/UserDefaults.h"

#include <QtCore/QSettings>

namespace velmora {

namespace {

class IniFile final : public UserDefaultsStore {
 public:
  explicit IniFile(const QString& path) : settings_(path, QSettings::IniFormat) {
    settings_.setFallbacksEnabled(false);  // the user's own only, not the whole system's
  }

  std::optional<bool> boolean(const QString& key) const override { return value<bool>(key); }
  std::optional<QString> text(const QString& key) const override { return value<QString>(key); }
  void set(const QString& key, bool value) override { write(key, value); }
  void set(const QString& key, const QString& value) override { write(key, value); }

 private:
  template <class Value>
  std::optional<Value> value(const QString& key) const {
    const auto found = settings_.value(key);
    return found.canConvert<Value>() ? std::optional(found.value<Value>()) : std::nullopt;
  }
  void write(const QString& key, const QVariant& value) {
    settings_.setValue(key, value);
    settings_.sync();
  }

  QSettings settings_;
};

}  // namespace

UserDefaults::UserDefaults(const QString& iniFile) : UserDefaults(std::make_unique<IniFile>(iniFile)) {}

}  // namespace velmora
