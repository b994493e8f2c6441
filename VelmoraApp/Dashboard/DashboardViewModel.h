// What the dashboard shows: the state of the bridge and of the terminal, and the pause switch.
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include "VelmoraApp/AppModel/AppModel.h"
#include "VelmoraApp/Dashboard/ClientListModel.h"
#include "VelmoraApp/Dashboard/NowViewModel.h"
#include "VelmoraApp/Platform/Desktop.h"
#include "VelmoraApp/Style/Meaning.h"

namespace velmora {

/// For the main thread. Texts are empty when there is nothing to say.
class DashboardViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by ViewModels")
  Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
  Q_PROPERTY(bool paused READ paused NOTIFY statusChanged)
  Q_PROPERTY(QString bridgeState READ bridgeState NOTIFY statusChanged)
  Q_PROPERTY(QString bridgeCaption READ bridgeCaption NOTIFY statusChanged)
  Q_PROPERTY(int bridgeMeaning READ bridgeMeaning NOTIFY statusChanged)
  Q_PROPERTY(QString pauseButtonText READ pauseButtonText NOTIFY statusChanged)
  Q_PROPERTY(QString terminalName READ terminalName CONSTANT)
  Q_PROPERTY(QString terminalState READ terminalState NOTIFY statusChanged)
  Q_PROPERTY(QString terminalCaption READ terminalCaption NOTIFY statusChanged)
  Q_PROPERTY(int terminalMeaning READ terminalMeaning NOTIFY statusChanged)
  Q_PROPERTY(QString automation READ automation NOTIFY statusChanged)
  Q_PROPERTY(QString automationCaption READ automationCaption NOTIFY statusChanged)
  Q_PROPERTY(int automationMeaning READ automationMeaning NOTIFY statusChanged)
  Q_PROPERTY(int windowCount READ windowCount NOTIFY statusChanged)
  Q_PROPERTY(int sessionCount READ sessionCount NOTIFY statusChanged)
  Q_PROPERTY(QString sessionsCaption READ sessionsCaption NOTIFY statusChanged)
  Q_PROPERTY(QString lastRequest READ lastRequest NOTIFY statusChanged)
  Q_PROPERTY(QString recentError READ recentError NOTIFY statusChanged)
  Q_PROPERTY(QString recentErrorSuggestion READ recentErrorSuggestion NOTIFY statusChanged)
  Q_PROPERTY(velmora::ClientListModel* clients READ clients CONSTANT)
  Q_PROPERTY(velmora::NowViewModel* now READ now CONSTANT)
  Q_PROPERTY(QStringList warnings READ warnings NOTIFY statusChanged)
  Q_PROPERTY(QString servingProblem READ servingProblem NOTIFY servingChanged)
  Q_PROPERTY(bool isRestarting READ isRestarting NOTIFY servingChanged)

 public:
  /// Both references must outlive it.
  DashboardViewModel(AppModel& model, const SessionTitles& names, GuidedTerminal terminal);

  bool isLoading() const { return model_.isRefreshing(); }
  const BridgeStatus& status() const { return model_.status(); }
  bool paused() const { return status().mcpState == MCPState::paused; }
  QString bridgeState() const;
  QString bridgeCaption() const;  ///< What the state means, as have the others.
  Meaning bridgeMeaning() const {
    return paused() || !servingProblem().isEmpty() ? Meaning::Caution : Meaning::Positive;
  }
  QString pauseButtonText() const;
  QString terminalName() const;
  QString terminalState() const;
  QString terminalCaption() const;
  Meaning terminalMeaning() const;
  QString automation() const;
  QString automationCaption() const;
  Meaning automationMeaning() const;
  int windowCount() const;
  int sessionCount() const;
  QString sessionsCaption() const;
  QString lastRequest() const;
  QString recentError() const;
  QString recentErrorSuggestion() const;
  ClientListModel* clients() { return &clients_; }
  NowViewModel* now() { return &now_; }
  QStringList warnings() const;
  QString servingProblem() const { return model_.serving().problem(); }  ///< What a restart may mend.
  bool isRestarting() const { return model_.serving().isUnderWay(); }

  Q_INVOKABLE void togglePause();
  Q_INVOKABLE void refresh();
  Q_INVOKABLE void restartBridge() { model_.serving().restart(); }

 Q_SIGNALS:
  void statusChanged();
  void isLoadingChanged();
  void servingChanged();

 private:
  void update();
  QString automationWarning() const;

  AppModel& model_;
  const GuidedTerminal terminal_;
  ClientListModel clients_;
  NowViewModel now_;
};

}  // namespace velmora
