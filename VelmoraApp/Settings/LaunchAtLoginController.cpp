#include "VelmoraApp/Settings/LaunchAtLoginController.h"

namespace velmora {

LaunchAtLoginController::LaunchAtLoginController(Desktop& desktop)
    : desktop_(desktop), enabled_(desktop_.startsAtLogin()) {}

void LaunchAtLoginController::setEnabled(bool enabled) {
  try {
    desktop_.setStartsAtLogin(enabled);
    enabled_ = desktop_.startsAtLogin();
    setErrorMessage({});
  } catch (const std::exception& error) {
    desktop_.log().warning("login item", error.what());
    setErrorMessage("Login item could not be changed. Review Login Items in System Settings.");
  }
  Q_EMIT enabledChanged();
}

void LaunchAtLoginController::setErrorMessage(const QString& message) {
  if (message == errorMessage_) return;
  errorMessage_ = message;
  Q_EMIT errorMessageChanged();
}

}  // namespace velmora
