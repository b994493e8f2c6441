// The one observable object of the application: it builds the bridge, publishes what the screens show, and
// carries out what the user asks for on them.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "BridgeHost/BridgeHost.h"
#include "VelmoraApp/AppModel/AppSection.h"
#include "VelmoraApp/AppModel/CallGate.h"
#include "VelmoraApp/AppModel/Problem.h"
#include "VelmoraApp/AppModel/Serving.h"
#include "VelmoraApp/AppModel/Worker.h"
#include "VelmoraApp/Platform/StartupPermissionPrompter.h"

namespace velmora {

struct AppModelOptions {
  BridgeHostOptions bridge{};
  StartupPermissionPrompter permissionPrompter{};
  bool onboardingCompleted = false;
  std::chrono::milliseconds pollInterval{1000};
};

/// Lives on the main thread and never blocks it. What may wait for the terminal runs on one worker, what
/// waits for files on another, so that a hung terminal holds up neither the user's settings nor the
/// records. Results arrive in the event loop; each change of a published value emits a signal.
///
/// The local server serves from construction on, as soon as the settings are loaded. Until the introduction
/// is over it serves paused, and sessions are found as read-only: nobody has said yet what agents may do.
/// While another bridge serves in its place, nothing is loaded, asked or kept, until it is taken over.
class AppModel : public QObject {
  Q_OBJECT

 public:
  /// Starts by itself when the onboarding is over; otherwise `finishIntroduction` does. Throws what
  /// BridgeHost throws.
  explicit AppModel(AppModelOptions options);
  ~AppModel() override;

  // What the screens show.
  const BridgeStatus& status() const { return status_; }
  const std::vector<TerminalSession>& sessions() const { return sessions_; }
  const std::vector<MCPRequestRecord>& records() const { return records_; }  ///< Oldest first.
  const PrivacyRetentionSettings& settings() const { return settings_; }
  const std::optional<AppSection>& selectedSection() const { return selectedSection_; }
  QStringList problems() const;  ///< What does not work; sentences in the language of now.
  bool isRefreshing() const { return refresh_.isUnderWay(); }
  bool isStarted() const { return started_; }
  Serving& serving() { return serving_; }

  /// The start-up task: local state, permissions once a process, a refresh, then a poll every second.
  void start();
  /// Fetches status and records. A fetch that is still under way is not repeated. Nothing before the start.
  void poll();
  /// The user's first word: the policy holds for every session that the bridge did not open, is saved as the
  /// only change of what is stored, and changes are possible from now on. Then starts. The policy holds even
  /// when it cannot be saved; that becomes one of the problems.
  void finishIntroduction(SessionPolicy policy);

  /// Refreshes as soon as the stored state is loaded, also before the start.
  void refreshWhenLoaded() {
    fileWorker_.run(
        this, [] { return true; }, [this](bool) { refreshAll(); });
  }

  // What the user asks for. Failures arrive by the signals below.
  void refreshAll();
  void setPaused(bool paused);  ///< At once, also while the terminal hangs; nothing before the start.
  void setPermission(SessionPermission permission, const Uuid& sessionId);
  /// Of those that the bridge did not open, the ones that may be typed into.
  void makeKnownSessionsReadOnly();
  int knownSessionsToRestrict() const;  ///< How many that changes.
  void focus(const Uuid& sessionId);
  /// `page` is on whose behalf, for `settingsNotSaved`.
  void updateSettings(const PrivacyRetentionSettings& settings, const QObject* page = nullptr);
  /// Shows them before they are saved.
  void saveSettingsFromUI(PrivacyRetentionSettings settings, const QObject* page = nullptr);
  void clearHistory();
  void selectSection(AppSection section);
  void addProblem(const Problem& problem);  ///< Once each.

  /// For the end of the process: ends the server and, when the settings ask for it, deletes the history.
  void prepareForTermination();

  BridgeCoordinator& coordinator() { return host_.coordinator(); }
  TerminalAutomating& automation() { return host_.terminal(); }
  LocalControlServer* localServer() { return host_.localServer(); }
  const std::filesystem::path& historyFileURL() { return coordinator().historyStore().fileURL(); }
  const Clock& clock() const { return options_.bridge.now; }

 Q_SIGNALS:
  void statusChanged();  ///< Also when `isStarted` does.
  void sessionsChanged();
  void recordsChanged();
  void settingsChanged();
  void selectedSectionChanged();
  void problemsChanged();
  void refreshingChanged();
  void sessionActionFailed(const velmora::Problem& problem);
  void settingsNotSaved(const velmora::Problem& problem, const QObject* page);
  void historyNotCleared(const velmora::Problem& problem);

 private:
  BridgeHostOptions bridgeOptions();
  void begin();
  void loadLocalState();
  void requestStartupPermissions();
  void ask(const std::function<void(TerminalAutomating&)>& request);
  void beginPolling();
  void fetchStatus();
  void fetchRecords();
  void fetchSettings();
  void showChanges();
  struct ChangeOutcome;
  void changeSettings(std::function<void(BridgeCoordinator& core)> change,
                      std::function<void(const ChangeOutcome& outcome)> failed);
  void publish(BridgeStatus status);
  void publish(std::vector<TerminalSession> sessions);
  void publish(std::vector<MCPRequestRecord> records);
  void publish(const PrivacyRetentionSettings& settings);

  const AppModelOptions options_;
  BridgeHost host_;
  BridgeStatus status_;
  std::vector<TerminalSession> sessions_;
  std::vector<MCPRequestRecord> records_;
  PrivacyRetentionSettings settings_;
  bool showsSettings_ = false;  // the stored ones were loaded, or could not be
  std::optional<AppSection> selectedSection_;
  std::vector<Problem> problems_;

  Serving serving_;
  bool introduced_;
  bool started_ = false;
  bool didRequestStartupPermissions_ = false;
  bool terminating_ = false;
  QTimer pollTimer_;
  CallGate refresh_;
  CallGate statusFetch_;
  CallGate recordsFetch_;
  std::optional<std::uint64_t> recordsRevision_;  // of the recorder, as last published
  int savesUnderWay_ = 0;

  // Last, so that no work is under way when anything above is destroyed.
  Worker terminalWorker_{"app-terminal"};
  Worker fileWorker_{"app-files"};
};

}  // namespace velmora
