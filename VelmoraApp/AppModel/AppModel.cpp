#include "VelmoraApp/AppModel/AppModel.h"

#include <spdlog/spdlog.h>

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

namespace {

struct LocalState {
  PrivacyRetentionSettings settings;
  std::uint64_t recordsRevision;
  std::vector<MCPRequestRecord> records;
};

// The answer is not needed; the bridge finds out by itself what it may do.
void ask(const std::function<void(TerminalAutomating&)>& request, TerminalAutomating& terminal) {
  try {
    request(terminal);
  } catch (const std::exception& error) {
    spdlog::debug("a permission could not be asked for: {}", error.what());
  }
}

}  // namespace

AppModel::AppModel(AppModelOptions options) : options_(std::move(options)), host_(options_.bridge) {
  pollTimer_.setInterval(options_.pollInterval);
  pollTimer_.setTimerType(Qt::PreciseTimer);
  connect(&pollTimer_, &QTimer::timeout, this, &AppModel::poll);
  if (host_.localServer() == nullptr) {
    addProblem("MCP clients cannot connect. " +
               text(host_.socketURL().string() + ": " + host_.serverProblem()) + ".");
  }
  loadLocalState();
  if (options_.onboardingCompleted) start();
}

AppModel::~AppModel() {
  terminating_ = true;
  automation().cancel();  // a terminal that hangs holds up no one's exit
}

// Once, and before anyone is served: no request may run under settings that are not the person's.
void AppModel::loadLocalState() {
  fileWorker_.run(
      this,
      [this] {
        auto problems = host_.loadLocalState();
        host_.startServing();
        return problems;
      },
      [this](const LocalStateProblems& problems) {
        if (problems.settings) {
          addProblem("The settings could not be loaded; the defaults hold. " +
                     optionalText(problems.settings));
        }
        if (problems.history)
          addProblem("The history could not be loaded. " + optionalText(problems.history));
      });
}

void AppModel::start() {
  // The file worker has loaded the state by the time it comes to this.
  fileWorker_.run(
      this,
      [this] {
        auto& recorder = coordinator().recorder();
        const auto revision = recorder.revision();
        return LocalState{coordinator().settingsStore().current(), revision, recorder.snapshot()};
      },
      [this](LocalState state) {
        publish(state.settings);
        recordsRevision_ = state.recordsRevision;
        publish(std::move(state.records));
        requestStartupPermissions();
      });
}

void AppModel::requestStartupPermissions() {
  if (terminating_) return;
  if (std::exchange(didRequestStartupPermissions_, true)) return beginPolling();
  options_.permissionPrompter.requestAccessibility();
  options_.permissionPrompter.requestScreenCapture();
  terminalWorker_.run(
      this,
      [this] {
        ask(options_.permissionPrompter.requestTerminalAutomation, automation());
        ask(options_.permissionPrompter.requestSystemEventsAutomation, automation());
        return true;
      },
      [this](bool) { beginPolling(); });
}

void AppModel::beginPolling() {
  if (terminating_) return;
  refreshAll();
  pollTimer_.start();
}

void AppModel::poll() {
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

void AppModel::fetchSettings() {
  fileWorker_.run(
      this, [this] { return coordinator().settingsStore().current(); },
      [this](const PrivacyRetentionSettings& settings) {
        if (savesUnderWay_ == 0) publish(settings);
      });
}

void AppModel::publish(BridgeStatus status) {
  // A snapshot that was under way when the person pressed the switch does not turn it back.
  status.mcpState = coordinator().operationState().current();
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
}

void AppModel::publish(const PrivacyRetentionSettings& settings) {
  if (settings_ == settings) return;
  settings_ = settings;
  Q_EMIT settingsChanged();
}

void AppModel::addProblem(const QString& problem) {
  problems_.append(problem);
  Q_EMIT problemsChanged();
}

void AppModel::selectSection(AppSection section) {
  if (selectedSection_ == section) return;
  selectedSection_ = section;
  Q_EMIT selectedSectionChanged();
}

void AppModel::prepareForTermination() {
  if (std::exchange(terminating_, true)) return;
  pollTimer_.stop();
  fileWorker_.drain();  // what the person saved last is on disk
  host_.prepareForTermination();
  if (settings_.deleteOnAppExit) publish(std::vector<MCPRequestRecord>());
}

}  // namespace velmora
