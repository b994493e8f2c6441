#include "VelmoraApp/AppModel/AppModel.h"

#include <algorithm>

#include "VelmoraApp/AppModel/ClientActivity.h"
#include "VelmoraApp/AppModel/KnownSessions.h"
#include "VelmoraApp/AppModel/Problem.h"
#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

namespace {

struct LocalState {
  PrivacyRetentionSettings settings;
  std::uint64_t recordsRevision;
  std::vector<MCPRequestRecord> records;
};

struct Refreshed {
  ToolResult<SessionsPayload> sessions;
  ToolResult<StatusPayload> status;
};

}  // namespace

AppModel::AppModel(AppModelOptions options)
    : options_(std::move(options)),
      host_(bridgeOptions()),
      serving_(host_, fileWorker_),
      introduced_(options_.onboardingCompleted) {
  pollTimer_.setInterval(options_.pollInterval);
  pollTimer_.setTimerType(Qt::PreciseTimer);
  connect(&pollTimer_, &QTimer::timeout, this, &AppModel::poll);
  connect(&serving_, &Serving::tookOver, this, &AppModel::begin);
  if (!serving_.otherBridge()) begin();
}

BridgeHostOptions AppModel::bridgeOptions() {
  auto bridge = options_.bridge;
  bridge.acceptingEnded = [this](const std::string& reason) {
    QMetaObject::invokeMethod(
        this, [this, reason] { serving_.fail(reason); }, Qt::QueuedConnection);
  };
  bridge.changedByUser = [this] {
    QMetaObject::invokeMethod(this, &AppModel::showChanges, Qt::QueuedConnection);
  };
  return bridge;
}

void AppModel::begin() {
  if (!introduced_) coordinator().holdPause(true);
  publish(status_);
  loadLocalState();
  if (introduced_) start();
}

// What the user changed in a terminal. Before the start nothing is shown anyway.
void AppModel::showChanges() {
  if (!started_) return;
  publish(status_);
  fetchSettings();
  refreshAll();
}

AppModel::~AppModel() {
  terminating_ = true;
  automation().cancel();  // a terminal that hangs must not hold up the exit
}

// Once, and before anyone is served: no request may run under settings that are not the user's.
void AppModel::loadLocalState() {
  fileWorker_.run(
      this,
      [this, introduced = introduced_] {
        auto problems = host_.loadLocalState();
        if (!introduced) coordinator().setSessionPolicy(SessionPolicy::selective);
        host_.startServing();
        return problems;
      },
      [this](const LocalStateProblems& problems) {
        if (problems.settings) {
          addProblem({QT_TRANSLATE_NOOP("Problem", "The settings could not be loaded; the defaults hold."),
                      optionalText(problems.settings)});
        }
        if (problems.history) {
          addProblem({QT_TRANSLATE_NOOP("Problem", "The history could not be loaded."),
                      optionalText(problems.history)});
        }
        if (problems.permissions) {
          addProblem({QT_TRANSLATE_NOOP(
                          "Problem",
                          "The sessions' permissions could not be loaded; sessions are read-only at best."),
                      optionalText(problems.permissions)});
        }
      });
}

void AppModel::start() {
  started_ = true;
  Q_EMIT statusChanged();
  // The file worker has loaded the state by the time it comes to this.
  fileWorker_.run(
      this,
      [this] {
        auto& recorder = coordinator().recorder();
        const auto revision = recorder.revision();
        return LocalState{coordinator().settingsStore().current(), revision, recorder.snapshot()};
      },
      [this](LocalState state) {
        publish(status_);  // no longer paused by the introduction
        publish(state.settings);
        showsSettings_ = true;
        recordsRevision_ = state.recordsRevision;
        publish(std::move(state.records));
        requestStartupPermissions();
      });
}

void AppModel::requestStartupPermissions() {
  if (terminating_) return;
  if (std::exchange(didRequestStartupPermissions_, true)) return beginPolling();
  ask([this](TerminalAutomating&) { options_.permissionPrompter.requestAccessibility(); });
  ask([this](TerminalAutomating&) { options_.permissionPrompter.requestScreenCapture(); });
  terminalWorker_.run(
      this,
      [this] {
        ask(options_.permissionPrompter.requestTerminalAutomation);
        ask(options_.permissionPrompter.requestSystemEventsAutomation);
        return true;
      },
      [this](bool) { beginPolling(); });
}

// The answer is not needed; the bridge finds out by itself what it may do.
void AppModel::ask(const std::function<void(TerminalAutomating&)>& request) {
  const auto problem = problemOf([&] { request(automation()); });
  if (!problem.isEmpty())
    options_.bridge.log.debug("terminal", "a permission could not be asked for: " + problem.toStdString());
}

void AppModel::beginPolling() {
  if (terminating_) return;
  refreshAll();
  pollTimer_.start();
}

void AppModel::poll() {
  if (!started_) return;
  fetchStatus();
  fetchRecords();
}

void AppModel::fetchStatus() {
  if (!statusFetch_.enter()) return;
  terminalWorker_.run(
      this, [this] { return coordinator().statusService().snapshot(); },
      [this](BridgeStatus status) {
        publish(std::move(status));
        if (statusFetch_.leave()) fetchStatus();
      });
}

void AppModel::fetchRecords() {
  if (!recordsFetch_.enter()) return;
  fileWorker_.run(
      this,
      [this, known = recordsRevision_] {
        auto& recorder = coordinator().recorder();
        const auto revision = recorder.revision();
        using Fetched = std::pair<std::uint64_t, std::vector<MCPRequestRecord>>;
        return revision == known ? std::nullopt : std::optional<Fetched>({revision, recorder.snapshot()});
      },
      [this](auto fetched) {
        if (fetched) {
          recordsRevision_ = fetched->first;
          publish(std::move(fetched->second));
        }
        if (recordsFetch_.leave()) fetchRecords();
      });
}

void AppModel::publish(BridgeStatus status) {
  // A snapshot that was under way when the user pressed the switch does not turn it back.
  status.mcpState = coordinator().operationState().current();
  status.connectedClients = connectedClients(records_, clock()());
  auto known = status_;
  known.updatedAt = status.updatedAt;
  const bool changed = !(known == status);
  status_ = std::move(status);
  if (changed) Q_EMIT statusChanged();
}

void AppModel::publish(std::vector<TerminalSession> sessions) {
  if (sessions_ == sessions) return;
  sessions_ = std::move(sessions);
  Q_EMIT sessionsChanged();
}

void AppModel::publish(std::vector<MCPRequestRecord> records) {
  if (records_ == records) return;
  records_ = std::move(records);
  Q_EMIT recordsChanged();
  publish(status_);  // it names the clients
}

QStringList AppModel::problems() const {
  QStringList sentences;
  for (const auto& problem : problems_) sentences.append(problem.text());
  return sentences;
}

void AppModel::addProblem(const Problem& problem) {
  if (problems().contains(problem.text())) return;
  problems_.push_back(problem);
  Q_EMIT problemsChanged();
}

void AppModel::selectSection(AppSection section) {
  if (selectedSection_ == section) return;
  selectedSection_ = section;
  Q_EMIT selectedSectionChanged();
}

void AppModel::refreshAll() {
  if (!refresh_.enter()) return;
  Q_EMIT refreshingChanged();
  terminalWorker_.run(
      this,
      [this] {
        // The sessions first: the status counts those that the listing registered.
        auto sessions = coordinator().listSessions(options_.bridge.uuid(), ownClient(), {});
        return Refreshed{std::move(sessions), coordinator().status(options_.bridge.uuid(), ownClient())};
      },
      [this](Refreshed refreshed) {
        if (refreshed.sessions.ok) {
          publish(std::move(refreshed.sessions.data->sessions));
        } else if (refreshed.sessions.error->code == ErrorCode::terminalNotRunning) {
          publish(std::vector<TerminalSession>());
        } else {
          Q_EMIT sessionActionFailed(asProblem(*refreshed.sessions.error));
        }
        if (refreshed.status.ok) publish(std::move(refreshed.status.data->status));
        fetchRecords();
        fetchSettings();
        const bool again = refresh_.leave();
        Q_EMIT refreshingChanged();
        if (again) refreshAll();
      });
}

void AppModel::setPaused(bool paused) {
  if (!started_) return;
  coordinator().setPaused(paused);  // only a flag: nothing to wait for
  publish(status_);
  poll();
  fileWorker_.run(
      this, [this] { return problemOf([this] { coordinator().keepPause(); }); },
      [this](const QString& problem) {
        if (!problem.isEmpty())
          addProblem(
              {QT_TRANSLATE_NOOP("Problem", "The pause could not be kept for the next start."), problem});
      });
}

void AppModel::setPermission(SessionPermission permission, const Uuid& sessionId) {
  using Outcome = std::pair<std::optional<TerminalSession>, QString>;
  fileWorker_.run(
      this,
      [this, permission, sessionId] {
        Outcome outcome;
        outcome.second =
            problemOf([&] { outcome.first = coordinator().permissionService().set(permission, sessionId); });
        return outcome;
      },
      [this, sessionId](const Outcome& outcome) {
        if (outcome.first) {
          // Shown before the refresh, which a hung terminal may hold up.
          auto sessions = sessions_;
          for (auto& session : sessions) {
            if (session.sessionId == sessionId) session.permission = outcome.first->permission;
          }
          publish(std::move(sessions));
        } else {
          Q_EMIT sessionActionFailed({.why = outcome.second});
        }
        refreshAll();
      });
}

void AppModel::makeKnownSessionsReadOnly() {
  fileWorker_.run(
      this, [this] { return problemOf([this] { velmora::makeKnownSessionsReadOnly(coordinator()); }); },
      [this](const QString& problem) {
        if (!problem.isEmpty()) Q_EMIT sessionActionFailed({.why = problem});
        refreshAll();
      });
}

int AppModel::knownSessionsToRestrict() const {
  return static_cast<int>(std::count_if(sessions_.begin(), sessions_.end(), mayBeTypedInto));
}

void AppModel::focus(const Uuid& sessionId) {
  terminalWorker_.run(
      this,
      [this, sessionId] {
        return coordinator().focusSession(options_.bridge.uuid(), ownClient(), {sessionId}).error;
      },
      [this](const std::optional<StructuredError>& error) {
        if (error) Q_EMIT sessionActionFailed(asProblem(*error));
        refreshAll();
      });
}

void AppModel::clearHistory() {
  fileWorker_.run(
      this, [this] { return problemOf([this] { coordinator().clearHistory(); }); },
      [this](const QString& problem) {
        if (!problem.isEmpty()) Q_EMIT historyNotCleared({.why = problem});
        publish(std::vector<MCPRequestRecord>());
        fetchRecords();
      });
}

void AppModel::prepareForTermination() {
  if (std::exchange(terminating_, true)) return;
  pollTimer_.stop();
  fileWorker_.drain();                 // what the user saved last is on disk
  if (serving_.otherBridge()) return;  // the files are the other's
  // What the screens show holds, also where it could not be saved.
  host_.prepareForTermination(showsSettings_ ? std::optional(settings_) : std::nullopt);
  if (settings_.deleteOnAppExit) publish(std::vector<MCPRequestRecord>());
}

}  // namespace velmora
