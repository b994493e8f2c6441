// Calls everything in MacPlatform/, so that linking it shows that all of it is there. Never run.
#include "MacPlatform/Application.h"
#include "MacPlatform/Permissions.h"
#include "MacPlatform/StatusItem.h"
#include "MacPlatform/Updater.h"
#include "MacPlatform/UserDefaults.h"

int main() {
  namespace mac = velmora::mac;
  mac::showAboutPanel();
  mac::stayAwake("reason");
  mac::startInBackground("application");
  mac::makeStatusItem("tip", nullptr)->setImage("image");
  mac::setTextDefault("path", mac::applicationBundlePath().string());
  mac::setBoolDefault("login", mac::setLoginItemEnabled(!mac::isLoginItemEnabled()));
  mac::setTextDefault("language", mac::preferredLanguages().front());
  const auto updater = mac::makeUpdater();
  updater->setAutomaticallyChecksForUpdates(!updater->automaticallyChecksForUpdates());
  updater->checkForUpdates();
  return mac::automationConsent("application", true) == 0 && mac::requestAccessibility() &&
         mac::requestScreenCapture() &&
         mac::isApplicationRunning(mac::textDefault("application").value_or("")) &&
         mac::openURL(mac::textDefault("address").value_or("")) &&
         updater->lastUpdateCheckDate().has_value() && mac::boolDefault("login").value_or(false);
}
