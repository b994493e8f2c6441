// The few choices that belong to the application rather than to the bridge.
#pragma once

#include <QtCore/QString>
#include <memory>
#include <optional>

#include "System/Environment.h"

namespace velmora {

/// Where user defaults are kept. A key that is not set, or holds something else, reads as nothing.
class UserDefaultsStore {
 public:
  virtual ~UserDefaultsStore() = default;

  virtual std::optional<bool> boolean(const QString& key) const = 0;
  virtual std::optional<QString> text(const QString& key) const = 0;
  virtual void set(const QString& key, bool value) = 0;
  virtual void set(const QString& key, const QString& value) = 0;
};

/// Kept by the system's own means: an INI file on Linux, the user defaults on macOS. For the main thread.
/// What cannot be written is lost with the process; nothing is thrown.
class UserDefaults {
 public:
  /// Those of this user. Throws std::runtime_error when the environment does not say where they lie.
  static UserDefaults standard(const Environment& environment);

  /// Those in an INI file of the caller's choice.
  explicit UserDefaults(const QString& iniFile);

  bool boolean(const QString& key, bool absent) const { return store_->boolean(key).value_or(absent); }
  QString text(const QString& key) const { return store_->text(key).value_or(QString()); }

  void set(const QString& key, bool value) { store_->set(key, value); }
  void set(const QString& key, const QString& value) { store_->set(key, value); }

 private:
  explicit UserDefaults(std::unique_ptr<UserDefaultsStore> store) : store_(std::move(store)) {}

  std::unique_ptr<UserDefaultsStore> store_;
};

/// The keys.
namespace userDefault {
inline constexpr const char* onboardingCompleted = "onboardingCompleted";
inline constexpr const char* sessionPolicy = "sessionPolicy";
inline constexpr const char* menuBarEnabled = "menuBarEnabled";
}  // namespace userDefault

}  // namespace velmora
