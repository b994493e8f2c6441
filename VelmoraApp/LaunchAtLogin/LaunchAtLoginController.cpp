#include "VelmoraApp/LaunchAtLogin/LaunchAtLoginController.h"

#include <spdlog/spdlog.h>

namespace velmora {

LaunchAtLoginController::LaunchAtLoginController(std::unique_ptr<LoginItem> item)
    : item_(std::move(item)), enabled_(item_->isEnabled()) {}

void LaunchAtLoginController::setEnabled(bool enabled) {
  try {
    item_->setEnabled(enabled);
    enabled_ = item_->isEnabled();
    setErrorMessage({});
  } catch (const std::exception& error) {
    spdlog::warn("login item: {}", error.what());
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
