// The few choices that belong to the application rather than to the bridge.
#pragma once

#include <QtCore/QString>
#include <memory>

#include "BridgeModels/Environment.h"

class QSettings;

namespace velmora {

/// Kept by the system's own means: an INI file on Linux, the user defaults on macOS. For the main thread.
/// What cannot be written is lost with the process; nothing is thrown.
class UserDefaults {
 public:
  /// Those of this user.
  static UserDefaults standard(const Environment& environment);

  /// Those in an INI file of the caller's choice.
  explicit UserDefaults(const QString& iniFile);
  ~UserDefaults();
  UserDefaults(UserDefaults&&) noexcept;

  bool boolean(const QString& key, bool absent) const;
  QString text(const QString& key) const;

  void set(const QString& key, bool value);
  void set(const QString& key, const QString& value);

 private:
  explicit UserDefaults(std::unique_ptr<QSettings> settings);

  std::unique_ptr<QSettings> settings_;
};

/// The keys.
namespace userDefault {
inline constexpr const char* onboardingCompleted = "onboardingCompleted";
inline constexpr const char* sessionPolicy = "sessionPolicy";
inline constexpr const char* menuBarEnabled = "menuBarEnabled";
}  // namespace userDefault

}  // namespace velmora
