#include "VelmoraApp/Settings/LaunchAtLoginController.h"

namespace velmora {

LaunchAtLoginController::LaunchAtLoginController(Desktop& desktop)
    : desktop_(desktop), enabled_(desktop_.startsAtLogin()) {}

void LaunchAtLoginController::setEnabled(bool enabled) {
  try {
    desktop_.setStartsAtLogin(enabled);
    enabled_ = desktop_.startsAtLogin();
    setFailed(false);
  } catch (const std::exception& error) {
    desktop_.log().warning("login item", error.what());
    setFailed(true);
  }
  Q_EMIT enabledChanged();
}

QString LaunchAtLoginController::errorMessage() const {
  return failed_ ? tr("Login item could not be changed. Review Login Items in System Settings.") : QString();
}

void LaunchAtLoginController::setFailed(bool failed) {
  if (failed == failed_) return;
  failed_ = failed;
  Q_EMIT errorMessageChanged();
}

}  // namespace velmora
