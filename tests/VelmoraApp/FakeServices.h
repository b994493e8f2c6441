// The system's part of the settings, in memory.
#pragma once

#include <stdexcept>
#include <utility>

#include "VelmoraApp/LaunchAtLogin/LoginItem.h"
#include "VelmoraApp/Updates/PlatformUpdater.h"

namespace velmora::testing {

class FakeLoginItem final : public LoginItem {
 public:
  /// `refuses` must outlive it.
  explicit FakeLoginItem(const bool& refuses) : refuses_(refuses) {}

  bool isEnabled() const override { return enabled_; }
  void setEnabled(bool enabled) override {
    if (refuses_) throw std::runtime_error("refused");
    enabled_ = enabled;
  }

 private:
  const bool& refuses_;
  bool enabled_ = false;
};

class FakeUpdater final : public PlatformUpdater {
 public:
  /// Nothing when updates are not available here.
  explicit FakeUpdater(std::optional<Date> lastCheck, bool available = true)
      : lastCheck_(lastCheck), available_(available) {}

  bool isAvailable() const override { return available_; }
  bool automaticallyChecksForUpdates() const override { return automatic_; }
  void setAutomaticallyChecksForUpdates(bool automatically) override {
    automatic_ = automatically;
    Q_EMIT changed();
  }
  void checkForUpdates() override {
    checking_ = true;
    Q_EMIT changed();
  }
  bool isChecking() const override { return checking_; }
  std::optional<Date> lastUpdateCheckDate() const override { return lastCheck_; }
  QString caption() const override { return "Updates come from your system's package manager."; }
  QString checkResult() const override { return result_; }

  void finish(QString result) {
    checking_ = false;
    result_ = std::move(result);
    Q_EMIT changed();
  }

 private:
  std::optional<Date> lastCheck_;
  bool available_;
  bool automatic_ = false;
  bool checking_ = false;
  QString result_;
};

}  // namespace velmora::testing
