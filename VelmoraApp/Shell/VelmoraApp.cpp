#include "VelmoraApp/Shell/VelmoraApp.h"

#include <QtCore/QCoreApplication>

#include "BridgeHost/PlatformTerminal.h"
#include "VelmoraApp/Settings/UpdaterService.h"

namespace velmora {

namespace {

AppModelOptions optionsFor(const Environment& environment, const Log& log, const Desktop& desktop,
                           const FirstRunController& firstRun) {
  return {.bridge = {.environment = environment,
                     .makeTerminal =
                         [environment, log](const std::filesystem::path& temporaryDirectory) {
                           return makePlatformTerminal(environment, temporaryDirectory, log);
                         },
                     .log = log},
          .permissionPrompter = desktop.permissionPrompter(),
          .onboardingCompleted = !firstRun.needsOnboarding()};
}

}  // namespace

VelmoraApp::VelmoraApp(const Environment& environment, const Log& log)
    : desktop_(makeDesktop(environment, log)),
      language_(desktop_->userDefaults(), desktop_->guideContext().preferredLanguages),
      translation_(Translation::installed(language_.language())),
      firstRun_(desktop_->userDefaults()),
      menuBarPreference_(desktop_->userDefaults()),
      launchAtLogin_(*desktop_),
      model_(optionsFor(environment, log, *desktop_, firstRun_)),
      viewModels_(model_, firstRun_,
                  {.desktop = *desktop_,
                   .menuBar = menuBarPreference_,
                   .language = language_,
                   .launchAtLogin = launchAtLogin_,
                   .updater = [this]() -> UpdaterService& { return updater(); }}),
      window_(viewModels_),
      menuBarViewModel_(model_, *desktop_) {
  connect(viewModels_.mainWindow(), &MainWindowViewModel::quitRequested, qApp, &QCoreApplication::quit,
          Qt::QueuedConnection);
  connect(qApp, &QCoreApplication::aboutToQuit, &model_, &AppModel::prepareForTermination);
  connect(&*desktop_, &Desktop::trayPlaceChanged, this,
          [this] { menuBarPreference_.setHasPlace(desktop_->hasTrayPlace()); });
  connect(&menuBarPreference_, &MenuBarPreference::changed, this, &VelmoraApp::updateMenuBar);
  connect(&language_, &LanguagePreference::changed, this, &VelmoraApp::speak);
  desktop_->userDefaults().whenNotKept([this](const QString& file) {
    model_.addProblem(
        {QT_TRANSLATE_NOOP("Problem",
                           "Your choices for this window will be forgotten: %1 could not be written."),
         file});
  });
  if (desktop_->hasDockIcon()) reopening_.emplace([this] { openWindow(); });
  desktop_->start();
  updateMenuBar();
  if (desktop_->updatesFromTheStart()) updater();
}

UpdaterService& VelmoraApp::updater() {
  auto& service = UpdaterService::shared(*desktop_);
  connect(&service, &UpdaterService::updateFound, this, &VelmoraApp::tellOfUpdate, Qt::UniqueConnection);
  return service;
}

void VelmoraApp::tellOfUpdate(const QString& sentence) {
  if (menuBar_) menuBar_->tell(sentence);
}

void VelmoraApp::speak() {
  translation_ = Translation::installed(language_.language());
  viewModels_.retranslate(language_.language());
  window_.retranslate();
  if (menuBar_) menuBar_->retranslate();
}

void VelmoraApp::updateMenuBar() {
  const bool shows = menuBarPreference_.shows();
  viewModels_.mainWindow()->setTray(shows, menuBarPreference_.hasPlace());
  if (!menuBarPreference_.menuBarEnabled()) menuBar_.reset();
  if (!shows || menuBar_) return;  // it follows a panel that starts again
  menuBar_.emplace(menuBarViewModel_, *desktop_);
  connect(&*menuBar_, &VelmoraMenuBar::openRequested, this, [this] { openWindow(); });
}

}  // namespace velmora
