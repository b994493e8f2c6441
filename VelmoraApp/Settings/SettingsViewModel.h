// The settings: three pages, and which of them is shown.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>

#include "VelmoraApp/Settings/GeneralSettingsViewModel.h"
#include "VelmoraApp/Settings/MCPConnectionViewModel.h"
#include "VelmoraApp/Settings/PrivacySettingsViewModel.h"

namespace velmora {

/// For the main thread.
class SettingsViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(int page READ page WRITE setPage NOTIFY pageChanged)
  Q_PROPERTY(velmora::GeneralSettingsViewModel* general READ general CONSTANT)
  Q_PROPERTY(velmora::PrivacySettingsViewModel* privacy READ privacy CONSTANT)
  Q_PROPERTY(velmora::MCPConnectionViewModel* connection READ connection CONSTANT)

 public:
  SettingsViewModel(AppModel& model, const GeneralSettingsSources& sources)
      : general_(model, sources), privacy_(model), connection_(sources.desktop.guideContext()) {}

  int page() const { return page_; }
  void setPage(int page) {
    if (page == page_ || page < 0) return;
    page_ = page;
    Q_EMIT pageChanged();
  }

  Q_INVOKABLE void showPrivacy() { setPage(privacyPage); }

  GeneralSettingsViewModel* general() { return &general_; }
  PrivacySettingsViewModel* privacy() { return &privacy_; }
  MCPConnectionViewModel* connection() { return &connection_; }

 Q_SIGNALS:
  void pageChanged();

 private:
  static constexpr int privacyPage = 1;

  int page_ = 0;
  GeneralSettingsViewModel general_;
  PrivacySettingsViewModel privacy_;
  MCPConnectionViewModel connection_;
};

}  // namespace velmora
