// All view models of the window, over one AppModel.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>

#include "VelmoraApp/Dashboard/DashboardViewModel.h"
#include "VelmoraApp/Help/HelpViewModel.h"
#include "VelmoraApp/History/HistoryViewModel.h"
#include "VelmoraApp/Navigation/AppNavigation.h"
#include "VelmoraApp/Navigation/MainWindowViewModel.h"
#include "VelmoraApp/Navigation/OtherBridgeViewModel.h"
#include "VelmoraApp/Onboarding/OnboardingViewModel.h"
#include "VelmoraApp/RecentRequests/RecentRequestsViewModel.h"
#include "VelmoraApp/Sessions/SessionsViewModel.h"
#include "VelmoraApp/Settings/SettingsViewModel.h"

namespace velmora {

/// The window's only input. For the main thread; everything passed to its constructor must outlive it.
class ViewModels : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(velmora::AppNavigation* navigation READ navigation CONSTANT)
  Q_PROPERTY(velmora::MainWindowViewModel* mainWindow READ mainWindow CONSTANT)
  Q_PROPERTY(velmora::OtherBridgeViewModel* otherBridge READ otherBridge CONSTANT)
  Q_PROPERTY(velmora::DashboardViewModel* dashboard READ dashboard CONSTANT)
  Q_PROPERTY(velmora::SessionsViewModel* sessions READ sessions CONSTANT)
  Q_PROPERTY(velmora::HistoryViewModel* history READ history CONSTANT)
  Q_PROPERTY(velmora::RecentRequestsViewModel* recentRequests READ recentRequests CONSTANT)
  Q_PROPERTY(velmora::SettingsViewModel* settings READ settings CONSTANT)
  Q_PROPERTY(velmora::HelpViewModel* help READ help CONSTANT)
  Q_PROPERTY(velmora::OnboardingViewModel* onboarding READ onboarding CONSTANT)

 public:
  ViewModels(AppModel& model, FirstRunController& firstRun, const GeneralSettingsSources& sources)
      : navigation_(model),
        mainWindow_(sources.desktop),
        otherBridge_(model),
        names_(model),
        dashboard_(model, names_, sources.desktop.guideContext().terminal),
        sessions_(model),
        history_(model, names_),
        recentRequests_(model, names_),
        settings_(model, sources),
        help_(sources.desktop.guideContext(), sources.language.language()),
        onboarding_(model, firstRun, sources.desktop.guideContext()) {}

  AppNavigation* navigation() { return &navigation_; }
  MainWindowViewModel* mainWindow() { return &mainWindow_; }
  OtherBridgeViewModel* otherBridge() { return &otherBridge_; }
  DashboardViewModel* dashboard() { return &dashboard_; }
  SessionsViewModel* sessions() { return &sessions_; }
  HistoryViewModel* history() { return &history_; }
  RecentRequestsViewModel* recentRequests() { return &recentRequests_; }
  SettingsViewModel* settings() { return &settings_; }
  HelpViewModel* help() { return &help_; }
  OnboardingViewModel* onboarding() { return &onboarding_; }

  /// The application speaks this language from now on: every text is shown anew.
  void retranslate(Language language);

 private:
  AppNavigation navigation_;
  MainWindowViewModel mainWindow_;
  OtherBridgeViewModel otherBridge_;
  SessionTitles names_;
  DashboardViewModel dashboard_;
  SessionsViewModel sessions_;
  HistoryViewModel history_;
  RecentRequestsViewModel recentRequests_;
  SettingsViewModel settings_;
  HelpViewModel help_;
  OnboardingViewModel onboarding_;
};

}  // namespace velmora
