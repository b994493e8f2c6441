// The few choices that belong to the application rather than to the bridge.
#pragma once

#include <QtCore/QSettings>
#include <QtCore/QString>
#include <functional>
#include <optional>
#include <utility>

namespace velmora {

/// Stored the way the system does it. For the main thread. Never throws: what cannot be written is lost when
/// the process ends, and whoever listens hears of it.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  // A key that is not set, or holds something else, reads as absent.
  bool boolean(const QString& key, bool absent) const { return storedBoolean(key).value_or(absent); }
  QString text(const QString& key) const { return storedText(key).value_or(QString()); }

  virtual void set(const QString& key, bool value) = 0;
  virtual void set(const QString& key, const QString& value) = 0;

  /// `hear` is called for each choice that could not be written, with the name of the file.
  void whenNotKept(std::function<void(const QString& file)> hear) { notKept_ = std::move(hear); }

 protected:
  void reportNotKept(const QString& file) const {
    if (notKept_) notKept_(file);
  }

 private:
  virtual std::optional<bool> storedBoolean(const QString& key) const = 0;
  virtual std::optional<QString> storedText(const QString& key) const = 0;

  std::function<void(const QString& file)> notKept_;
};

/// User defaults in an INI file.
class IniFileDefaults final : public UserDefaults {
 public:
  explicit IniFileDefaults(const QString& file);

  void set(const QString& key, bool value) override { write(key, value); }
  void set(const QString& key, const QString& value) override { write(key, value); }

 private:
  std::optional<bool> storedBoolean(const QString& key) const override;
  std::optional<QString> storedText(const QString& key) const override;
  void write(const QString& key, const QVariant& value);

  QSettings settings_;
};

/// The keys.
namespace userDefault {
inline constexpr const char* onboardingCompleted = "onboardingCompleted";
inline constexpr const char* sessionPolicy = "sessionPolicy";
inline constexpr const char* menuBarEnabled = "menuBarEnabled";
inline constexpr const char* language = "language";
}  // namespace userDefault

}  // namespace velmora
