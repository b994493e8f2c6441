#include <stdexcept>

#include "MacPlatform/LoginItem.h"
#include "VelmoraApp/LaunchAtLogin/LoginItem.h"

namespace velmora {

namespace {

class MainAppLoginItem final : public LoginItem {
 public:
  bool isEnabled() const override { return mac::isLoginItemEnabled(); }

  void setEnabled(bool enabled) override {
    if (!mac::setLoginItemEnabled(enabled)) throw std::runtime_error("the login item was refused");
  }
};

}  // namespace

// The system knows the application by its bundle identifier and follows it when it moves.
std::unique_ptr<LoginItem> makeLoginItem(const Environment&, const std::filesystem::path&) {
  return std::make_unique<MainAppLoginItem>();
}

}  // namespace velmora
