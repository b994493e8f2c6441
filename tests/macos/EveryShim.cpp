// Calls everything in MacPlatform/, so that linking it shows that all of it is there. Never run.
#include "MacPlatform/AboutPanel.h"
#include "MacPlatform/ApplicationBundle.h"
#include "MacPlatform/LoginItem.h"
#include "MacPlatform/PermissionPrompts.h"
#include "MacPlatform/PreferredLanguages.h"
#include "MacPlatform/RunningApplications.h"
#include "MacPlatform/SystemSettings.h"
#include "MacPlatform/Updater.h"
#include "MacPlatform/UserDefaults.h"

int main() {
  namespace mac = velmora::mac;
  mac::showAboutPanel();
  mac::setTextDefault("path", mac::applicationBundlePath().string());
  mac::setBoolDefault("login", mac::setLoginItemEnabled(!mac::isLoginItemEnabled()));
  mac::setTextDefault("language", mac::preferredLanguages().front());
  const auto updater = mac::makeUpdater();
  updater->setAutomaticallyChecksForUpdates(!updater->automaticallyChecksForUpdates());
  updater->checkForUpdates();
  return mac::requestAccessibility() && mac::requestScreenCapture() &&
         mac::isApplicationRunning(mac::textDefault("application").value_or("")) &&
         mac::openSystemSettings(mac::SystemSettingsLink::automation) && updater->isAvailable() &&
         updater->lastUpdateCheckDate().has_value() && mac::boolDefault("login").value_or(false);
}
