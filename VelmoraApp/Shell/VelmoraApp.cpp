#include "VelmoraApp/Shell/VelmoraApp.h"

#include <QtCore/QCoreApplication>

#include "BridgeHost/PlatformTerminal.h"
#include "VelmoraApp/Shell/AboutPanel.h"
#include "VelmoraApp/Updates/UpdaterService.h"

namespace velmora {

namespace {

AppModelOptions optionsFor(const Environment& environment, const Log& log,
                           const FirstRunController& firstRun) {
  return {.bridge = {.environment = environment,
                     .makeTerminal =
                         [environment](const std::filesystem::path& temporaryDirectory) {
                           return makePlatformTerminal(environment, temporaryDirectory);
                         },
                     .log = log},
          .onboardingCompleted = !firstRun.needsOnboarding()};
}

std::filesystem::path programFile() { return QCoreApplication::applicationFilePath().toStdString(); }

}  // namespace

VelmoraApp::VelmoraApp(const Environment& environment, const Log& log)
    : defaults_(UserDefaults::standard(environment)),
      firstRun_(defaults_),
      menuBarPreference_(defaults_),
      launchAtLogin_(makeLoginItem(environment, programFile())),
      model_(optionsFor(environment, log, firstRun_)),
      viewModels_(model_, firstRun_,
                  {.menuBar = menuBarPreference_,
                   .launchAtLogin = launchAtLogin_,
                   .updater = [this]() -> UpdaterService& { return updater(); },
                   .openPane = openSettingsPane},
                  GuideContext::ofThisSystem()),
      window_(viewModels_),
      menuBarViewModel_(model_) {
  connect(viewModels_.mainWindow(), &MainWindowViewModel::quitRequested, qApp, &QCoreApplication::quit,
          Qt::QueuedConnection);
  connect(qApp, &QCoreApplication::aboutToQuit, &model_, &AppModel::prepareForTermination);
  connect(&trayHost_, &TrayHost::availabilityChanged, this, &VelmoraApp::findTray);
  connect(&menuBarPreference_, &MenuBarPreference::changed, this, &VelmoraApp::updateMenuBar);
  findTray();
  updateMenuBar();
  addAboutToApplicationMenu(this);
  if (updatesFromTheStart(defaults_)) updater();
}

UpdaterService& VelmoraApp::updater() {
  auto& service = UpdaterService::shared();
  connect(&service, &UpdaterService::updateFound, this, &VelmoraApp::tellOfUpdate, Qt::UniqueConnection);
  return service;
}

void VelmoraApp::tellOfUpdate(const QString& sentence) {
  if (menuBar_) menuBar_->tell(sentence);
}

void VelmoraApp::findTray() { menuBarPreference_.setHasPlace(trayHost_.isAvailable()); }

void VelmoraApp::updateMenuBar() {
  const bool shows = menuBarPreference_.shows();
  viewModels_.mainWindow()->setHasTray(shows);
  if (!menuBarPreference_.menuBarEnabled()) menuBar_.reset();
  if (!shows || menuBar_) return;  // Qt itself follows a panel that starts again
  menuBar_.emplace(menuBarViewModel_);
  connect(&*menuBar_, &VelmoraMenuBar::openRequested, this, [this] { openWindow(); });
}

}  // namespace velmora
