#include "MacPlatform/UserDefaults.h"
#include "VelmoraApp/AppModel/UserDefaults.h"

namespace velmora {

namespace {

// Those of the bundle identifier.
class StandardDefaults final : public UserDefaultsStore {
 public:
  std::optional<bool> boolean(const QString& key) const override {
    return mac::boolDefault(key.toStdString());
  }
  std::optional<QString> text(const QString& key) const override {
    const auto found = mac::textDefault(key.toStdString());
    return found ? std::optional(QString::fromStdString(*found)) : std::nullopt;
  }
  void set(const QString& key, bool value) override { mac::setBoolDefault(key.toStdString(), value); }
  void set(const QString& key, const QString& value) override {
    mac::setTextDefault(key.toStdString(), value.toStdString());
  }
};

}  // namespace

UserDefaults UserDefaults::standard(const Environment&) {
  return UserDefaults(std::make_unique<StandardDefaults>());
}

}  // namespace velmora
